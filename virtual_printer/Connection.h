// One byte stream to a host: a raw TCP connection or the local port.
#ifndef VIRTUAL_PRINTER_CONNECTION_H_
#define VIRTUAL_PRINTER_CONNECTION_H_

#include <utility>
#include <vector>

#include "virtual_printer/Bytes.h"
#include "virtual_printer/FileDescriptor.h"
#include "virtual_printer/RemoteStream.h"
#include "virtual_printer/Trace.h"

namespace VirtualPrinter {

class Connection {
 public:
  // `file` must not block.
  Connection(FileDescriptor file, Port port) : file_(std::move(file)), port_(port) {}

  int Fd() const { return file_.get(); }
  Port Kind() const { return port_; }

  // Reads what has arrived, but not without end; answers nothing when nothing has, and marks the
  // connection as ended when the host has closed it.
  Bytes Receive();

  // Answers the commands that the received bytes complete.
  std::vector<Bytes> Commands(const Bytes& received) {
    return stream_.Feed(received.data(), received.size());
  }

  // Writes as much as the host takes and keeps the rest for the next Flush.
  void Send(const Bytes& bytes);
  void Flush();

  // Closes a TCP connection with RST instead of FIN.
  void Reset();

  bool HasReceived() const { return has_received_; }
  bool HasOutput() const { return !output_.empty(); }
  // Whether a host that does not read its replies has so many waiting that it has to be held back.
  bool IsChoked() const;
  // Whether the host sends no more.
  bool HasEnded() const { return ended_; }

 private:
  FileDescriptor file_;
  Port port_;
  RemoteStream stream_;
  Bytes output_;
  bool has_received_ = false;
  bool ended_ = false;
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_CONNECTION_H_
