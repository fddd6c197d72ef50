// Device URIs that are read and that are refused.
#include "port_driver/DeviceURI.h"

#include <gmock/gmock.h>

#include "port_driver/DriverError.h"

namespace ZIOP {
namespace {

// The fields of a URI, or why it is refused.
std::string Describe(const std::string& text) {
  try {
    const DeviceURI uri = DeviceURI::Parse(text);
    if (uri.isLocal()) {
      return uri.path + " " + std::to_string(uri.budget().count());
    }
    return uri.host + " " + std::to_string(uri.rawPort) + " " + std::to_string(uri.snmpPort) + " " +
           std::to_string(uri.timeout.count()) + " " + std::to_string(uri.retries) +
           (uri.matchesIdOnly ? " id" : "");
  } catch (const DriverError& error) {
    return error.what();
  }
}

TEST(DeviceURITest, IsReadStrictly) {
  const struct {
    std::string text;
    const char* result;  // how it ends
  } kRows[] = {
      // Host, raw port, SNMP port, timeout, retries, match.
      {"SOCKET://Printer.example/", "Printer.example 9100 161 1000 3"},
      {"socket://[fe80::1%25eth0]:65535", "fe80::1%eth0 65535 161 1000 3"},
      {"socket://M%C3%BCller.local", "M\xC3\xBCller.local 9100 161 1000 3"},
      {"socket://h:9/?timeout=1&retries=0&snmp=65535&match=id", "h 9 65535 1 0 id"},
      {"socket://h?%74imeout=%36%30%30000&retries=100", "h 9100 161 600000 100"},
      // Path, the port's own time.
      {"File:///dev/usb/lp0", "/dev/usb/lp0 1000"},
      {"file:///d%C3%A9v/a%3F%23%25b?timeout=600000", "/d\xC3\xA9v/a?#%b 600000"},
      {"file://", "no absolute path behind \"file://\""},
      {"file://localhost/dev/usb/lp0", "no absolute path behind \"file://\""},
      {"file:///dev/lp%00", "no device's path has"},
      {"file:///dev/lp0#1", "no device's path has"},
      {"file:///dev/lp0?retries=1", "unknown option \"retries\""},
      {"file:///dev/lp0?timeout=0", "timeout is no number from 1 to 600000"},
      {"usb://h", "no port for scheme \"usb\""},
      {"://h", "no scheme"},
      {"socket://?snmp=1", "no host"},
      {"socket://h//", "no host name has"},
      {"socket://a%00b", "no host name has"},
      {"socket://h%4", "hexadecimal digits"},
      {"socket://[::1", "\"[\" without \"]\""},
      {"socket://[192.0.2.7]", "no IPv6 address between the brackets"},
      {"socket://[::1%00]", "no IPv6 address between the brackets"},
      {"socket://[fe80::1%25]", "unusable zone of the IPv6 address"},
      {"socket://[::1]9100", "text between host and port"},
      {"socket://h:0", "port is no number from 1 to 65535"},
      {"socket://h:65536", "port is no number from 1 to 65535"},
      {"socket://h:99999999999999999999", "port is no number from 1 to 65535"},
      {"socket://h?snmp=161&", "unknown option \"\""},
      {"socket://h?a%0Ab=1", "unknown option \"a\\x0Ab\""},
      {"socket://h?snmp=161&retries=1&snmp=162", "\"snmp\" given twice"},
      {"socket://h?match=oid", "match takes \"id\" alone"},
      {"socket://h?timeout=600001", "timeout is no number from 1 to 600000"},
      {"socket://h?retries=101", "retries is no number from 0 to 100"},
      {std::string("socket://h\0", 11), "has to percent-encode"},
      {"socket://\xC3\xA9", "has to percent-encode"},
      {"socket://" + std::string(256, 'h'), "host too long"},
      {"socket://" + std::string(kMaximumURILength, 'h'), "longer than 2048 bytes"},
  };
  for (const auto& row : kRows) {
    EXPECT_THAT(Describe(row.text), testing::EndsWith(row.result)) << row.text;
  }
}

}  // namespace
}  // namespace ZIOP
