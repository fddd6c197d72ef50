// Replies of printers, for every family and every operation; the same bytes also as a status reply,
// as a body with any field in it, and as what the conversions are given.
//
// Input: the reply's bytes; from the end, family, operation, whether the transport filled the reply
// up with zeros, which figures of a status are asked for, the numbers of the field, and the length
// of a header that is taken from the reply itself.
#include <algorithm>
#include <map>
#include <optional>
#include <sstream>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/PrinterReply.h"
#include "GantryCore/TransferText.h"
#include "ModelInfomation/ModelInfomation.h"
#include "ModelInfomation/ParameterName.h"
#include "fuzz/Conversions.h"
#include "fuzz/Families.h"
#include "fuzz/Fuzz.h"
#include "fuzz/PrescribedEnds.h"

namespace {

using Ravik::COMMAND_KEY;
using Ravik::CPrinterReply;
using Ravik::ParameterMapVO;
using Ravik::value;
using Bytes = std::vector<unsigned char>;
using Table = Ravik::CCommandConvertTable;

constexpr std::size_t kReplySize = 512;  // as the transport has room for

std::string Text(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string Json(const ParameterMapVO& values) {
  std::ostringstream text;
  text << values;
  return text.str();
}

// The number as the table names it, or in the user's scale; either leads back to the number.
value Number(const std::string& name, unsigned int number) {
  std::string text;
  unsigned int again = 0;
  if (Table::BinaryToString(name, number, text)) {
    FUZZ_CHECK(Table::StringToBinary(name, text, again) && again == number);
    return value(text);
  }
  const int scaled = Table::CorrectValue(name, number);
  again = static_cast<unsigned int>(
      Table::InverseCorrectValue(name, static_cast<unsigned int>(scaled)));
  FUZZ_CHECK(again == number);
  return value(scaled);
}

// The value of a field, or none where the body does not hold all of it.
std::optional<value> Decoded(const std::string& body, const std::string& name,
                             const Ravik::_t_REPLY_INFOMATION& field) {
  if (field.length > 0 && std::size_t{field.position} + field.length > body.size()) return {};
  std::string text = field.length == 0 ? "" : body.substr(field.position, field.length);
  if (field.form == Ravik::FORM_BINARY) {
    std::string digits;
    for (const char character : text) {
      char pair[3];
      std::snprintf(pair, sizeof(pair), "%02X", static_cast<unsigned char>(character));
      digits += pair;
    }
    text = digits;
  }
  if (field.valueType == Ravik::VALUE_HEX) return value(text);
  if (field.valueType == Ravik::VALUE_INTEGER) return Number(name, fuzz::HexNumber(text));
  const std::string characters = fuzz::HexCharacters(text);
  return value(characters.substr(0, characters.find_last_not_of(" \t") + 1));
}

// Any header but an empty one, which is a programming error.
void CheckBody(const Bytes& reply, const Bytes* header) {
  Bytes body;
  if (!Completes([&] { body = CPrinterReply::MakeReplyBody(reply, header); })) {
    FUZZ_CHECK(header == nullptr || header->empty());
    return;
  }
  FUZZ_CHECK(header != nullptr && !header->empty());
  const std::string text = Text(reply);
  const std::size_t begin = text.find(Text(*header));
  const std::size_t body_begin = begin + header->size();
  const bool has_body = begin != std::string::npos && body_begin + 1 < text.size();
  FUZZ_CHECK(Text(body) == (has_body ? text.substr(body_begin, text.size() - 1 - body_begin) : ""));
}

// A few bytes from the middle.
Bytes HeaderWithin(const Bytes& reply, std::ptrdiff_t size) {
  const auto begin = reply.begin() + static_cast<std::ptrdiff_t>(reply.size() / 2);
  return {begin, begin + std::min(size, reply.end() - begin)};
}

void CheckReply(const std::string& device_name, COMMAND_KEY key, const Bytes& reply) {
  ParameterMapVO values;
  auto error = Ravik::ERROR_NONE;
  const Ravik::CommandVO command(reply.data(), static_cast<int>(reply.size()));
  FUZZ_CHECK(!CPrinterReply::AnalysisCommandReply("no printer", key, command, values, error));
  FUZZ_CHECK(error == Ravik::ERROR_COMMAND && values.size() == 0);
  error = Ravik::ERROR_NONE;
  const bool analysed =
      CPrinterReply::AnalysisCommandReply(device_name, key, command, values, error);
  const std::string traced = Ravik::TransferText::OfReply(device_name, key, command);
  FUZZ_CHECK(
      std::all_of(traced.begin(), traced.end(), [](char c) { return c >= ' ' && c <= '~'; }));
  Ravik::ReplyInfoVO info;
  FUZZ_CHECK(Ravik::CModelInfomation::GetInstance().ReadReplyInfo(device_name, key, info));
  CheckBody(reply, &info.header);
  const std::string body = Text(CPrinterReply::MakeReplyBody(reply, &info.header));
  const std::string refusal = Text(info.notAvailable);
  if (body.empty()) {
    FUZZ_CHECK(!analysed && error == Ravik::ERROR_NO_BODY && values.size() == 0);
  } else if (!refusal.empty() && body.size() >= refusal.size() &&
             body.substr(body.size() - refusal.size()) == refusal) {
    FUZZ_CHECK(!analysed && error == Ravik::ERROR_COMMAND && values.size() == 0);
  } else {
    FUZZ_CHECK(analysed && error == Ravik::ERROR_NONE);
    ParameterMapVO expected;
    for (const auto& [name, field] : info.replyInfo) {
      if (const auto decoded = Decoded(body, name, field)) expected.insert(name, *decoded);
    }
    FUZZ_CHECK(Json(values) == Json(expected));
  }
}

struct NamedField {
  std::string name;
  Ravik::_t_REPLY_INFOMATION field;
};

NamedField DrawField(FuzzedDataProvider& input) {
  NamedField drawn;
  drawn.name = input.PickValueInArray(Ravik::kConvertTable).name;
  drawn.field.position = input.ConsumeIntegralInRange(0U, 600U);
  drawn.field.length = input.ConsumeIntegralInRange(0U, 20U);
  drawn.field.form = input.ConsumeIntegralInRange(0U, 4U);
  drawn.field.valueType = input.ConsumeIntegralInRange(0U, 3U);
  return drawn;
}

// A field that no table need hold. Where none could, it is a programming error.
void CheckField(const Bytes& body, const NamedField& drawn) {
  const std::string& name = drawn.name;
  const auto& field = drawn.field;
  ParameterMapVO values;
  ParameterMapVO expected;
  if (!Completes([&] { CPrinterReply::InsertParameter(body, name, field, values); })) {
    const bool known = field.form == Ravik::FORM_TEXT || field.form == Ravik::FORM_BINARY;
    const bool odd = field.form == Ravik::FORM_TEXT && field.length % 2 == 1;
    FUZZ_CHECK(!known || field.valueType > Ravik::VALUE_INTEGER ||
               (odd && field.valueType == Ravik::VALUE_TEXT));
    return;
  }
  if (const auto decoded = Decoded(Text(body), name, field)) expected.insert(name, *decoded);
  FUZZ_CHECK(Json(values) == Json(expected));
}

// The bytes as the reply to a status request, with whatever length word is in front.
void SetStatus(const Bytes& bytes, StatusReply& status) {
  Bytes reply(bytes);
  if (reply.size() < 2) reply.resize(2);
  const std::size_t length = std::min(reply[0] + std::size_t{reply[1]} * 256, reply.size() - 2);
  reply[0] = static_cast<unsigned char>(length % 256);
  reply[1] = static_cast<unsigned char>(length / 256);
  FUZZ_CHECK(status.SetReply(reply.data()) == (length != 0));
}

// What a reply to a status request tells of a figure, if anything.
std::optional<value> Figure(const std::string& name, const StatusReply& status) {
  if (name == Ravik::STATUSREPLY_SERIALNUMBER) {
    const std::string number = status.GetSerialNumber();
    return number.empty() ? std::nullopt : std::make_optional(value(number));
  }
  if (name == Ravik::STATUSREPLY_WARNINGCODE) {
    value::array codes;
    for (const unsigned char code : status.GetWarning()) codes.emplace_back(int{code});
    return codes.empty() ? std::nullopt : std::make_optional(value(codes));
  }
  const bool is_error = name == Ravik::STATUSREPLY_ERRORCODE;
  const int code = is_error ? status.GetErrorCode() : status.GetStatus();
  return code < 0 ? std::nullopt : std::make_optional(value(code));
}

// Of the figures that are asked for, those that the reply holds.
void CheckStatus(const std::string& device_name, const Bytes& bytes, unsigned int asked) {
  StatusReply status;
  SetStatus(bytes, status);
  ParameterMapVO request;
  ParameterMapVO expected;
  for (const char* const name : {Ravik::STATUSREPLY_STATUSCODE, Ravik::STATUSREPLY_WARNINGCODE,
                                 Ravik::STATUSREPLY_ERRORCODE, Ravik::STATUSREPLY_SERIALNUMBER}) {
    const bool is_asked = (asked & 1U) != 0;
    asked >>= 1;
    if (!is_asked) continue;
    request.insert(name);
    if (const auto figure = Figure(name, status)) expected.insert(name, *figure);
  }
  ParameterMapVO values;
  auto error = Ravik::ERROR_NONE;
  FUZZ_CHECK(CPrinterReply::AnalysisStatusReply(device_name, request, status, values, error));
  FUZZ_CHECK(error == Ravik::ERROR_NONE && Json(values) == Json(expected));
}

void CheckTrailingSpaces(std::string text) {
  const std::string cut = CPrinterReply::DeleteLastSpace(text);
  while (!text.empty() && text.back() == ' ') text.pop_back();
  FUZZ_CHECK(cut == text);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string device_name = input.PickValueInArray(fuzz::kDeviceNames);
  const COMMAND_KEY key = input.PickValueInArray(fuzz::kCommandKeys);
  const bool filled = input.ConsumeBool();
  const auto asked = input.ConsumeIntegral<std::uint8_t>();
  const NamedField field = DrawField(input);
  const auto header_size = input.ConsumeIntegralInRange<std::ptrdiff_t>(0, 3);
  auto reply = input.ConsumeBytes<unsigned char>(kReplySize);
  CheckStatus(device_name, reply, asked);
  fuzz::CheckConversions(reply);
  CheckTrailingSpaces(Text(reply));
  const Bytes header = HeaderWithin(reply, header_size);
  CheckBody(reply, header_size == 0 ? nullptr : &header);
  CheckField(reply, field);
  if (filled) reply.resize(kReplySize);
  Completes([&] { CheckReply(device_name, key, reply); });
  return 0;
}
