// SIGINT, SIGTERM and SIGHUP, which end a command in order.
#ifndef PRINTER_MEDIA_INTERRUPTION_H_
#define PRINTER_MEDIA_INTERRUPTION_H_

#include <sys/select.h>

#include <chrono>
#include <exception>
#include <string>

namespace PrinterMedia {

using Clock = std::chrono::steady_clock;

// Thrown by waits when a signal has come.
class Interrupted : public std::exception {
 public:
  explicit Interrupted(int signal) : signal_(signal) {}

  const char* what() const noexcept override { return "interrupted"; }
  int signal() const { return signal_; }

  // What the printer may hold a part of, such as `record 3 of "Studio"`; empty for nothing.
  std::string half_written;

 private:
  int signal_;
};

// Takes the signals, but for those that the program was started with ignored; they are delivered
// during Wait alone. Call once, before anything else.
void CatchSignals();

// Waits until one of the descriptors is ready or the time is over, with null for no descriptors.
// The sets are as select leaves them, and empty when the time is over. Throws Interrupted when a
// signal has come, and std::system_error.
void Wait(int highest, fd_set* read, fd_set* write, Clock::time_point end);

// Ends the process by the signal, as one that does not take it.
[[noreturn]] void EndBySignal(int signal);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_INTERRUPTION_H_
