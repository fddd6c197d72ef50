// The I/O plug-in's port interface, for one port.
#ifndef PRINTER_IO_IOHANDLER_H_
#define PRINTER_IO_IOHANDLER_H_

#include <optional>

#include "printer_io/CPluginLoader.h"
#include "printer_io/Termination.h"
#include "printer_io/ZIOPlugin.h"

// Keeps the plug-in's calls in their legal order. Every operation returns the plug-in's code
// unchanged, or -1 without calling it when the handler is not initialised (Open, Cancel) or not
// open (all others); what an operation does and how long it may block is said at its slot of
// ZIOPortTable. Once a signal is to end the process, nothing but Close and Cancel calls the
// plug-in.
class IOHandler {
 public:
  // Loads the plug-in at path and initialises its port interface with the port information, which
  // stays the caller's, and the error callback, which may be called with context until the handler
  // is destroyed. Without a path or a plug-in the handler stays uninitialised.
  IOHandler(const __CFData* port_information, ZIOErrorCallback error_callback, void* context,
            const __CFString* path);

  // Closes, terminates and releases the interface, as far as it came, then the plug-in. Ends the
  // process if a signal is to do so.
  virtual ~IOHandler();

  IOHandler(const IOHandler&) = delete;
  IOHandler& operator=(const IOHandler&) = delete;

  virtual int Open();
  virtual int Close();  // the port counts as closed whatever the code
  virtual int Cancel();
  virtual int Write(char* bytes, long* length);
  virtual int Flush(unsigned char flag);
  virtual int Tab();
  virtual int Read(char* buffer, long* length);
  virtual int Status(char* buffer);
  virtual int GetInfo(ZIOXInfo* info);
  virtual int IOCTL(long selector, void* block);
  virtual int Control(ControlElement* block);

 private:
  bool MayOperate() const { return opened_ && !Ravik::Termination::IsPending(); }

  Ravik::Termination::PortUse use_;  // in front of the plug-in, so that it ends after it
  std::optional<CPluginLoader> loader_;
  ZIOPortInterface* port_ = nullptr;
  bool initialised_ = false;
  bool opened_ = false;
};

#endif  // PRINTER_IO_IOHANDLER_H_
