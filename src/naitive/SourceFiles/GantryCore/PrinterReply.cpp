#include "GantryCore/PrinterReply.h"

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "Library/RavikCommon/RavikAssert.h"
#include "Library/RavikCommon/VectorUtil.h"
#include "ModelInfomation/ModelInfomation.h"
#include "ModelInfomation/ParameterName.h"
#include "util/StringUtil.h"

namespace Ravik {

namespace {

bool EndsWith(const std::vector<unsigned char>& body, const std::vector<unsigned char>& marker) {
  return !body.empty() && VectorUtil::FindLast(body, marker) == body.rbegin();
}

// The body of a reply that was not refused; throws the APPLICATION_ERROR otherwise.
std::vector<unsigned char> AcceptedBody(const CommandVO& reply, const ReplyInfoVO& info) {
  std::vector<unsigned char> body = CPrinterReply::MakeReplyBody(reply.bytes(), &info.header);
  if (body.empty()) throw ERROR_NO_BODY;
  if (EndsWith(body, info.notAvailable)) throw ERROR_COMMAND;
  if (EndsWith(body, info.auxiliary)) throw ERROR_AUXILIARY;
  return body;
}

std::string DecodeText(const std::string& ascii) {
  std::string text = CDataConverter::Ascii2String(ascii);
  StringUtil::DeleteTailSpace(text);
  return text;
}

// The name of the number if it has one, or the number in the user's scale.
value DecodeNumber(const std::string& key, const std::string& ascii) {
  const unsigned int number = CDataConverter::Ascii2Integer(ascii);
  std::string name;
  if (CCommandConvertTable::BinaryToString(key, number, name)) return value(name);
  return value(CCommandConvertTable::CorrectValue(key, number));
}

value ToArray(const std::vector<unsigned char>& codes) {
  value::array elements;
  for (const unsigned char code : codes) elements.emplace_back(static_cast<int>(code));
  return value(elements);
}

void InsertCode(const std::string& key, int code, ParameterMapVO& out) {
  if (code >= 0) out.insert(key, code);
}

}  // namespace

bool CPrinterReply::AnalysisCommandReply(const std::string& deviceName, COMMAND_KEY key,
                                         const CommandVO& reply, ParameterMapVO& out,
                                         APPLICATION_ERROR& error) {
  try {
    ReplyInfoVO info;
    if (!CModelInfomation::GetInstance().ReadReplyInfo(deviceName, key, info)) throw ERROR_COMMAND;
    const std::vector<unsigned char> body = AcceptedBody(reply, info);
    for (const auto& [name, field] : info.replyInfo) InsertParameter(body, name, field, out);
    return true;
  } catch (const APPLICATION_ERROR& reason) {
    error = reason;
    return false;
  }
}

std::vector<unsigned char> CPrinterReply::MakeReplyBody(const std::vector<unsigned char>& reply,
                                                        const std::vector<unsigned char>* header) {
  if (header == nullptr || header->empty()) RAVIK_ASSERT(false);
  const auto start = VectorUtil::FindFirst(reply, *header);
  if (start == reply.end()) return {};
  return {start, reply.end() - 1};
}

void CPrinterReply::InsertParameter(const std::vector<unsigned char>& body, const std::string& key,
                                    const _t_REPLY_INFOMATION& field, ParameterMapVO& out) {
  const auto bytes = VectorUtil::GetSubVector(body, field.position, field.length);
  if (bytes.size() < field.length) return;
  std::string text;
  switch (field.form) {
    case FORM_TEXT:
      text = CDataConverter::Byte2String(bytes);
      break;
    case FORM_BINARY:
      text = CDataConverter::Byte2Ascii(bytes);
      break;
    default:
      RAVIK_ASSERT(false);
  }
  switch (field.valueType) {
    case VALUE_TEXT:
      return out.insert(key, DecodeText(text));
    case VALUE_HEX:
      return out.insert(key, text);
    case VALUE_INTEGER:
      return out.insert(key, DecodeNumber(key, text));
    default:
      RAVIK_ASSERT(false);
  }
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
