// Operations of a network port.
#include "port_driver/NetworkPort.h"

#include <limits>
#include <random>
#include <utility>

#include "port_driver/DriverError.h"
#include "port_driver/SnmpMessage.h"

namespace ZIOP {
namespace {

// One that nobody can guess from those before.
int32_t FreshRequestId() {
  thread_local std::random_device source;
  return std::uniform_int_distribution<int32_t>(1, std::numeric_limits<int32_t>::max())(source);
}

}  // namespace

void NetworkPort::Open() {
  StartToOpen(channels_.has_value());
  channels_.emplace(uri(), ResolveHost(uri().host, Deadline::After(uri().budget()), waiter_),
                    waiter_);
}

void NetworkPort::Close() {
  struct Closing {
    ~Closing() { channels.reset(); }
    std::optional<Channels>& channels;
  };
  Start();
  const Closing closing{channels_};
  channels_->raw.Close();
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
  StartOnOpen(channels_.has_value());
  return *channels_;
}

}  // namespace ZIOP
