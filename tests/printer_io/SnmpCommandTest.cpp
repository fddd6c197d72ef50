// The SNMP request that carries a printer command, against an encoder of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "printer_io/CZIOCommon.h"
#include "printer_io/RemoteMode.h"

namespace {

using std::string_literals::operator""s;  // NOLINT(misc-unused-using-decls)

std::string Byte(std::size_t value) {
  return std::string(1, static_cast<char>(value & 0xFF));
}

std::string Element(int tag, const std::string& content) {
  std::string length;
  for (std::size_t rest = content.size(); rest != 0; rest >>= 8) length.insert(0, Byte(rest));
  if (content.size() >= 0x80) length.insert(0, Byte(0x80 + length.size()));
  if (content.empty()) length = Byte(0);
  return Byte(static_cast<std::size_t>(tag)) + length + content;
}

// The request by the field list of the message, from the outside inwards.
std::string ReferenceRequest(const std::string& command) {
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
  bytes.shrink_to_fit();
  std::vector<char> request(512, '\x55');
  long length = -7;
  const int result = CZIOCommon::CreateSNMPCommand(bytes.data(), static_cast<long>(bytes.size()),
                                                   request.data(), &length);
  if (result != 0) {
    EXPECT_EQ(result, -1);
    EXPECT_EQ(length, -7) << "untouched after a failure";
    EXPECT_EQ(std::count(request.begin(), request.end(), '\x55'), 512);
    return std::nullopt;
  }
  return std::string(request.data(), static_cast<std::size_t>(length));
}

void ExpectReference(const std::string& command) {
  const std::string expected = ReferenceRequest(command);
  const std::optional<std::string> request = Request(command);
  ASSERT_EQ(request.has_value(), expected.size() <= 512) << command.size() << " bytes";
  if (request) {
    ASSERT_EQ(*request, expected) << command.size() << " bytes";
  }
}

std::string RemoteStart() {
  return {std::begin(Ravik::CMD_REMOTE_START), std::end(Ravik::CMD_REMOTE_START)};
}

TEST(SnmpCommand, LaysOutTheWorkedExample) {
  const std::string expected =
      "\x30\x32\x02\x01\x00\x04\x06orchid\xA0\x25\x02\x01\x02\x02\x01\x00\x02\x01\x00"
      "\x30\x1A\x30\x18\x06\x14\x2B\x06\x01\x04\x01\x95\x1E\x01\x02\x02\x28\x01\x01\x02"
      "\x05\x08\x00\x02XY\x05\x00"s;
  EXPECT_EQ(Request(RemoteStart() + "XY\x1B\0\0\0"s), expected);
}

TEST(SnmpCommand, AgreesWithTheReferenceForEveryLength) {
  for (std::size_t n = 0; n <= 600; ++n) {
    ExpectReference(std::string(n, 'A'));
    ExpectReference(std::string(n, '\xC3'));
    ExpectReference(std::string(n / 2, '\x80') + std::string(n - n / 2, '\x7F'));
  }
  std::minstd_rand random(1);
  for (int round = 0; round < 2000; ++round) {
    std::string command(random() % 460, '\0');
    for (char& c : command) c = static_cast<char>(random());
    if (command.size() >= 4) command[command.size() - 4] = 'x';  // no end of a framing
    ExpectReference(command);
  }
}

TEST(SnmpCommand, StripsTheFramingByItsLooseMatch) {
  const std::string start = RemoteStart();
  const std::string seven = start.substr(0, 7);
  struct Case {
    const char* name;
    std::string command;
    std::optional<std::string> carried;
  };
  const Case cases[] = {
      {"nothing", "", ""},
      {"no framing", "EX\x02\x00\x01\x02"s, "EX\x02\x00\x01\x02"s},
      {"start alone", start, ""},
      {"start and end", start + "\x1B\0\0\0"s, ""},
      {"only the first seven bytes of a start", seven + "12345678XY", "XY"},
      {"six bytes of a start", start.substr(0, 6), start.substr(0, 6)},
      {"six bytes of a start, then another", start.substr(0, 6) + "\x01XY",
       start.substr(0, 6) + "\x01XY"},
      {"start without what it drops", seven, std::nullopt},
      {"start one byte short", start.substr(0, 14), std::nullopt},
      {"start behind a byte", "x" + start, "x" + start},
      {"end alone", "\x1B\0\0\0"s, ""},
      {"only the first two bytes of an end", "AB\x1B\0xy"s, "AB"},
      {"escape without its zero", "AB\x1B\x01\0\0"s, "AB\x1B\x01\0\0"s},
      {"end one byte short", "\x1B\0\0"s, "\x1B\0\0"s},
      {"end too early", "\x1B\0\0\0x"s, "\x1B\0\0\0x"s},
      {"two ends", "A\x1B\0\0\0\x1B\0\0\0"s, "A\x1B\0\0\0"s},
      {"end one byte short behind a start", start + "\x1B\0\0"s, "\x1B\0\0"s},
      {"end inside the start", seven + "1234\x1B\0yz"s, std::nullopt},
      {"end across the end of the start", seven + "1234567\x1B\0yz"s, std::nullopt},
      {"end right behind the start", seven + "12345678\x1B\0yz"s, ""},
  };
  for (const Case& c : cases) {
    std::optional<std::string> expected;
    if (c.carried) expected = ReferenceRequest(*c.carried);
    EXPECT_EQ(Request(c.command), expected) << c.name;
  }
}

TEST(SnmpCommand, RefusesWhatIsNoCommand) {
  char bytes[512] = {};
  long length = 0;
  EXPECT_EQ(CZIOCommon::CreateSNMPCommand(bytes, -1, bytes, &length), -1);
  EXPECT_EQ(CZIOCommon::CreateSNMPCommand(nullptr, 1, bytes, &length), -1);
  EXPECT_EQ(CZIOCommon::CreateSNMPCommand(bytes, 1, nullptr, &length), -1);
  EXPECT_EQ(CZIOCommon::CreateSNMPCommand(bytes, 1, bytes, nullptr), -1);
  EXPECT_EQ(CZIOCommon::CreateSNMPCommand(nullptr, 0, bytes, &length), 0);
  EXPECT_FALSE(Request(RemoteStart() + std::string(493, 'A') + "\x1B\0\0\0"s)) << "512 bytes";
}

TEST(SnmpCommand, WritesLengthsInTheirShortestForm) {
  struct Case {
    unsigned int length;
    std::string written;
  };
  const Case cases[] = {
      {0, "\x30\x00"s},
      {127, "\x30\x7F"},
      {128, "\x30\x81\x80"},
      {255, "\x30\x81\xFF"},
      {256, "\x30\x82\x01\x00"s},
      {65535, "\x30\x82\xFF\xFF"},
      {65536, "\x30\x83\x01\x00\x00"s},
      {16777215, "\x30\x83\xFF\xFF\xFF"},
      {16777216, "\x30\x84\x01\x00\x00\x00"s},
      {4294967295U, "\x30\x84\xFF\xFF\xFF\xFF"},
  };
  for (const Case& c : cases) {
    std::string area(8, '.');
    auto* const end = reinterpret_cast<unsigned char*>(area.data()) + 7;
    unsigned char* cursor = end;
    const int written = CZIOCommon::WriteASN1Size(&cursor, 0x30, c.length);
    EXPECT_EQ(written, end - cursor);
    EXPECT_EQ(area, std::string(7 - c.written.size(), '.') + c.written + ".") << c.length;
  }
}

}  // namespace
