// Operations of a network port.
#include "port_driver/NetworkPort.h"

#include <limits>
#include <random>
#include <utility>

#include "port_driver/DriverError.h"
#include "port_driver/SnmpMessage.h"

namespace ZIOP {
namespace {

int32_t FreshRequestId() {
  std::random_device source;
  return std::uniform_int_distribution<int32_t>(1, std::numeric_limits<int32_t>::max())(source);
}

}  // namespace

void NetworkPort::Open() {
  if (channels_) {
    throw DriverError(DriverCode::kParameter, "the port is open already");
  }
  waiter_.Start();
  const auto addresses = ResolveHost(uri_.host, Deadline::After(uri_.budget()), waiter_);
  channels_.emplace(
      Channels{SnmpClient(uri_, addresses, waiter_), RawConnection(uri_, addresses, waiter_)});
}

void NetworkPort::Close() {
  Start();
  auto channels = std::exchange(channels_, std::nullopt);
  channels->raw.Close();
}

std::string_view NetworkPort::ExchangeSnmp(std::string_view request) {
  return Start().snmp.Exchange(request);
}

std::string NetworkPort::Status() {
  const std::string_view bytes = ExchangeSnmp(MakeStatusRequest(FreshRequestId()));
  const auto answer = ReadSnmpMessage(bytes);
  if (!answer || answer->errorStatus != 0 || answer->valueTag != kSnmpOctetString) {
    throw DriverError(DriverCode::kPrinter, "the printer has no status text (SNMP error-status " +
                                                std::to_string(answer ? answer->errorStatus : 0) +
                                                ")");
  }
  return std::string(answer->value);
}

void NetworkPort::Write(std::string_view bytes) {
  Start().raw.Write(bytes);
}

void NetworkPort::Flush() {
  Start().raw.Flush();
}

std::size_t NetworkPort::Read(char* buffer, std::size_t capacity) {
  return Start().raw.Read(buffer, capacity);
}

std::size_t NetworkPort::Control(std::string_view command, char* reply, std::size_t capacity) {
  RawConnection& raw = Start().raw;
  try {
    raw.Write(command);
    raw.Flush();
    return raw.Read(reply, capacity);
  } catch (...) {
    raw.Abort();
    throw;
  }
}

// Begins an operation on the open port.
NetworkPort::Channels& NetworkPort::Start() {
  if (!channels_) {
    throw DriverError(DriverCode::kParameter, "the port is not open");
  }
  waiter_.Start();
  return *channels_;
}

}  // namespace ZIOP
