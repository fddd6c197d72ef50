// Cuts the commands out of a byte stream: the raw data port and the local port carry print data,
// and printer commands only in remote mode.
//
//   1B 40 1B 28 52 08 00 00 52 45 4D 4F 54 45 31   enter remote mode (… "REMOTE1")
//   command, any number of times                   see Command.h
//   1B 00 00 00                                    leave remote mode
#ifndef VIRTUAL_PRINTER_REMOTESTREAM_H_
#define VIRTUAL_PRINTER_REMOTESTREAM_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "virtual_printer/Bytes.h"

namespace VirtualPrinter {

class RemoteStream {
 public:
  // Takes the next bytes of the stream and answers the commands that they complete. What stands
  // outside remote mode is skipped. Any other escape sequence between commands ends remote mode
  // as well.
  std::vector<Bytes> Feed(const std::uint8_t* bytes, std::size_t size);

 private:
  bool SkipToRemoteMode();
  bool TakeCommand(std::vector<Bytes>& commands);
  std::size_t Left() const { return pending_.size() - at_; }

  Bytes pending_;
  std::size_t at_ = 0;  // what stands before it in pending_ is done with
  bool remote_ = false;
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_REMOTESTREAM_H_
