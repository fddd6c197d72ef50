// Which bytes are an SNMP message, and which message answers which.
#include "port_driver/SnmpMessage.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/port_driver/Peer.h"

namespace ZIOP {
namespace {

std::string Bytes(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

// What bytes are to a request: no message, another message, an answer by the id alone, or its
// answer.
enum Kind { kNone, kOther, kById, kAnswer };

// Of bytes in a block of exactly their size, in which the views have to lie.
Kind KindOf(const std::string& bytes) {
  const std::string request = Bytes("301B020100040163A0130201020201000201003008300606022B060500");
  const std::vector<char> block(bytes.begin(), bytes.end());
  const auto message = ReadSnmpMessage({block.data(), block.size()});
  if (!message) {
    return kNone;
  }
  for (const auto view : {message->name, message->value}) {
    EXPECT_TRUE(view.empty() || (view.data() >= block.data() &&
                                 view.data() + view.size() <= block.data() + block.size()));
  }
  const auto asked = ReadSnmpMessage(request).value();
  const bool by_id = AnswersRequest(*message, asked, true);
  return AnswersRequest(*message, asked, false) ? kAnswer : by_id ? kById : kOther;
}

TEST(SnmpMessageTest, MakesTheStatusRequest) {
  EXPECT_EQ(MakeStatusRequest(0x12345678),
            Bytes("302F02010004066F7263686964A0220204123456780201000201003014"
                  "3012060E2B06010401951E0102021E0101010500"));
}

TEST(SnmpMessageTest, NeitherPartsNorDamageAreReadBeyondTheirEnd) {
  const std::string whole = SnmpAnswer(MakeStatusRequest(2), 200);
  for (std::size_t position = 0; position < whole.size(); ++position) {
    EXPECT_EQ(KindOf(whole.substr(0, position)), kNone) << position;
    for (int value = 0; value < 256; ++value) {
      std::string damaged = whole;
      damaged[position] = static_cast<char>(value);
      EXPECT_TRUE(KindOf(damaged) == kNone || position != 1 || damaged == whole) << value;
    }
  }
}

TEST(SnmpMessageTest, TellsAnswersFromOtherBytes) {
  const struct {
    Kind kind;
    const char* hex;
    const char* what;
  } kRows[] = {
      {kAnswer, "301B020100040163A2130201020201000201003008300606022B060500", "plain"},
      {kAnswer, "301B020100040163A2130201020201020201003008300606022B060500", "error-status"},
      {kAnswer, "301E020100040163A2160204000000020201000201003008300606022B060500", "long id"},
      {kAnswer, "3082001B020100040163A2130201020201000201003008300606022B060500", "long length"},
      {kAnswer, "301C020100040163A2140201020201000201003009300706022B06460131", "unknown type"},
      {kById, "301C020100040163A2140201020201000201003009300706032B06010500", "other name"},
      {kById, "3013020100040163A20B0201020201000201003000", "no bindings"},
      {kOther, "301B020100040163A2130201FE0201000201003008300606022B060500", "other id"},
      {kOther, "301B020101040163A2130201020201000201003008300606022B060500", "other version"},
      {kOther, "301B020100040163A0130201020201000201003008300606022B060500", "request"},
      {kNone, "301B020100040163A2130201020201000201003008300606022B06050000", "trailing byte"},
      {kNone, "301D020100040163A2130201020201000201003008300606022B0605000500", "after PDU"},
      {kNone, "301D020100040163A2150201020201000201003008300606022B0605000500", "after bindings"},
      {kNone, "301C020100040163A2140201020201000201003009300606022B06050030", "after a binding"},
      {kNone, "301D020100040163A215020102020100020100300A300806022B0605000500", "after a value"},
      {kNone, "3021020100040163A219020102020100020100300E300606022B060500300406022B06",
       "second binding without value"},
      {kNone, "3019020100040163A2110201020201000201003006300406000500", "empty name"},
      {kNone, "301B020100040163A2130201020201000201003008300606022B860500", "unfinished name"},
      {kNone, "301C020100040163A2140201020201000201003009300706022B069F0100", "type of two bytes"},
      {kNone, "3080020100040163A2130201020201000201003008300606022B0605000000", "indefinite"},
      {kNone, "3085000000001B020100040163A2130201020201000201003008300606022B060500",
       "length of five bytes"},
      {kNone, "3084FFFFFFFF020100040163A2130201020201000201003008300606022B060500",
       "largest length"},
      {kNone, "308480000000020100040163A2130201020201000201003008300606022B060500",
       "length of 2 GiB"},
      {kNone, "301E02847FFFFFFF00040163A2130201020201000201003008300606022B060500",
       "version past the end"},
      {kNone, "301F02050000000000040163A2130201020201000201003008300606022B060500",
       "version of five bytes"},
      {kNone, "301A0200040163A2130201020201000201003008300606022B060500", "version of none"},
      {kNone, "3018020100040163A2100201020201003008300606022B060500", "no error-index"},
      {kNone, "3006020100040163", "no PDU"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(KindOf(Bytes(row.hex)), row.kind) << row.what;
  }
}

}  // namespace
}  // namespace ZIOP
