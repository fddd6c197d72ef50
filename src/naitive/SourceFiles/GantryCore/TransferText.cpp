#include "GantryCore/TransferText.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "GantryCore/ParameterMapVO.h"
#include "GantryCore/PrinterReply.h"
#include "ModelInfomation/ModelInfomation.h"
#include "util/TraceLine.h"

namespace Ravik {

namespace {

constexpr std::size_t kHeadSize = 4;  // a command's name and length field
constexpr std::size_t kBlockShown = 64;
constexpr unsigned int kLeaveAsIs = 0xFF;

std::string_view View(const std::vector<unsigned char>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// The names of a descriptor's fields in the order of their positions, each once.
template <typename Fields>
std::vector<std::string> NamesByPosition(const Fields& fields) {
  std::vector<std::pair<unsigned int, std::string>> rows;
  rows.reserve(fields.size());
  for (const auto& [name, field] : fields) rows.emplace_back(field.position, name);
  std::sort(rows.begin(), rows.end());
  std::vector<std::string> names;
  names.reserve(rows.size());
  for (auto& [position, name] : rows) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      names.push_back(std::move(name));
    }
  }
  return names;
}

std::string Digits(std::string digits) {
  if (digits.size() <= kBlockShown) return digits;
  const std::size_t more = digits.size() - kBlockShown;
  return digits.substr(0, kBlockShown) + '+' + std::to_string(more);
}

std::string Number(const std::string& name, unsigned int number) {
  std::string text;
  if (CCommandConvertTable::BinaryToString(name, number, text)) return text;
  return std::to_string(CCommandConvertTable::CorrectValue(name, number));
}

// The part of the command that holds the fields.
std::vector<unsigned char> VariablePart(const CommandVO& command, const CommandInfoVO& info) {
  const std::size_t head = kHeadSize + info.format.size();
  const std::vector<unsigned char>& bytes = command.bytes();
  if (bytes.size() < head) return {};
  return {bytes.begin() + static_cast<std::ptrdiff_t>(head), bytes.end()};
}

// "" for a field that the command ends before and for a setting that is left as it is.
std::string CommandField(const std::string& name, const _t_COMMAND_INFOMATION& field,
                         const std::vector<unsigned char>& part) {
  if (field.position >= part.size()) return "";
  const auto begin = part.begin() + static_cast<std::ptrdiff_t>(field.position);
  const std::size_t room = part.size() - field.position;
  const std::vector<unsigned char> bytes(
      begin, begin + static_cast<std::ptrdiff_t>(std::min<std::size_t>(field.length, room)));
  switch (field.valueType) {
    case VALUE_TEXT:
      return ' ' + name + '=' + TraceQuoted(View(bytes));
    case VALUE_HEX:
      return ' ' + name + '=' + Digits(CDataConverter::Byte2Ascii(bytes));
    default:
      break;
  }
  const unsigned int number = CDataConverter::Byte2Integer(bytes, false);
  const bool is_left = number == kLeaveAsIs && (field.defaultValue & 0xFF) == kLeaveAsIs;
  return is_left ? "" : ' ' + name + '=' + Number(name, number);
}

std::string ReplyValue(const value& told, unsigned int valueType) {
  switch (valueType) {
    case VALUE_TEXT:
      return TraceQuoted(told.to_str());
    case VALUE_HEX:
      return Digits(told.to_str());
    default:
      return told.to_str();
  }
}

bool IsRefusal(std::string_view printers, const ReplyInfoVO& info) {
  return !info.notAvailable.empty() &&
         printers.substr(std::min(info.header.size(), printers.size())) == View(info.notAvailable);
}

std::string Fault(APPLICATION_ERROR error) {
  switch (error) {
    case ERROR_COMMAND:
      return " refused";
    case ERROR_AUXILIARY:
      return " ends in the auxiliary marker";
    default:
      return " without the header that belongs to the request";
  }
}

}  // namespace

const char* TransferText::Operation(COMMAND_KEY key) {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
    case READ_CUSTOMMEDIA_INFO2:
    case READ_CUSTOMMEDIA_INFO3:
      return "read-record";
    case READ_CUSTOMMEDIA_NAME:
      return "read-names";
    case READ_STATUS:
      return "read-status";
    case READ_FW_VERSION:
      return "read-firmware";
    case WRITE_CUSTOMMEDIA_INFO1:
    case WRITE_CUSTOMMEDIA_INFO2:
    case WRITE_CUSTOMMEDIA_INFO3:
      return "write-record";
    case WRITE_MEDIA_INITIALIZE:
      return "initialize";
  }
  return "unknown";
}

std::string TransferText::OfCommand(const std::string& deviceName, COMMAND_KEY key,
                                    const CommandVO& command) {
  std::string text = Operation(key);
  CommandInfoVO info;
  if (!CModelInfomation::GetInstance().ReadCommandInfo(deviceName, key, info)) return text;
  const std::vector<unsigned char> part = VariablePart(command, info);
  text += " name=" + CDataConverter::Byte2String(info.command) +
          " length=" + std::to_string(info.format.size() + part.size()) +
          " format=" + CDataConverter::Byte2Ascii(info.format);
  for (const std::string& name : NamesByPosition(info.valueInfo)) {
    text += CommandField(name, info.valueInfo.at(name), part);
  }
  return text;
}

std::string TransferText::OfReply(const std::string& deviceName, COMMAND_KEY key,
                                  const CommandVO& reply) {
  std::string text = Operation(key);
  ParameterMapVO out;
  APPLICATION_ERROR error = ERROR_NONE;
  if (!CPrinterReply::AnalysisCommandReply(deviceName, key, reply, out, error)) {
    return text + Fault(error);
  }
  ReplyInfoVO info;
  if (!CModelInfomation::GetInstance().ReadReplyInfo(deviceName, key, info)) return text;
  if (IsRefusal(PrintersBytes(deviceName, key, reply), info)) text += " refused, but read as";
  for (const std::string& name : NamesByPosition(info.replyInfo)) {
    const unsigned int type = info.replyInfo.find(name)->second.valueType;
    value told;
    for (int i = 0; out.find(name, i, told); ++i) {
      text += (i == 0 ? ' ' + name + '=' : ",") + ReplyValue(told, type);
    }
  }
  return text;
}

std::string_view TransferText::PrintersBytes(const std::string& deviceName, COMMAND_KEY key,
                                             const CommandVO& reply) {
  std::string_view bytes = View(reply.bytes());
  bytes = bytes.substr(0, bytes.find_last_not_of('\0') + 1);
  ReplyInfoVO info;
  if (!CModelInfomation::GetInstance().ReadReplyInfo(deviceName, key, info)) return bytes;
  const std::size_t header = bytes.find(View(info.header));
  return header == std::string_view::npos ? bytes : bytes.substr(header);
}

}  // namespace Ravik
