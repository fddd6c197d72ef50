// The SNMP request that carries a printer command, against an encoder of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "printer_io/CZIOCommon.h"

namespace {

using std::string_literals::operator""s;  // NOLINT(misc-unused-using-decls)

std::string Byte(std::size_t value) {
  return std::string(1, static_cast<char>(value & 0xFF));
}

// Tag and length in front of size bytes.
std::string Header(unsigned char tag, std::size_t size) {
  std::string length;
  for (std::size_t rest = size; rest != 0; rest >>= 8) length.insert(0, Byte(rest));
  if (size >= 0x80) length.insert(0, Byte(0x80 + length.size()));
  return Byte(tag) + (size == 0 ? Byte(0) : length);
}

std::string Element(unsigned char tag, const std::string& content) {
  return Header(tag, content.size()) + content;
}

// The request by the field list of the message, from the outside inwards.
std::string Reference(const std::string& command) {
  const std::size_t n = command.size();
  std::string object = "\x2B\x06\x01\x04\x01\x95\x1E\x01\x02\x02\x28\x01\x01\x02";
  for (const char c : Byte(n + 3) + "\x08" + Byte(n / 256) + Byte(n) + command) {
    const auto byte = static_cast<unsigned char>(c);
    object += byte < 0x80 ? Byte(byte) : Byte(0x81) + Byte(byte - 0x80U);
  }
  const std::string binding = Element(0x30, Element(0x06, object) + Element(0x05, ""));
  const std::string integers = Element(2, "\x02") + Element(2, "\0"s) + Element(2, "\0"s);
  return Element(0x30, Element(2, "\0"s) + Element(4, "orchid") +
                           Element(0xA0, integers + Element(0x30, binding)));
}

// The request for command; nothing when it is refused. Both buffers are as long as they may be
// used, so that the sanitizers see a byte too far.
std::optional<std::string> Request(const std::string& command) {
  std::vector<char> bytes(command.begin(), command.end());
  std::vector<char> request(512, '\x55');
  long length = -7;
  const int result = CZIOCommon::CreateSNMPCommand(bytes.data(), static_cast<long>(bytes.size()),
                                                   request.data(), &length);
  if (result == 0) return std::string(request.data(), static_cast<std::size_t>(length));
  EXPECT_EQ(result, -1);
  EXPECT_EQ(length, -7) << "untouched after a failure";
  EXPECT_EQ(std::count(request.begin(), request.end(), '\x55'), 512);
  return std::nullopt;
}

TEST(SnmpCommand, AgreesWithTheReferenceForEveryLength) {
  std::minstd_rand random(1);
  for (std::size_t n = 0; n <= 600; ++n) {
    std::string noise(n, '\0');
    for (char& c : noise) c = static_cast<char>(random());
    if (n >= 4) noise[n - 4] = 'x';  // no end of a framing
    for (const std::string& command : {std::string(n, '\x7F'), std::string(n, '\x80'), noise}) {
      const std::string expected = Reference(command);
      const std::optional<std::string> request = Request(command);
      ASSERT_EQ(request.has_value(), expected.size() <= 512) << n;
      ASSERT_EQ(request.value_or(expected), expected) << n;
    }
  }
}

TEST(SnmpCommand, StripsTheFramingByItsLooseMatch) {
  // Of a start only the first seven bytes count, of an end the first two; a start and an end that
  // drop more than there is, are refused.
  const std::string seven = "\x1B@\x1B(R\x08\0"s;
  const std::string start = seven + "\0REMOTE1"s;
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {start, ""},
      {start + "\x1B\0\0\0"s, ""},
      {start + "\x1B\0\0"s, "\x1B\0\0"s},
      {seven + "12345678XY", "XY"},
      {seven, std::nullopt},
      {start.substr(0, 14), std::nullopt},
      {"\x1B@\x1B(R\x08", "\x1B@\x1B(R\x08"},
      {"\x1B@\x1B(R\x08\x01XY", "\x1B@\x1B(R\x08\x01XY"},
      {"x" + start, "x" + start},
      {"\x1B\0\0\0"s, ""},
      {"AB\x1B\0xy"s, "AB"},
      {"AB\x1B\x01\0\0"s, "AB\x1B\x01\0\0"s},
      {"\x1B\0\0"s, "\x1B\0\0"s},
      {"\x1B\0\0\0x"s, "\x1B\0\0\0x"s},
      {"A\x1B\0\0\0\x1B\0\0\0"s, "A\x1B\0\0\0"s},
      {seven + "1234\x1B\0yz"s, std::nullopt},
      {seven + "1234567\x1B\0yz"s, std::nullopt},
      {seven + "12345678\x1B\0yz"s, ""}};
  for (const auto& [command, carried] : cases) {
    EXPECT_EQ(Request(command), carried ? std::optional(Reference(*carried)) : std::nullopt)
        << testing::PrintToString(command);
  }
}

TEST(SnmpCommand, WritesLengthsInTheirShortestForm) {
  for (const unsigned int length :
       {0U, 127U, 128U, 255U, 256U, 65535U, 65536U, 16777215U, 16777216U, 4294967295U}) {
    unsigned char area[8] = {};
    unsigned char* cursor = area + 7;
    const int written = CZIOCommon::WriteASN1Size(&cursor, 0x30, length);
    EXPECT_EQ(written, area + 7 - cursor);
    EXPECT_EQ(std::string(cursor, area + 7), Header(0x30, length)) << length;
    EXPECT_EQ(area[7] + std::count(area, cursor, 0), cursor - area) << "nothing else is written";
  }
}

}  // namespace
