#include "port_driver/DriverTrace.h"

#include <netdb.h>
#include <sys/socket.h>

#include <new>

namespace ZIOP {
namespace {

// What keeps a datagram from being the answer that is waited for.
const char* Reason(const SnmpMessage* message, const SnmpMessage& asked, bool matchesIdOnly) {
  if (message == nullptr) return "no SNMP message";
  if (message->pduType != kSnmpGetResponse) return "no GetResponse";
  if (message->version != asked.version) return "another SNMP version";
  if (message->requestId != asked.requestId) return "another request-id";
  if (!matchesIdOnly && message->name != asked.name) return "another object identifier";
  return "from another host";
}

const char* Words(DriverCode code) {
  switch (code) {
    case DriverCode::kSuccess:
      return "success";
    case DriverCode::kParameter:
      return "wrong call or unreadable device URI";
    case DriverCode::kSystem:
      return "the operating system refused";
    case DriverCode::kTimeout:
      return "the printer did not answer in time";
    case DriverCode::kUnsupported:
      return "not supported";
    case DriverCode::kMemory:
      return "out of memory";
    case DriverCode::kCancelled:
      return "cancelled";
    case DriverCode::kPrinter:
      return "the printer answered with an error or hung up";
  }
  return "unknown";
}

}  // namespace

void TraceFailure(const char* port, DriverCode code, const char* message) noexcept {
  if (!IsTraced()) return;
  try {
    Trace(port, "failed", {},
          "code=" + std::to_string(static_cast<int>(code)) + ' ' + Words(code) + ": " + message);
  } catch (const std::bad_alloc&) {
    // Without memory there is no line.
  }
}

void TraceFailedCall(const char* port, const char* call, int error) {
  if (IsTraced()) Trace(port, "failed", {}, DriverError::System(call, error).what());
}

std::string TraceAddress(const std::string& name, const HostAddress& address) {
  char host[NI_MAXHOST] = {};
  char port[NI_MAXSERV] = {};
  if (::getnameinfo(address.get(), address.length, host, sizeof host, port, sizeof port,
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
    return name + "=unknown";
  }
  const std::string text = address.family() == AF_INET6 ? '[' + std::string(host) + ']' : host;
  return name + '=' + text + ':' + port;
}

std::string TraceAnswer(const SnmpMessage& answer, std::size_t limit) {
  const std::string status = "error-status=" + std::to_string(answer.errorStatus);
  return answer.valueTag == kSnmpOctetString
             ? status + " value=" + Ravik::TraceQuoted(answer.value, limit)
             : status;
}

void SnmpTrace::StartTry(int attempt) {
  start_ = std::chrono::steady_clock::now();
  try_ = "try=" + std::to_string(attempt + 1) + '/' + std::to_string(uri_.retries + 1);
}

void SnmpTrace::TellSent(std::string_view request, const HostAddress& address) const {
  Trace("snmp", "send", request, try_ + ' ' + TraceAddress("to", address));
}

void SnmpTrace::TellAnswer(std::string_view bytes, const SnmpMessage& answer) const {
  Trace("snmp", "recv", bytes,
        try_ + ' ' + Ravik::TraceDuration(start_) + ' ' + TraceAnswer(answer));
}

void SnmpTrace::TellIgnored(std::string_view bytes, const SnmpMessage* message,
                            const SnmpMessage& asked) const {
  const std::string reason = Reason(message, asked, uri_.matchesIdOnly);
  Trace("snmp", "ignored", bytes, try_ + ' ' + Ravik::TraceDuration(start_) + ' ' + reason);
}

void SnmpTrace::TellTimeout() const {
  Trace("snmp", "timeout", {}, try_ + ' ' + Ravik::TraceDuration(start_));
}

}  // namespace ZIOP
