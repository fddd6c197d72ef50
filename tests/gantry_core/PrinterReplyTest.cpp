// Values of replies, well formed and not.
#include "GantryCore/PrinterReply.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes ToBytes(const std::string& text) {
  return {text.begin(), text.end()};
}

CommandVO Reply(const std::string& text) {
  return {text.data(), static_cast<int>(text.size())};
}

std::string Json(const ParameterMapVO& parameters) {
  std::ostringstream json;
  json << parameters;
  return json.str();
}

TEST(ReplyBody, IsBetweenFirstHeaderAndLastByte) {
  const struct {
    const char* reply;
    const char* body;
  } kCases[] = {{"", ""},         {"HD:", ""},          {"HD:1", ""}, {"HD:12", "1"},
                {"xxHD:12", "1"}, {"HD:1HD:2", "1HD:"}, {"HD", ""},   {"12345", ""}};
  const Bytes header = ToBytes("HD:");
  for (const auto& c : kCases) {
    EXPECT_EQ(CPrinterReply::MakeReplyBody(ToBytes(c.reply), &header), ToBytes(c.body)) << c.reply;
  }
}

TEST(ReplyField, IsDecodedByFormAndType) {
  const struct {
    const char* what;
    const char* body;
    const char* key;
    _t_REPLY_INFOMATION field;
    const char* json;
  } kCases[] = {
      {"a number in digits", "xx1B", "N", {2, 2, FORM_TEXT, VALUE_INTEGER}, "{\"N\":27}"},
      {"a number with a name",
       "0F",
       "BlankAreaFeed",
       {0, 2, FORM_TEXT, VALUE_INTEGER},
       "{\"BlankAreaFeed\":\"Mode0\"}"},
      {"a number in the user's scale",
       "7B",
       "MediaTension",
       {0, 2, FORM_TEXT, VALUE_INTEGER},
       "{\"MediaTension\":-5}"},
      {"what a stream reads of it", "-1", "N", {0, 2, FORM_TEXT, VALUE_INTEGER}, "{\"N\":-1}"},
      {"no number at all", "NA", "N", {0, 2, FORM_TEXT, VALUE_INTEGER}, "{\"N\":0}"},
      {"raw bytes, first is most significant",
       "AB",
       "N",
       {0, 2, FORM_BINARY, VALUE_INTEGER},
       "{\"N\":16706}"},
      {"a name in digits, blanks cut",
       "4142432020",
       "T",
       {0, 10, FORM_TEXT, VALUE_TEXT},
       "{\"T\":\"ABC\"}"},
      {"raw text, blanks cut", " AB \t", "T", {0, 5, FORM_BINARY, VALUE_TEXT}, "{\"T\":\" AB\"}"},
      {"plain text, blanks kept", "AB ", "T", {0, 3, FORM_TEXT, VALUE_HEX}, "{\"T\":\"AB \"}"},
      {"raw bytes in digits", "AZ", "T", {0, 2, FORM_BINARY, VALUE_HEX}, "{\"T\":\"415A\"}"},
      {"an empty field", "", "T", {0, 0, FORM_TEXT, VALUE_TEXT}, "{\"T\":\"\"}"},
      {"a field beyond the body", "123", "N", {2, 2, FORM_TEXT, VALUE_INTEGER}, "{}"},
      {"a field far beyond the body", "123", "N", {~0U, 2, FORM_TEXT, VALUE_INTEGER}, "{}"},
  };
  for (const auto& c : kCases) {
    ParameterMapVO out;
    CPrinterReply::InsertParameter(ToBytes(c.body), c.key, c.field, out);
    EXPECT_EQ(Json(out), c.json) << c.what;
  }
}

