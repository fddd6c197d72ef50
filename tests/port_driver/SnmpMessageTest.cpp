// Which bytes are an SNMP message, and which message answers which.
#include "port_driver/SnmpMessage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "tests/port_driver/SnmpSamples.h"

namespace ZIOP {
namespace {

// NOLINTNEXTLINE(misc-unused-using-decls): it is used
using std::string_literals::operator""s;

// Reads bytes from a block of exactly their size and checks that what comes back lies inside.
std::optional<SnmpMessage> ReadChecked(const std::string& bytes) {
  const std::unique_ptr<char[]> block(new char[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), block.get());
  const auto message = ReadSnmpMessage({block.get(), bytes.size()});
  for (const std::string_view view :
       {message ? message->name : "", message ? message->value : ""}) {
    if (message && !view.empty()) {
      EXPECT_GE(view.data(), block.get());
      EXPECT_LE(view.data() + view.size(), block.get() + bytes.size());
    }
  }
  return message;
}

TEST(SnmpMessageTest, ReadsTheFields) {
  SnmpSample sample;
  sample.version = "\x01";
  sample.id = "\xFF\x00\x80"s;
  sample.errorStatus = "\x05";
  const std::string bytes = sample.Bytes();
  const auto message = ReadSnmpMessage(bytes);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->version, 1);
  EXPECT_EQ(message->pduType, 0xA2);
  EXPECT_EQ(message->requestId, -0xFF80);
  EXPECT_EQ(message->errorStatus, 5);
  EXPECT_EQ(message->name, sample.name);
  EXPECT_EQ(message->valueTag, 4);
  EXPECT_EQ(message->value, "value");
}

TEST(SnmpMessageTest, StatusRequestIsAMessage) {
  for (const int32_t id : {0, 1, 0x12345678, 0x7FFFFFFF}) {
    const std::string bytes = MakeStatusRequest(id);
    const auto message = ReadSnmpMessage(bytes);
    ASSERT_TRUE(message) << id;
    EXPECT_EQ(message->version, 0);
    EXPECT_EQ(message->pduType, 0xA0);
    EXPECT_EQ(message->requestId, id);
    EXPECT_EQ(message->name, "\x2B\x06\x01\x04\x01\x95\x1E\x01\x02\x02\x1E\x01\x01\x01");
    EXPECT_EQ(message->valueTag, 5);
    EXPECT_NE(bytes.find("\x04\x06orchid"), std::string::npos);
  }
}

TEST(SnmpMessageTest, NoPartOfAMessageIsOne) {
  for (const std::string& whole : {SnmpSample().Bytes(), SampleAnswer(200)}) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      EXPECT_FALSE(ReadChecked(whole.substr(0, length))) << length << " of " << whole.size();
    }
    EXPECT_TRUE(ReadChecked(whole));
    EXPECT_FALSE(ReadChecked(whole + '\0'));
  }
}

TEST(SnmpMessageTest, DamageStaysInside) {
  const std::string whole = SampleAnswer(200);
  for (std::size_t position = 0; position < whole.size(); ++position) {
    for (int value = 0; value < 256; ++value) {
      std::string damaged = whole;
      damaged[position] = static_cast<char>(value);
      const auto message = ReadChecked(damaged);
      // A changed length never fits.
      if (position == 1 && damaged != whole) {
        EXPECT_FALSE(message) << value;
      }
    }
  }
}

std::string Message(const std::string& body) {
  return Element(0x30, body);
}

TEST(SnmpMessageTest, TellsMessagesFromOtherBytes) {
  const std::string version = Element(0x02, "\0"s), community = Element(0x04, "orchid");
  const std::string numbers = Element(2, "\x02") + Element(2, "\0"s) + Element(2, "\0"s);
  const std::string name = Element(6, "\x2B\x06"), null = Element(5, "");
  const std::string binding = Element(0x30, name + null), list = Element(0x30, binding);
  const auto withPdu = [&](const std::string& pdu) {
    return Message(version + community + Element(0xA2, pdu));
  };
  const auto withBinding = [&](const std::string& content) {
    return withPdu(numbers + Element(0x30, Element(0x30, content)));
  };
  const std::string plain = withPdu(numbers + list);
  const struct {
    const char* what;
    std::string bytes;
    bool accepted;
  } kRows[] = {
      {"plain", plain, true},
      {"no bindings", withPdu(numbers + Element(0x30, "")), true},
      {"two bindings", withPdu(numbers + Element(0x30, binding + binding)), true},
      {"long length", "\x30\x82\0"s + plain.substr(1), true},
      {"unknown value type", withBinding(name + Element(0x46, "1")), true},
      {"trailing byte", plain + "\0"s, false},
      {"trailing element in message",
       Message(version + community + Element(0xA2, numbers + list) + null), false},
      {"trailing element in PDU", withPdu(numbers + list + null), false},
      {"trailing byte in bindings", withPdu(numbers + Element(0x30, binding + "\x30")), false},
      {"trailing element in binding", withBinding(name + null + null), false},
      {"second binding without value",
       withPdu(numbers + Element(0x30, binding + Element(0x30, name))), false},
      {"binding without value", withBinding(name), false},
      {"value before name", withBinding(null + name), false},
      {"empty object identifier", withBinding(Element(6, "") + null), false},
      {"sub-identifier that goes on", withBinding(Element(6, "\x2B\x86") + null), false},
      {"value type of two bytes", withBinding(name + "\x9F\x01\x00"s), false},
      {"indefinite length", "\x30\x80"s + plain.substr(2) + "\0\0"s, false},
      {"length of five bytes", "\x30\x85\0\0\0\0"s + plain.substr(1), false},
      {"largest length", "\x30\x84\xFF\xFF\xFF\xFF"s + plain.substr(2), false},
      {"no version", Message(community + Element(0xA2, numbers + list)), false},
      {"version of five bytes",
       Message(Element(2, "\0\0\0\0\0"s) + community + Element(0xA2, numbers + list)), false},
      {"version without bytes", Message(Element(2, "") + community + Element(0xA2, numbers + list)),
       false},
      {"no community", Message(version + Element(0xA2, numbers + list)), false},
      {"no error-index", withPdu(numbers.substr(3) + list), false},
      {"no PDU", Message(version + community), false},
      {"not a sequence", Element(0x31, plain.substr(2)), false},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(ReadChecked(row.bytes).has_value(), row.accepted) << row.what;
  }
}

}  // namespace
}  // namespace ZIOP
