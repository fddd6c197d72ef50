// The byte stream to a printer over a local character device: a USB printer's node, a serial line.
#ifndef PORT_DRIVER_LOCALDEVICE_H_
#define PORT_DRIVER_LOCALDEVICE_H_

#include <chrono>
#include <cstddef>
#include <string_view>

#include "port_driver/ByteStream.h"
#include "util/FileDescriptor.h"

namespace ZIOP {

// Unlike a connection, a device has no beginning and no end: what a printer sends too late for the
// program that asked is there for the next one. So a reply that a command in remote mode calls for,
// or that was waited for in vain, and the rest of one that filled the buffer are waited for and
// dropped before the next exchange and on Close.
class LocalDevice : public ByteStream {
 public:
  // Opens the node for this process alone among those that lock it (flock): one that another
  // program has is waited for as long as the port's own time. A terminal is put into raw mode
  // without echo; anything else keeps its settings. Throws DriverError: kParameter for what is no
  // character device or is the process's own terminal, kSystem with the system's error for a node
  // that cannot be opened, EBUSY for one that is in use. uri and waiter must outlive the device.
  LocalDevice(const DeviceURI& uri, Waiter& waiter);

  // Waits until the device has taken everything: a terminal has sent its queue, and any other
  // driver takes bytes again, which those that send from one buffer do when it is empty.
  void Flush() override;

  // Flushes, and takes the replies that nobody has read; a printer that does not stop sending is no
  // failure. The last operation; the destructor closes the node.
  void Close();

 private:
  void PrepareToWrite(std::string_view bytes) override;
  void PrepareToRead() override;
  void Abort() override;
  int descriptor() const override { return file_.get(); }
  const char* name() const override { return "local"; }
  std::size_t TryToSend(std::string_view bytes) override;
  std::size_t TryToReceive(char* buffer, std::size_t capacity) override;

  Ravik::FileDescriptor TryToOpen() const;
  std::size_t Transferred(const char* call, ssize_t result) const;
  void CheckPresence() const;
  void AwaitSent();
  bool DropStaleBytes();

  Ravik::FileDescriptor file_;
  bool writing_ = false;  // the exchange in progress has not begun to read
  // How long the printer may take to send, or to go on sending, what nobody has read.
  std::chrono::milliseconds patience_{0};
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_LOCALDEVICE_H_
