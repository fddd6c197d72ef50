#include "GantryCore/PrinterReply.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "Library/RavikCommon/RavikAssert.h"
#include "Library/RavikCommon/VectorUtil.h"
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
  const auto start = VectorUtil::FindFirst(reply, *header);
  if (start == reply.end()) return {};
  return View(reply).substr(static_cast<std::size_t>(start - reply.begin()),
                            static_cast<std::size_t>(reply.end() - 1 - start));
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

std::string DecodeText(std::string_view ascii) {
  std::string text = CDataConverter::Ascii2String(ascii);
  StringUtil::DeleteTailSpace(text);
  return text;
}

// The name of the number if it has one, or the number in the user's scale.
void InsertNumber(const std::string& key, unsigned int number, ParameterMapVO& out) {
  const CUserValue user = CCommandConvertTable::ToUser(key, number);
  if (user.name.empty()) {
    out.insert(key, user.number);
  } else {
    out.insert(key, user.name);
  }
}

void InsertText(const std::string& key, const _t_REPLY_INFOMATION& field, std::string_view ascii,
                ParameterMapVO& out) {
  switch (field.valueType) {
    case VALUE_TEXT:
      return out.insert(key, value(DecodeText(ascii)));
    case VALUE_HEX:
      return out.insert(key, ascii);
    case VALUE_INTEGER:
      return InsertNumber(key, CDataConverter::Ascii2Integer(ascii), out);
    default:
      ReportAssertion("false", "InsertParameter", __FILE__, __LINE__);
  }
}

void InsertField(std::string_view body, const std::string& key, const _t_REPLY_INFOMATION& field,
                 ParameterMapVO& out) {
  std::string_view bytes;
  if (field.position < body.size()) bytes = body.substr(field.position, field.length);
  if (bytes.size() < field.length) return;
  switch (field.form) {
    case FORM_TEXT:
      return InsertText(key, field, bytes, out);
    case FORM_BINARY:
      return InsertText(key, field, CDataConverter::Byte2Ascii(bytes), out);
    default:
      ReportAssertion("false", "InsertParameter", __FILE__, __LINE__);
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
  out.reserve(out.size() + info->replyInfo.size());
  for (const auto& [name, field] : info->replyInfo) InsertField(body, name, field, out);
  return true;
}

std::vector<unsigned char> CPrinterReply::MakeReplyBody(const std::vector<unsigned char>& reply,
                                                        const std::vector<unsigned char>* header) {
  const std::string_view body = Body(reply, header);
  return {body.begin(), body.end()};
}

void CPrinterReply::InsertParameter(const std::vector<unsigned char>& body, const std::string& key,
                                    const _t_REPLY_INFOMATION& field, ParameterMapVO& out) {
  InsertField(View(body), key, field, out);
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
