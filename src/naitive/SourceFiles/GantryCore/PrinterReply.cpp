#include "GantryCore/PrinterReply.h"

#include <cstddef>
#include <cstring>
#include <map>
#include <string_view>
#include <utility>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/DescriptorCache.h"
#include "ModelInfomation/ParameterName.h"
#include "util/StringUtil.h"

namespace Ravik {

namespace {

using Bytes = std::vector<unsigned char>;

std::string_view View(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string_view Body(const Bytes& reply, const Bytes* header) {
  if (header == nullptr || header->empty()) {
    ReportAssertion("false", "MakeReplyBody", __FILE__, __LINE__);
  }
  const std::string_view bytes = View(reply);
  const std::size_t found = bytes.find(View(*header));
  const std::size_t start = found + header->size();
  if (found == std::string_view::npos || start == bytes.size()) return {};
  return bytes.substr(start, bytes.size() - 1 - start);
}

bool EndsWith(std::string_view body, std::string_view marker) {
  return !marker.empty() && body.size() >= marker.size() &&
         body.substr(body.size() - marker.size()) == marker;
}

// What is wrong with a reply that has no fields to read.
APPLICATION_ERROR CheckBody(std::string_view body, const ReplyInfoVO& info) {
  if (body.empty()) return ERROR_NO_BODY;
  if (EndsWith(body, View(info.notAvailable))) return ERROR_COMMAND;
  if (EndsWith(body, View(info.auxiliary))) return ERROR_AUXILIARY;
  return ERROR_NONE;
}

// Takes all of these digits off the end.
template <std::size_t Size>
void CutEnds(const char (&digits)[Size], std::string_view& ascii) {
  constexpr std::size_t kLength = Size - 1;
  while (ascii.size() >= kLength &&
         std::memcmp(ascii.data() + ascii.size() - kLength, digits, kLength) == 0) {
    ascii.remove_suffix(kLength);
  }
}

// The characters without the blanks behind them. Names are filled up with spaces, most of which
// need not be decoded.
std::string DecodeText(std::string_view ascii) {
  CutEnds("20202020", ascii);
  CutEnds("20", ascii);
  std::string text = CDataConverter::Ascii2String(ascii);
  StringUtil::DeleteTailSpace(text);
  return text;
}

// A field of a reply, with what its numbers are converted by.
struct Field {
  const std::string* key;
  const _t_REPLY_INFOMATION* info;
  const CConversion* conversion;
};

Field MakeField(const std::string& key, const _t_REPLY_INFOMATION& info) {
  return {&key, &info, &CCommandConvertTable::Of(key)};
}

// The fields of a descriptor that lives as long as the process, found once.
const std::vector<Field>& FieldsOf(const ReplyInfoVO& info) {
  static std::map<const ReplyInfoVO*, std::vector<Field>> known;
  std::vector<Field>& fields = known[&info];
  if (fields.empty()) {
    for (const auto& [key, field] : info.replyInfo) fields.push_back(MakeField(key, field));
  }
  return fields;
}

// The name of the number if it has one, or the number in the user's scale.
void InsertNumber(const Field& field, unsigned int number, ParameterMapVO& out) {
  const CUserValue user = field.conversion->ToUser(number);
  if (user.name.empty()) {
    out.insert(*field.key, user.number);
  } else {
    out.insert(*field.key, user.name);
  }
}

void InsertValue(const Field& field, std::string_view ascii, ParameterMapVO& out) {
  switch (field.info->valueType) {
    case VALUE_TEXT:
      return out.insert(*field.key, DecodeText(ascii));
    case VALUE_HEX:
      return out.insert(*field.key, ascii);
    case VALUE_INTEGER:
      return InsertNumber(field, CDataConverter::Ascii2Integer(ascii), out);
    default:
      ReportAssertion("false", "InsertParameter", __FILE__, __LINE__);
  }
}

// Inserts the values of those fields that the body holds whole.
void InsertFields(std::string_view body, const std::vector<Field>& fields, ParameterMapVO& out) {
  std::string digits;
  for (const Field& field : fields) {
    const _t_REPLY_INFOMATION& info = *field.info;
    std::string_view ascii;
    if (info.position < body.size()) ascii = body.substr(info.position, info.length);
    if (ascii.size() < info.length) continue;
    if (info.form == FORM_BINARY) {
      ascii = digits = CDataConverter::Byte2Ascii(ascii);
    } else if (info.form != FORM_TEXT) {
      ReportAssertion("false", "InsertParameter", __FILE__, __LINE__);
    }
    InsertValue(field, ascii, out);
  }
}

value ToArray(const std::vector<unsigned char>& codes) {
  value::array elements;
  for (const unsigned char code : codes) elements.emplace_back(static_cast<int>(code));
  return value(std::move(elements));
}

void InsertCode(const std::string& key, int code, ParameterMapVO& out) {
  if (code >= 0) out.insert(key, code);
}

}  // namespace

bool CPrinterReply::AnalysisCommandReply(const std::string& deviceName, COMMAND_KEY key,
                                         const CommandVO& reply, ParameterMapVO& out,
                                         APPLICATION_ERROR& error) {
  const ReplyInfoVO* const info = DescriptorCache::GetInstance().ReplyInfo(deviceName, key);
  if (info == nullptr) {
    error = ERROR_COMMAND;
    return false;
  }
  const std::string_view body = Body(reply.bytes(), &info->header);
  const APPLICATION_ERROR reason = CheckBody(body, *info);
  if (reason != ERROR_NONE) {
    error = reason;
    return false;
  }
  const std::vector<Field>& fields = FieldsOf(*info);
  out.reserve(out.size() + fields.size());
  InsertFields(body, fields, out);
  return true;
}

std::vector<unsigned char> CPrinterReply::MakeReplyBody(const std::vector<unsigned char>& reply,
                                                        const std::vector<unsigned char>* header) {
  const std::string_view body = Body(reply, header);
  return {body.begin(), body.end()};
}

void CPrinterReply::InsertParameter(const std::vector<unsigned char>& body, const std::string& key,
                                    const _t_REPLY_INFOMATION& field, ParameterMapVO& out) {
  InsertFields(View(body), {MakeField(key, field)}, out);
}

bool CPrinterReply::AnalysisStatusReply(const std::string& /*deviceName*/,
                                        const ParameterMapVO& request, const StatusReply& status,
                                        ParameterMapVO& out, APPLICATION_ERROR& /*error*/) {
  if (request.isKey(STATUSREPLY_STATUSCODE)) {
    InsertCode(STATUSREPLY_STATUSCODE, status.GetStatus(), out);
  }
  if (request.isKey(STATUSREPLY_WARNINGCODE)) {
    const std::vector<unsigned char> warnings = status.GetWarning();
    if (!warnings.empty()) out.insert(STATUSREPLY_WARNINGCODE, ToArray(warnings));
  }
  if (request.isKey(STATUSREPLY_ERRORCODE)) {
    InsertCode(STATUSREPLY_ERRORCODE, status.GetErrorCode(), out);
  }
  if (request.isKey(STATUSREPLY_SERIALNUMBER)) {
    const std::string serial_number = status.GetSerialNumber();
    if (!serial_number.empty()) out.insert(STATUSREPLY_SERIALNUMBER, serial_number);
  }
  return true;
}

std::string CPrinterReply::DeleteLastSpace(const std::string& text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace Ravik