TEST(CommandReply, RefusedAndUnusableReplies) {
  const struct {
    const char* device_name;
    COMMAND_KEY key;
    const char* reply;
    APPLICATION_ERROR error;
  } kCases[] = {
      {"no such printer", READ_CUSTOMMEDIA_INFO1, "EX:0000001B01;", ERROR_COMMAND},
      {"QM-T44 Series", READ_CUSTOMMEDIA_INFO1, "EX:0000001BNA;;", ERROR_COMMAND},
      {"QM-V5 Series", READ_CUSTOMMEDIA_INFO1, "EX:0000001B0102NA;;", ERROR_COMMAND},
      {"QM-T84 Series", READ_CUSTOMMEDIA_INFO1, "EX:0000001BNA;;", ERROR_COMMAND},
      {"QM-R310 Series", READ_CUSTOMMEDIA_INFO1, "EX:0000001BNA;;", ERROR_COMMAND},
      {"QM-R310 Series", READ_CUSTOMMEDIA_INFO2, "EX:0000001BNA;;", ERROR_COMMAND},
      {"QM-R310 Series", READ_CUSTOMMEDIA_INFO3, "EX:0000001BNA;;", ERROR_COMMAND},
      {"QM-T44 Series", READ_CUSTOMMEDIA_INFO1, "", ERROR_NO_BODY},
      {"QM-T44 Series", READ_CUSTOMMEDIA_INFO1, "EX:0000001B;", ERROR_NO_BODY},
      {"QM-T44 Series", READ_CUSTOMMEDIA_INFO1, "EX:0000001D0102;", ERROR_NO_BODY},
      {"QM-T44 Series", READ_CUSTOMMEDIA_NAME, "EX:0000001B0102;", ERROR_NO_BODY},
  };
  for (const auto& c : kCases) {
    ParameterMapVO out;
    APPLICATION_ERROR error = ERROR_NONE;
    EXPECT_FALSE(
        CPrinterReply::AnalysisCommandReply(c.device_name, c.key, Reply(c.reply), out, error));
    EXPECT_EQ(error, c.error) << c.reply;
    EXPECT_EQ(out.size(), 0U);
  }
}

// A reply buffer is filled up with zeros, so that a refusal is not at the end of the body.
TEST(CommandReply, RefusalInAFilledBufferIsAnalysed) {
  std::string reply = "EX:0000001BNA;";
  reply.resize(512);
  ParameterMapVO out;
  APPLICATION_ERROR error = ERROR_NONE;
  EXPECT_TRUE(CPrinterReply::AnalysisCommandReply("QM-T44 Series", READ_CUSTOMMEDIA_INFO1,
                                                  Reply(reply), out, error));
  EXPECT_EQ(error, ERROR_NONE);
  EXPECT_EQ(out.size(), 13U);
  std::string text;
  EXPECT_TRUE(out.find("Removeskew", text));
  EXPECT_EQ(text, "Off");
  EXPECT_TRUE(out.find("PaperFeedAdjustmentValue", text));
  EXPECT_EQ(text, "-101");
  EXPECT_TRUE(out.find("CustomMediaName", text));
  EXPECT_EQ(text, std::string(32, '\0'));
}

TEST(CommandReply, NameListCollectsSlotsInOrder) {
  std::string reply = "EX:0000001D";
  for (const char* slot : {"0105", "0006", "0107"}) {
    reply += slot + ("4" + std::string(1, slot[3])) + std::string(62, '2');
  }
  ParameterMapVO out;
  APPLICATION_ERROR error = ERROR_NONE;
  ASSERT_TRUE(CPrinterReply::AnalysisCommandReply("QM-R310 Series", READ_CUSTOMMEDIA_NAME,
                                                  Reply(reply + ";"), out, error));
  const std::string fill(31, '"');
  for (int slot = 0; slot < 3; ++slot) {
    int flag = 0;
    int number = 0;
    std::string name;
    ASSERT_TRUE(out.find("RegistrationFlag", slot, flag));
    ASSERT_TRUE(out.find("CustomMediaNo", slot, number));
    ASSERT_TRUE(out.find("CustomMediaName", slot, name));
    EXPECT_EQ(flag, slot == 1 ? 0 : 1);
    EXPECT_EQ(number, 5 + slot);
    EXPECT_EQ(name, static_cast<char>('E' + slot) + fill);
  }
  ParameterMapVO one;
  ASSERT_TRUE(CPrinterReply::AnalysisCommandReply(
      "QM-R310 Series", READ_CUSTOMMEDIA_NAME, Reply(reply.substr(0, 11 + 68) + ";"), one, error));
  EXPECT_EQ(one.size(), 3U);
  value second;
  EXPECT_FALSE(one.find("CustomMediaName", 1, second));
}

