#include "GantryCore/PrinterCommand.h"

#include <algorithm>
#include <cstddef>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/ModelInfomation.h"

namespace Ravik {

namespace {

constexpr std::size_t kVariablePartSize = 512;
constexpr unsigned int kLengthFieldSize = 2;
constexpr bool kLittleEndian = false;

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

std::vector<unsigned char> ConvertText(const value& parameter) {
  if (!parameter.is<std::string>()) return {};
  return CDataConverter::String2Byte(parameter.get<std::string>());
}

// The printer's number of a named value or of a number in the user's scale; false for a parameter
// of another kind.
bool ConvertNumber(const std::string& key, const value& parameter,
                   const _t_COMMAND_INFOMATION& field, bool defaulted, unsigned int& number) {
  if (parameter.is<std::string>()) {
    number = DefaultByte(field);
    CCommandConvertTable::StringToBinary(key, parameter.get<std::string>(), number);
    return true;
  }
  if (!parameter.is<int>()) return false;
  number = static_cast<unsigned int>(parameter.get<int>());
  if (!defaulted) {
    number = static_cast<unsigned int>(CCommandConvertTable::InverseCorrectValue(key, number));
  }
  return true;
}

void CopyToField(const std::vector<unsigned char>& bytes, const _t_COMMAND_INFOMATION& field,
                 std::vector<unsigned char>& part) {
  if (field.position >= part.size()) return;
  const std::size_t room = std::min<std::size_t>(field.length, part.size() - field.position);
  std::copy_n(bytes.begin(), std::min(bytes.size(), room),
              part.begin() + static_cast<std::ptrdiff_t>(field.position));
}

}  // namespace

bool CPrinterCommand::Set(const std::string& deviceName, COMMAND_KEY key,
                          const ParameterMapVO& parameters) {
  key_ = key;
  device_name_ = deviceName;
  CommandInfoVO info;
  if (!CModelInfomation::GetInstance().ReadCommandInfo(deviceName, key, info)) return false;
  is_sv_ = info.isSVCmd;
  is_remote_ = info.isRemote;
  is_bgjc_ = info.isBGJC;
  return SetCommand(parameters, info);
}

bool CPrinterCommand::SetCommand(const ParameterMapVO& parameters, const CommandInfoVO& info) {
  command_.clear();
  const std::vector<unsigned char> part = MakeVariablePart(parameters, info);
  const std::vector<unsigned char> length = CDataConverter::Integer2Byte(
      static_cast<unsigned int>(info.format.size() + part.size()), kLengthFieldSize, kLittleEndian);
  if (part.empty()) return false;
  for (const auto* bytes : {&info.command, &length, &info.format, &part}) {
    command_.insert(command_.end(), bytes->begin(), bytes->end());
  }
  return true;
}

std::vector<unsigned char> CPrinterCommand::MakeVariablePart(const ParameterMapVO& parameters,
                                                             const CommandInfoVO& info) {
  std::vector<unsigned char> part(kVariablePartSize);
  std::size_t total = 0;
  for (const auto& [key, field] : info.valueInfo) {
    value parameter(static_cast<int>(DefaultByte(field)));
    const bool defaulted = !parameters.find(key, parameter);
    std::vector<unsigned char> bytes;
    unsigned int number = 0;
    switch (field.valueType) {
      case VALUE_TEXT:
        bytes = ConvertText(parameter);
        break;
      case VALUE_HEX:
        RAVIK_ASSERT(parameter.is<std::string>());
        bytes = CDataConverter::Ascii2Byte(parameter.get<std::string>());
        break;
      case VALUE_INTEGER:
        if (!ConvertNumber(key, parameter, field, defaulted, number)) RAVIK_ASSERT(false);
        bytes = CDataConverter::Integer2Byte(number, field.length, kLittleEndian);
        break;
      default:
        RAVIK_ASSERT(false);
    }
    CopyToField(bytes, field, part);
    total += bytes.size();
  }
  part.resize(total);
  return part;
}

CommandVO CPrinterCommand::GetCommand() const {
  return {command_.data(), static_cast<int>(command_.size())};
}

CommandVO CPrinterCommand::GetCommandForSpooler() const {
  CommandVO spooled;
  if (is_remote_) spooled += Constant(kCmdRemoteStart);
  spooled += GetCommand();
  if (is_sv_) spooled += GetSVCommand();
  if (is_remote_) spooled += Constant(kCmdRemoteEnd);
  return spooled;
}

CommandVO CPrinterCommand::GetSVCommand() {
  return Constant(kCmdSV);
}

std::string CPrinterCommand::GetCommandAscii() const {
  return CDataConverter::Byte2Ascii(command_);
}

}  // namespace Ravik
