#include "GantryCore/PrinterCommand.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/DescriptorCache.h"

namespace Ravik {

namespace {

constexpr std::size_t kVariablePartSize = 512;

// ESC @ (reset), then ESC ( R with eight bytes: 00 and "REMOTE1".
constexpr unsigned char kCmdRemoteStart[] = {0x1B, 0x40, 0x1B, 0x28, 0x52, 0x08, 0x00, 0x00,
                                             'R',  'E',  'M',  'O',  'T',  'E',  '1'};
constexpr unsigned char kCmdSV[] = {'S', 'V', 0x00, 0x00};
constexpr unsigned char kCmdRemoteEnd[] = {0x1B, 0x00, 0x00, 0x00};

template <std::size_t Size>
CommandVO Constant(const unsigned char (&bytes)[Size]) {
  return {bytes, static_cast<int>(Size)};
}

unsigned int DefaultByte(const _t_COMMAND_INFOMATION& field) {
  return field.defaultValue & 0xFF;
}

// What the field and the variable part have room for.
std::size_t Room(const _t_COMMAND_INFOMATION& field, const std::vector<unsigned char>& part) {
  if (field.position >= part.size()) return 0;
  return std::min<std::size_t>(field.length, part.size() - field.position);
}

void CopyToField(const unsigned char* bytes, std::size_t size, const _t_COMMAND_INFOMATION& field,
                 std::vector<unsigned char>& part) {
  const std::size_t copied = std::min(size, Room(field, part));
  if (copied == 0) return;
  std::copy_n(bytes, copied, part.begin() + static_cast<std::ptrdiff_t>(field.position));
}

// These write one parameter and return the length of what it was converted to.

std::size_t WriteText(const value* parameter, const _t_COMMAND_INFOMATION& field,
                      std::vector<unsigned char>& part) {
  if (parameter == nullptr || !parameter->is<std::string>()) return 0;
  const auto& text = parameter->get<std::string>();
  CopyToField(reinterpret_cast<const unsigned char*>(text.data()), text.size(), field, part);
  return text.size();
}

std::size_t WriteHex(const value& parameter, const _t_COMMAND_INFOMATION& field,
                     std::vector<unsigned char>& part) {
  const auto bytes = CDataConverter::Ascii2Byte(parameter.get<std::string>());
  CopyToField(bytes.data(), bytes.size(), field, part);
  return bytes.size();
}

// Little-endian, with zeros behind the fourth byte.
std::size_t WriteNumber(unsigned int number, const _t_COMMAND_INFOMATION& field,
                        std::vector<unsigned char>& part) {
  const std::size_t room = Room(field, part);
  for (std::size_t i = 0; i < room; ++i) {
    part[field.position + i] = static_cast<unsigned char>(number & 0xFF);
    number >>= 8;
  }
  return field.length;
}

// The printer's number of a named value or of a number in the user's scale; the default without a
// parameter. False for a parameter of another kind.
bool ConvertNumber(const std::string& key, const value* parameter,
                   const _t_COMMAND_INFOMATION& field, unsigned int& number) {
  number = DefaultByte(field);
  if (parameter == nullptr) return true;
  if (parameter->is<std::string>()) {
    CCommandConvertTable::StringToBinary(key, parameter->get<std::string>(), number);
    return true;
  }
  if (!parameter->is<int>()) return false;
  number = static_cast<unsigned int>(CCommandConvertTable::InverseCorrectValue(
      key, static_cast<unsigned int>(parameter->get<int>())));
  return true;
}

}  // namespace

bool CPrinterCommand::Set(const std::string& deviceName, COMMAND_KEY key,
                          const ParameterMapVO& parameters) {
  key_ = key;
  device_name_ = deviceName;
  const CommandInfoVO* const info = DescriptorCache::GetInstance().CommandInfo(deviceName, key);
  if (info == nullptr) return false;
  is_sv_ = info->isSVCmd;
  is_remote_ = info->isRemote;
  is_bgjc_ = info->isBGJC;
  return SetCommand(parameters, *info);
}

bool CPrinterCommand::SetCommand(const ParameterMapVO& parameters, const CommandInfoVO& info) {
  std::vector<unsigned char> bytes = MakeVariablePart(parameters, info);
  const bool is_empty = bytes.empty();
  if (!is_empty) {
    const std::size_t length = info.format.size() + bytes.size();
    const std::size_t head = info.command.size() + 2 + info.format.size();
    bytes.insert(bytes.begin(), head, 0);
    auto next = std::copy(info.command.begin(), info.command.end(), bytes.begin());
    *next++ = static_cast<unsigned char>(length & 0xFF);
    *next++ = static_cast<unsigned char>(length >> 8 & 0xFF);
    std::copy(info.format.begin(), info.format.end(), next);
  }
  command_ = CommandVO(std::move(bytes));
  return !is_empty;
}

std::vector<unsigned char> CPrinterCommand::MakeVariablePart(const ParameterMapVO& parameters,
                                                             const CommandInfoVO& info) {
  std::vector<unsigned char> part(kVariablePartSize);
  std::size_t total = 0;
  for (const auto& [key, field] : info.valueInfo) {
    const value* const parameter = parameters.first(key);
    unsigned int number = 0;
    switch (field.valueType) {
      case VALUE_TEXT:
        total += WriteText(parameter, field, part);
        break;
      case VALUE_HEX:
        if (parameter == nullptr || !parameter->is<std::string>()) {
          ReportAssertion("parameter.is<std::string>()", __func__, __FILE__, __LINE__);
        }
        total += WriteHex(*parameter, field, part);
        break;
      case VALUE_INTEGER:
        if (!ConvertNumber(key, parameter, field, number)) RAVIK_ASSERT(false);
        total += WriteNumber(number, field, part);
        break;
      default:
        RAVIK_ASSERT(false);
    }
  }
  part.resize(total);
  return part;
}

CommandVO CPrinterCommand::GetCommandForSpooler() const {
  CommandVO spooled;
  if (is_remote_) spooled += Constant(kCmdRemoteStart);
  spooled += command_;
  if (is_sv_) spooled += GetSVCommand();
  if (is_remote_) spooled += Constant(kCmdRemoteEnd);
  return spooled;
}

CommandVO CPrinterCommand::GetSVCommand() {
  return Constant(kCmdSV);
}

std::string CPrinterCommand::GetCommandAscii() const {
  return CDataConverter::Byte2Ascii(command_.bytes());
}

}  // namespace Ravik
