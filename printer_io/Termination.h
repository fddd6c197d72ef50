// Ends the process by a signal with the printer's port closed.
#ifndef PRINTER_IO_TERMINATION_H_
#define PRINTER_IO_TERMINATION_H_

#include "printer_io/ZIOPlugin.h"

namespace Ravik {

// What SIGHUP, SIGINT and SIGTERM do once CatchSignals was called. While no port is in use they end
// the process at once, as by default. While one is, its wait is cancelled and no further operation
// begins, so that the port is soon closed and released; then the process ends by the signal, as it
// does after 0.9 s if the plug-in has not given way; SIGALRM counts that time, also where the host
// has blocked it.
class Termination {
 public:
  // Called once, by the main thread, which is the one that uses ports. A signal that is ignored
  // stays ignored. Without this call there is no handler and the rest has no effect.
  static void CatchSignals();

  // Whether a signal waits for the port to be released.
  static bool IsPending();

  // The use of one port, from before its interface is initialised until after it is released. The
  // destructor ends the process if a signal has come.
  class PortUse {
   public:
    PortUse();
    ~PortUse();
    PortUse(const PortUse&) = delete;
    PortUse& operator=(const PortUse&) = delete;

    // The port whose cancel slot the signal handler may call; null when it may no longer.
    void SetCancellable(ZIOPortInterface* port);
  };
};

}  // namespace Ravik

#endif  // PRINTER_IO_TERMINATION_H_
