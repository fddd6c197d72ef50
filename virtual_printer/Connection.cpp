// One byte stream to a host.
#include "virtual_printer/Connection.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "virtual_printer/Sockets.h"

namespace VirtualPrinter {
namespace {

constexpr std::size_t kOutputMax = 65536;

bool WouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

Bytes Connection::Receive() {
  std::array<std::uint8_t, 4096> buffer;
  const ssize_t size = read(file_.get(), buffer.data(), buffer.size());
  if (size > 0) {
    has_received_ = true;
    return Bytes(buffer.data(), buffer.data() + size);
  }
  ended_ = size == 0 || !WouldBlock();
  return {};
}

void Connection::Send(const Bytes& bytes) {
  Append(output_, bytes);
  Flush();
}

void Connection::Flush() {
  while (!output_.empty()) {
    const ssize_t size = port_ == Port::kLocal
                             ? write(Fd(), output_.data(), output_.size())
                             : send(Fd(), output_.data(), output_.size(), MSG_NOSIGNAL);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 && WouldBlock()) return;
    if (size < 0) {  // the host is gone
      ended_ = true;
      output_.clear();
      return;
    }
    output_.erase(output_.begin(), output_.begin() + size);
  }
}

void Connection::Reset() {
  ResetConnection(std::move(file_));
  ended_ = true;
  output_.clear();
}

bool Connection::IsChoked() const {
  return output_.size() >= kOutputMax;
}

}  // namespace VirtualPrinter
