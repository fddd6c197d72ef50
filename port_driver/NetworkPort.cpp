// Operations of a network port.
#include "port_driver/NetworkPort.h"

#include <limits>
#include <random>
#include <utility>

#include "port_driver/DriverError.h"
#include "port_driver/SnmpMessage.h"

namespace ZIOP {
namespace {

// Begins anywhere and does not come again before all others have.
int32_t FreshRequestId() {
  static_assert(std::minstd_rand::min() == 1);
  static_assert(std::minstd_rand::max() <= std::numeric_limits<int32_t>::max());
  thread_local std::minstd_rand source(std::random_device{}());
  return static_cast<int32_t>(source());
}

}  // namespace

void NetworkPort::Open() {
  StartToOpen(channels_ != nullptr);
  channels_ = std::make_unique<Channels>(
      uri_, ResolveHost(uri_.host, Deadline::After(uri_.budget()), waiter_), waiter_);
}

void NetworkPort::Close() {
  Start();
  const auto channels = std::move(channels_);
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

NetworkPort::Channels& NetworkPort::Start() {
  StartOnOpen(channels_ != nullptr);
  return *channels_;
}

}  // namespace ZIOP