TEST(CommandReply, FirmwareVersionStandsBehindThreeCharacters) {
  ParameterMapVO out;
  APPLICATION_ERROR error = ERROR_NONE;
  ASSERT_TRUE(CPrinterReply::AnalysisCommandReply("QM-V5 Series", READ_FW_VERSION,
                                                  Reply("VI:00:1:AB 2;;"), out, error));
  EXPECT_EQ(Json(out), "{\"FirmwareVersion\":\"AB 2\"}");
}

TEST(StatusFigures, AreInsertedIfAskedForAndReported) {
  const unsigned char full[] = {19,   0,    1, 1,   4,   2,   1,   0x80, 4,    2, 7,
                                0xFF, 0x1F, 5, 'S', 'N', '0', ' ', ' ',  0x28, 0};
  const unsigned char empty[] = {6, 0, 1, 0, 4, 0, 0x1F, 0};
  const struct {
    const unsigned char* reply;
    std::vector<std::string> asked;
    const char* json;
  } kCases[] = {
      {full,
       {"StatusCode", "ErrorCode", "WarningCode", "SerialNumber", "HeaterCode"},
       "{\"ErrorCode\":128,\"SerialNumber\":\"SN0  \",\"StatusCode\":4,\"WarningCode\":[7,255]}"},
      {full, {"WarningCode"}, "{\"WarningCode\":[7,255]}"},
      {full, {}, "{}"},
      {empty, {"StatusCode", "ErrorCode", "WarningCode", "SerialNumber"}, "{}"},
      {nullptr, {"StatusCode", "ErrorCode", "WarningCode", "SerialNumber"}, "{}"},
  };
  for (const auto& c : kCases) {
    StatusReply status;
    status.SetReply(c.reply);
    ParameterMapVO request;
    for (const std::string& key : c.asked) request.insert(key);
    ParameterMapVO out;
    APPLICATION_ERROR error = ERROR_TRANSFER;
    EXPECT_TRUE(CPrinterReply::AnalysisStatusReply("any", request, status, out, error));
    EXPECT_EQ(error, ERROR_TRANSFER);
    EXPECT_EQ(Json(out), c.json);
  }
}

TEST(PrinterReply, DeletesTrailingSpacesOnly) {
  EXPECT_EQ(CPrinterReply::DeleteLastSpace(" a b  "), " a b");
  EXPECT_EQ(CPrinterReply::DeleteLastSpace("a\t "), "a\t");
  EXPECT_EQ(CPrinterReply::DeleteLastSpace("   "), "");
  EXPECT_EQ(CPrinterReply::DeleteLastSpace(""), "");
}

TEST(PrinterReplyDeathTest, TableErrorsEndTheProcess) {
  const std::string kUnit = "src/naitive/SourceFiles/GantryCore/PrinterReply:[0-9]+: ";
  const Bytes none;
  const std::string kHeader = kUnit + "MakeReplyBody: .*`false'";
  EXPECT_DEATH(CPrinterReply::MakeReplyBody(none, nullptr), kHeader);
  EXPECT_DEATH(CPrinterReply::MakeReplyBody(none, &none), kHeader);
  ParameterMapVO out;
  const std::string kField = kUnit + "InsertParameter: .*`false'";
  for (const _t_REPLY_INFOMATION& field :
       {_t_REPLY_INFOMATION{0, 2, 0, 0}, {0, 2, 2, 0}, {0, 2, 4, 0}, {0, 2, 1, 3}}) {
    EXPECT_DEATH(CPrinterReply::InsertParameter(ToBytes("41"), "A", field, out), kField);
  }
  EXPECT_DEATH(
      CPrinterReply::InsertParameter(ToBytes("414"), "A", {0, 3, FORM_TEXT, VALUE_TEXT}, out),
      "DataConverter:[0-9]+: Ascii2String: .*`\\(ascii.size\\(\\) % 2\\) == 0'");
}

}  // namespace
}  // namespace Ravik
