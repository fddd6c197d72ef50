// Device URIs that are read and that are refused.
#include "port_driver/DeviceURI.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "port_driver/DriverError.h"

namespace ZIOP {
namespace {

std::string Describe(const DeviceURI& uri) {
  return uri.host + " " + std::to_string(uri.rawPort) + " " + std::to_string(uri.snmpPort) + " " +
         std::to_string(uri.timeout.count()) + " " + std::to_string(uri.retries) +
         (uri.matchesIdOnly ? " id" : "");
}

TEST(DeviceURITest, Reads) {
  // Host, raw port, SNMP port, timeout, retries, match.
  const struct {
    const char* text;
    const char* fields;
  } kRows[] = {
      {"socket://printer", "printer 9100 161 1000 3"},
      {"SOCKET://Printer.example/", "Printer.example 9100 161 1000 3"},
      {"socket://192.0.2.7:9101", "192.0.2.7 9101 161 1000 3"},
      {"socket://[2001:db8::7]", "2001:db8::7 9100 161 1000 3"},
      {"socket://[::1]:65535", "::1 65535 161 1000 3"},
      {"socket://[fe80::1%25eth0]:1", "fe80::1%eth0 1 161 1000 3"},
      {"socket://pr%69nter", "printer 9100 161 1000 3"},
      {"socket://M%C3%BCller.local", "M\xC3\xBCller.local 9100 161 1000 3"},
      {"socket://h?snmp=1161", "h 9100 1161 1000 3"},
      {"socket://h:9/?timeout=1&retries=0&snmp=65535&match=id", "h 9 65535 1 0 id"},
      {"socket://h?timeout=600000&retries=100", "h 9100 161 600000 100"},
      {"socket://h?%73nmp=%31%36%32", "h 9100 162 1000 3"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(Describe(DeviceURI::Parse(row.text)), row.fields) << row.text;
  }
}

TEST(DeviceURITest, Refuses) {
  const struct {
    std::string text;
    const char* reason;  // part of the message
  } kRows[] = {
      {"", "no scheme"},
      {"printer", "no scheme"},
      {"://h", "no scheme"},
      {"socket:h", "no scheme"},
      {"file:///dev/usb/lp0", "no port for scheme \"file\""},
      {"sockets://h", "no port for scheme"},
      {"socket://", "no host"},
      {"socket://:9100", "no host"},
      {"socket://?snmp=1", "no host"},
      {"socket://user@h", "no host name has"},
      {"socket://h/queue", "no host name has"},
      {"socket://h//", "no host name has"},
      {"socket://a%20b", "no host name has"},
      {"socket://a%00b", "no host name has"},
      {"socket://a%2Fb", "no host name has"},
      {"socket://h%", "hexadecimal"},
      {"socket://h%4", "hexadecimal"},
      {"socket://h%4x", "hexadecimal"},
      {"socket://h#part", "no host name has"},
      {"socket://[::1", "without \"]\""},
      {"socket://[]", "no IPv6 address"},
      {"socket://[192.0.2.7]", "no IPv6 address"},
      {"socket://[fe80::1%25]", "zone"},
      {"socket://[fe80::1%25a/b]", "zone"},
      {"socket://[::1]9100", "between host and port"},
      {"socket://::1", "no host"},
      {"socket://h:", "port is no number"},
      {"socket://h:0", "port is no number"},
      {"socket://h:65536", "port is no number"},
      {"socket://h:+80", "port is no number"},
      {"socket://h:99999999999999999999", "port is no number"},
      {"socket://h?", "unknown option \"\""},
      {"socket://h?snmp=161&", "unknown option \"\""},
      {"socket://h?waiteof=1", "unknown option \"waiteof\""},
      {"socket://h?SNMP=161", "unknown option"},
      {"socket://h?a%0Ab=1", "unknown option \"a\\x0Ab\""},
      {"socket://h?snmp", "snmp is no number"},
      {"socket://h?snmp=0", "snmp is no number from 1 to 65535"},
      {"socket://h?snmp=161&retries=1&snmp=162", "\"snmp\" given twice"},
      {"socket://h?match=id&match=id", "\"match\" given twice"},
      {"socket://h?match=oid", "match takes"},
      {"socket://h?timeout=0", "timeout is no number"},
      {"socket://h?timeout=600001", "timeout is no number"},
      {"socket://h?timeout=-1", "timeout is no number"},
      {"socket://h?retries=101", "retries is no number"},
      {"socket://h?retries=1=1", "retries is no number"},
      {"socket://h?retries=", "retries is no number"},
      {std::string("socket://h\0", 11), "percent-encode"},
      {"socket://h\n", "percent-encode"},
      {" socket://h", "percent-encode"},
      {"socket://\xC3\xA9", "percent-encode"},
      {"socket://" + std::string(256, 'h'), "host too long"},
      {"socket://" + std::string(kMaximumURILength, 'h'), "longer than 2048 bytes"},
  };
  for (const auto& row : kRows) {
    try {
      ADD_FAILURE() << "\"" << row.text << "\" read as " << Describe(DeviceURI::Parse(row.text));
    } catch (const DriverError& error) {
      EXPECT_NE(std::string(error.what()).find(row.reason), std::string::npos)
          << "\"" << row.text << "\": " << error.what();
    }
  }
}

}  // namespace
}  // namespace ZIOP
