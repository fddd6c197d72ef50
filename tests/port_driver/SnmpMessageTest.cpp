// Which bytes are an SNMP message, and which message answers which.
#include "port_driver/SnmpMessage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/port_driver/SnmpSamples.h"

namespace ZIOP {
namespace {

// NOLINTNEXTLINE(misc-unused-using-decls): it is used
using std::string_literals::operator""s;

// Whether bytes are a message, read from a block of exactly their size; its views lie inside.
bool IsMessage(const std::string& bytes) {
  const std::unique_ptr<char[]> block(new char[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), block.get());
  const auto message = ReadSnmpMessage({block.get(), bytes.size()});
  for (const auto view : {&SnmpMessage::name, &SnmpMessage::value}) {
    if (message && !(*message.*view).empty()) {
      EXPECT_GE((*message.*view).data(), block.get());
      EXPECT_LE((*message.*view).data() + (*message.*view).size(), block.get() + bytes.size());
    }
  }
  return message.has_value();
}

TEST(SnmpMessageTest, StatusRequestHasItsFields) {
  const std::string bytes = MakeStatusRequest(0x12345678);
  const auto message = ReadSnmpMessage(bytes).value();
  EXPECT_EQ(message.version, 0);
  EXPECT_EQ(message.pduType, 0xA0);
  EXPECT_EQ(message.requestId, 0x12345678);
  EXPECT_EQ(message.name, "\x2B\x06\x01\x04\x01\x95\x1E\x01\x02\x02\x1E\x01\x01\x01");
  EXPECT_EQ(message.valueTag, 5);
  EXPECT_NE(bytes.find("\x04\x06orchid"), std::string::npos);
}

TEST(SnmpMessageTest, AnswersAreToldByTheirFields) {
  const struct {
    void (*change)(SnmpSample&);
    bool answers, answersById;
  } kRows[] = {
      {[](SnmpSample& s) { s.errorStatus = "\x02"; }, true, true},
      {[](SnmpSample& s) { s.id = "\0\0\0\x02"s; }, true, true},
      {[](SnmpSample& s) { s.id = "\xFE"; }, false, false},
      {[](SnmpSample& s) { s.version = "\x01"; }, false, false},
      {[](SnmpSample& s) { s.type = 0xA0; }, false, false},
      {[](SnmpSample& s) { s.name += "\x01"; }, false, true},
  };
  const std::string request = SampleRequest();
  for (const auto& row : kRows) {
    const std::string answer = Changed(row.change).Bytes();
    const auto asked = ReadSnmpMessage(request).value(), read = ReadSnmpMessage(answer).value();
    EXPECT_EQ(AnswersRequest(read, asked, false), row.answers) << &row - kRows;
    EXPECT_EQ(AnswersRequest(read, asked, true), row.answersById) << &row - kRows;
  }
}

TEST(SnmpMessageTest, NeitherPartsNorDamageAreReadBeyondTheirEnd) {
  const std::string whole = SampleAnswer(200);
  for (std::size_t position = 0; position < whole.size(); ++position) {
    EXPECT_FALSE(IsMessage(whole.substr(0, position))) << position;
    for (int value = 0; value < 256; ++value) {
      std::string damaged = whole;
      damaged[position] = static_cast<char>(value);
      EXPECT_TRUE(!IsMessage(damaged) || position != 1 || damaged == whole) << value;
    }
  }
}

TEST(SnmpMessageTest, TellsMessagesFromOtherBytes) {
  const std::string version = Element(2, "\0"s), community = Element(4, "orchid");
  const std::string numbers = Element(2, "\x02") + Element(2, "\0"s) + Element(2, "\0"s);
  const std::string name = Element(6, "\x2B\x06"), null = Element(5, ""), pair = name + null;
  const std::string binding = Element(0x30, pair), list = Element(0x30, binding);
  const std::string pdu = Element(0xA2, numbers + list);
  const auto message = [](const std::string& body) { return Element(0x30, body); };
  const auto withPdu = [&](const std::string& content) {
    return message(version + community + Element(0xA2, content));
  };
  const auto withBindings = [&](const std::string& content) {
    return withPdu(numbers + Element(0x30, content));
  };
  const auto withPair = [&](const std::string& content) {
    return withBindings(Element(0x30, content));
  };
  const std::string plain = withPair(pair);
  const struct {
    const char* what;
    std::string bytes;
    bool accepted;
  } kRows[] = {
      {"plain", plain, true},
      {"no bindings", withBindings(""), true},
      {"long length", "\x30\x82\0"s + plain.substr(1), true},
      {"unknown value type", withPair(name + Element(0x46, "1")), true},
      {"trailing byte", plain + "\0"s, false},
      {"trailing element in message", message(version + community + pdu + null), false},
      {"trailing element in PDU", withPdu(numbers + list + null), false},
      {"trailing byte in bindings", withBindings(binding + "\x30"), false},
      {"trailing element in binding", withPair(pair + null), false},
      {"second binding without value", withBindings(binding + Element(0x30, name)), false},
      {"empty object identifier", withPair(Element(6, "") + null), false},
      {"sub-identifier that goes on", withPair(Element(6, "\x2B\x86") + null), false},
      {"value type of two bytes", withPair(name + "\x9F\x01\x00"s), false},
      {"indefinite length", "\x30\x80"s + plain.substr(2) + "\0\0"s, false},
      {"length of five bytes", "\x30\x85\0\0\0\0"s + plain.substr(1), false},
      {"largest length", "\x30\x84\xFF\xFF\xFF\xFF"s + plain.substr(2), false},
      {"version of five bytes", message(Element(2, "\0\0\0\0\0"s) + community + pdu), false},
      {"version without bytes", message(Element(2, "") + community + pdu), false},
      {"no error-index", withPdu(numbers.substr(3) + list), false},
      {"no PDU", message(version + community), false},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(IsMessage(row.bytes), row.accepted) << row.what;
  }
}

}  // namespace
}  // namespace ZIOP
