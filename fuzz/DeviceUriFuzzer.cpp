// Device URIs.
//
// Input: the URI.
#include <cstdio>

#include "fuzz/Fuzz.h"
#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"

namespace {

using ZIOP::DeviceURI;

std::string Encoded(const std::string& text) {
  std::string encoded;
  for (const char c : text) {
    char escape[4];
    std::snprintf(escape, sizeof(escape), "%%%02X", static_cast<unsigned char>(c));
    encoded += escape;
  }
  return encoded;
}

// A URI with every part written out.
std::string Written(const DeviceURI& uri) {
  if (uri.isLocal()) {
    return "file:///" + Encoded(uri.path.substr(1)) +
           "?timeout=" + std::to_string(uri.timeout.count());
  }
  const bool is_address = uri.host.find(':') != std::string::npos;
  const std::string host = is_address ? "[" + Encoded(uri.host) + "]" : Encoded(uri.host);
  return "socket://" + host + ":" + std::to_string(uri.rawPort) +
         "/?snmp=" + std::to_string(uri.snmpPort) +
         "&timeout=" + std::to_string(uri.timeout.count()) +
         "&retries=" + std::to_string(uri.retries) + (uri.matchesIdOnly ? "&match=id" : "");
}

void Check(const DeviceURI& uri) {
  using std::chrono::milliseconds;
  FUZZ_CHECK(uri.isLocal() == uri.host.empty());
  FUZZ_CHECK(!uri.isLocal() || uri.path.front() == '/');
  FUZZ_CHECK((uri.host + uri.path).find('\0') == std::string::npos);
  FUZZ_CHECK(uri.rawPort != 0 && uri.snmpPort != 0);
  FUZZ_CHECK(uri.timeout >= milliseconds(1) && uri.timeout <= milliseconds(600000));
  FUZZ_CHECK(uri.retries >= 0 && uri.retries <= 100);
  FUZZ_CHECK(uri.budget() >= uri.timeout);
  const std::string written = Written(uri);
  if (written.size() > ZIOP::kMaximumURILength) return;
  const DeviceURI again = DeviceURI::Parse(written);
  FUZZ_CHECK(again.host == uri.host && again.path == uri.path && again.rawPort == uri.rawPort &&
             again.snmpPort == uri.snmpPort && again.timeout == uri.timeout &&
             again.retries == uri.retries && again.matchesIdOnly == uri.matchesIdOnly);
}

// Whether the reason is one line that can be printed.
bool IsPrintable(const std::string& reason) {
  for (const char c : reason) {
    if (c < 0x20 || c > 0x7E) return false;
  }
  return !reason.empty();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<char> text(data, data + size);  // no zero behind it
  DeviceURI uri;
  try {
    uri = DeviceURI::Parse({text.data(), text.size()});
  } catch (const ZIOP::DriverError& error) {
    FUZZ_CHECK(error.code() == ZIOP::DriverCode::kParameter ||
               error.code() == ZIOP::DriverCode::kUnsupported);
    FUZZ_CHECK(IsPrintable(error.what()));
    return 0;
  }
  Check(uri);
  return 0;
}
