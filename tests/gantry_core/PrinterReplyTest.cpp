// Values of replies, well formed and not.
#include "GantryCore/PrinterReply.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes ToBytes(const std::string& text) {
  return {text.begin(), text.end()};
}

std::string Json(const ParameterMapVO& parameters) {
  std::ostringstream json;
  json << parameters;
  return json.str();
}

TEST(ReplyBody, IsBetweenFirstHeaderAndLastByte) {
  const std::pair<const char*, const char*> kCases[] = {
      {"", ""},         {"HD:", ""},          {"HD:1", ""}, {"HD:12", "1"},
      {"xxHD:12", "1"}, {"HD:1HD:2", "1HD:"}, {"HD", ""},   {"12345", ""}};
  const Bytes header = ToBytes("HD:");
  for (const auto& [reply, body] : kCases) {
    EXPECT_EQ(CPrinterReply::MakeReplyBody(ToBytes(reply), &header), ToBytes(body)) << reply;
  }
}

TEST(ReplyField, IsDecodedByFormAndType) {
  const struct {
    const char* body;
    const char* key;
    _t_REPLY_INFOMATION field;
    const char* json;
  } kCases[] = {
      // Digits: a plain number, one with a name, one in the user's scale, no number.
      {"xx1B", "N", {2, 2, FORM_TEXT, VALUE_INTEGER}, R"({"N":27})"},
      {"0F", "BlankAreaFeed", {0, 2, FORM_TEXT, VALUE_INTEGER}, R"({"BlankAreaFeed":"Mode0"})"},
      {"7B", "MediaTension", {0, 2, FORM_TEXT, VALUE_INTEGER}, R"({"MediaTension":-5})"},
      {"NA", "N", {0, 2, FORM_TEXT, VALUE_INTEGER}, R"({"N":0})"},
      // Raw bytes: the first is the most significant.
      {"AB", "N", {0, 2, FORM_BINARY, VALUE_INTEGER}, R"({"N":16706})"},
      {"AZ", "T", {0, 2, FORM_BINARY, VALUE_HEX}, R"({"T":"415A"})"},
      // Texts lose their trailing blanks, but not where they are taken as they stand.
      {"4142432020", "T", {0, 10, FORM_TEXT, VALUE_TEXT}, R"({"T":"ABC"})"},
      {"220A5C01FFC32F20",
       "T",
       {0, 16, FORM_TEXT, VALUE_TEXT},
       "{\"T\":\"\\\"\\n\\\\\x01\xFF\xC3\\/\"}"},
      {" AB \t", "T", {0, 5, FORM_BINARY, VALUE_TEXT}, R"({"T":" AB"})"},
      {"AB ", "T", {0, 3, FORM_TEXT, VALUE_HEX}, R"({"T":"AB "})"},
      // Fields beyond the body are left out.
      {"", "T", {0, 0, FORM_TEXT, VALUE_TEXT}, R"({"T":""})"},
      {"123", "N", {2, 2, FORM_TEXT, VALUE_INTEGER}, "{}"},
      {"123", "N", {~0U, 2, FORM_TEXT, VALUE_INTEGER}, "{}"},
  };
  for (const auto& c : kCases) {
    ParameterMapVO out;
    CPrinterReply::InsertParameter(ToBytes(c.body), c.key, c.field, out);
    EXPECT_EQ(Json(out), c.json) << c.body;
  }
}

TEST(CommandReply, AnalysedOrRefused) {
  constexpr COMMAND_KEY kRecord = READ_CUSTOMMEDIA_INFO1;
  const struct {
    const char* device_name;
    COMMAND_KEY key;
    std::string reply;
    APPLICATION_ERROR error;
    const char* json = "{}";
  } kCases[] = {
      {"no such printer", kRecord, "EX:0000001B01;", ERROR_COMMAND},
      {"QM-T44 Series", kRecord, "EX:0000001BNA;;", ERROR_COMMAND},
      {"QM-V5 Series", kRecord, "EX:0000001B0102NA;;", ERROR_COMMAND},
      {"QM-T44 Series", kRecord, "EX:0000001B;", ERROR_NO_BODY},
      {"QM-T44 Series", kRecord, "EX:0000001D0102;", ERROR_NO_BODY},
      {"QM-T44 Series", kRecord, "EX:0000001BNA;0;", ERROR_NONE,
       R"({"CustomMediaNo":0,"DeviceID":0})"},
      // Where no marker is known, none refuses; a list may hold fewer records than it has room for.
      {"QM-T44 Series", READ_CUSTOMMEDIA_NAME, "EX:0000001D0105NA;;", ERROR_NONE,
       R"({"CustomMediaNo":5,"RegistrationFlag":1})"},
  };
  for (const auto& c : kCases) {
    ParameterMapVO out;
    APPLICATION_ERROR error = ERROR_NONE;
    const CommandVO reply(c.reply.data(), static_cast<int>(c.reply.size()));
    EXPECT_EQ(CPrinterReply::AnalysisCommandReply(c.device_name, c.key, reply, out, error),
              c.error == ERROR_NONE);
    EXPECT_EQ(error, c.error) << c.reply;
    EXPECT_EQ(Json(out), c.json) << c.reply;
  }
}

TEST(PrinterReply, DeletesTrailingSpacesOnly) {
  EXPECT_EQ(CPrinterReply::DeleteLastSpace(" a\t  "), " a\t");
}

TEST(PrinterReplyDeathTest, TableErrorsEndTheProcess) {
  const std::string kUnit = "src/naitive/SourceFiles/GantryCore/PrinterReply:[0-9]+: ";
  const Bytes none;
  EXPECT_DEATH(CPrinterReply::MakeReplyBody(none, nullptr), kUnit + "MakeReplyBody: .*`false'");
  EXPECT_DEATH(CPrinterReply::MakeReplyBody(none, &none), kUnit + "MakeReplyBody: .*`false'");
  ParameterMapVO out;
  for (const _t_REPLY_INFOMATION& field : {_t_REPLY_INFOMATION{0, 2, 2, 0}, {0, 2, 1, 3}}) {
    EXPECT_DEATH(CPrinterReply::InsertParameter(ToBytes("41"), "A", field, out),
                 kUnit + "InsertParameter: .*`false'");
  }
}

}  // namespace
}  // namespace Ravik
