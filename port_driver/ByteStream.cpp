// Writing all and reading until a pause.
#include "port_driver/ByteStream.h"

#include <poll.h>

#include <string>

#include "port_driver/DriverTrace.h"

namespace ZIOP {
namespace {

constexpr std::chrono::milliseconds kRest{5};

}  // namespace

void ByteStream::Write(std::string_view bytes) {
  try {
    PrepareToWrite(bytes);
    Trace(name(), "send", bytes);
    SendAll(bytes);
  } catch (...) {
    Abort();
    throw;
  }
}

std::size_t ByteStream::Read(char* buffer, std::size_t capacity) {
  if (capacity == 0) {
    return 0;
  }
  std::size_t length = 0;
  bool connected = true;
  try {
    PrepareToRead();
    connected = ReceiveReply(buffer, capacity, length);
  } catch (...) {
    if (length != 0) Trace(name(), "recv", {buffer, length});
    Abort();
    throw;
  }
  if (length == 0) {
    throw connected ? Timeout("the printer sent nothing")
                    : DriverError(DriverCode::kPrinter, "the printer closed the connection");
  }
  Trace(name(), "recv", {buffer, length});
  return length;
}

std::size_t ByteStream::Control(std::string_view command, char* reply, std::size_t capacity) {
  try {
    Write(command);
    Flush();
    return Read(reply, capacity);
  } catch (...) {
    Abort();
    throw;
  }
}

template <typename Try>
std::size_t ByteStream::Repeat(short events, const Deadline& deadline, Try once) {
  while (waiter_.Wait(descriptor(), events, deadline)) {
    const std::size_t length = once();
    if (length != 0 || deadline.HasPassed()) {
      return length;
    }
    Rest();
  }
  return 0;
}

std::size_t ByteStream::Send(std::string_view bytes, const Deadline& deadline) {
  return Repeat(POLLOUT, deadline, [&] { return TryToSend(bytes); });
}

std::size_t ByteStream::Receive(char* buffer, std::size_t capacity, const Deadline& deadline) {
  return Repeat(POLLIN, deadline, [&] { return TryToReceive(buffer, capacity); });
}

void ByteStream::SendAll(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t sent = Send(bytes, Deadline::After(uri_.budget()));
    if (sent == 0) {
      throw Timeout("the printer took no bytes");
    }
    bytes.remove_prefix(sent);
  }
}

// Fills buffer up to a pause, the full buffer or the end. False when the printer has hung up.
bool ByteStream::ReceiveReply(char* buffer, std::size_t capacity, std::size_t& length) {
  Deadline end = Deadline::After(uri_.budget());
  Deadline pause = end;
  while (length < capacity) {
    const std::size_t received = Receive(buffer + length, capacity - length, pause);
    if (received == 0 || received == kHungUp) {
      return received == 0;
    }
    if (length == 0) {
      end = Deadline::After(uri_.budget());
    } else if (end.HasPassed()) {
      throw Timeout("the reply did not end");
    }
    length += received;
    pause = NextPause();
  }
  return true;
}

void ByteStream::Rest() {
  waiter_.Rest(Deadline::After(kRest));
}

DriverError ByteStream::Timeout(const char* what) const {
  return {DriverCode::kTimeout,
          std::string(what) + " within " + std::to_string(uri_.budget().count()) + " ms"};
}

}  // namespace ZIOP
