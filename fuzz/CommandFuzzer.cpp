// Commands of every family and operation, taken apart again and carried out by the virtual printer,
// whose reader and records are code of their own.
//
// Input: family, operation, and for each parameter of the operation what the host gives for it.
#include <algorithm>
#include <array>
#include <map>
#include <sstream>
#include <utility>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
#include "ModelInfomation/ModelInfomation.h"
#include "ModelInfomation/ParameterName.h"
#include "fuzz/Families.h"
#include "fuzz/Fuzz.h"
#include "fuzz/PrescribedEnds.h"
#include "printer_io/CZIOCommon.h"
#include "printer_io/RemoteMode.h"
#include "virtual_printer/Printer.h"
#include "virtual_printer/RemoteStream.h"
#include "virtual_printer/SnmpMessage.h"

namespace {

using Ravik::COMMAND_KEY;
using Ravik::ParameterMapVO;
using VirtualPrinter::Bytes;
using VirtualPrinter::CommandKind;

CommandKind KindOf(COMMAND_KEY key) {
  switch (key) {
    case Ravik::READ_CUSTOMMEDIA_NAME:
      return CommandKind::kReadNames;
    case Ravik::READ_FW_VERSION:
      return CommandKind::kFirmware;
    case Ravik::WRITE_CUSTOMMEDIA_INFO1:
    case Ravik::WRITE_CUSTOMMEDIA_INFO2:
    case Ravik::WRITE_CUSTOMMEDIA_INFO3:
      return CommandKind::kWriteRecord;
    case Ravik::WRITE_MEDIA_INITIALIZE:
      return CommandKind::kInitialize;
    default:
      return CommandKind::kReadRecord;
  }
}

struct RecordLayout {
  int version;
  COMMAND_KEY read_key;
};

const std::map<COMMAND_KEY, RecordLayout> kLayoutOfWrite = {
    {Ravik::WRITE_CUSTOMMEDIA_INFO1, {0, Ravik::READ_CUSTOMMEDIA_INFO1}},
    {Ravik::WRITE_CUSTOMMEDIA_INFO2, {1, Ravik::READ_CUSTOMMEDIA_INFO2}},
    {Ravik::WRITE_CUSTOMMEDIA_INFO3, {128, Ravik::READ_CUSTOMMEDIA_INFO3}},
};

std::string HexText(FuzzedDataProvider& input, std::size_t size) {
  auto bytes = input.ConsumeBytes<std::uint8_t>(size);
  bytes.resize(size);
  return VirtualPrinter::ToHex(bytes);
}

void InsertParameter(FuzzedDataProvider& input, const std::string& name,
                     const Ravik::_t_COMMAND_INFOMATION& field, ParameterMapVO& parameters) {
  switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
      return;
    case 1:
      return parameters.insert(name, input.ConsumeIntegral<std::int8_t>());
    case 2:
      return parameters.insert(name, input.ConsumeIntegral<int>());
    case 3:
      return parameters.insert(name,
                               std::string(input.PickValueInArray(Ravik::kConvertTable).text));
    case 4:
      return parameters.insert(name, input.ConsumeRandomLengthString(600));
    case 5:
      return parameters.insert(name, HexText(input, field.length));
    default:
      return parameters.insert(name);
  }
}

Bytes Built(const std::string& device_name, COMMAND_KEY key, const ParameterMapVO& parameters) {
  Ravik::CPrinterCommand command;
  FUZZ_CHECK(command.Set(device_name, key, parameters));
  return command.GetCommand().bytes();
}

// The virtual printer cuts the same commands out of what the data port gets.
void CheckSpooled(const Ravik::CPrinterCommand& command) {
  if (!command.IsRemote()) return;
  std::vector<Bytes> sent = {command.GetCommand().bytes()};
  if (command.IsSVCmd()) sent.push_back(Ravik::CPrinterCommand::GetSVCommand().bytes());
  const auto stream = command.GetCommandForSpooler();
  VirtualPrinter::RemoteStream reader;
  FUZZ_CHECK(reader.Feed(stream.bytes().data(), stream.bytes().size()) == sent);
}

// The virtual printer finds the command in the object identifier that it travels in.
void CheckSnmp(const Bytes& command) {
  constexpr std::size_t kPrefixSize = 14 + 4;
  std::string framed(std::begin(Ravik::CMD_REMOTE_START), std::end(Ravik::CMD_REMOTE_START));
  framed.append(command.begin(), command.end());
  framed.append(std::begin(Ravik::CMD_REMOTE_END), std::end(Ravik::CMD_REMOTE_END));
  std::array<char, 512> request{};
  long length = 0;
  const int result = CZIOCommon::CreateSNMPCommand(framed.data(), static_cast<long>(framed.size()),
                                                   request.data(), &length);
  if (result != 0) {
    FUZZ_CHECK(result == -1 && command.size() > 200);
    return;
  }
  const auto read =
      VirtualPrinter::ParseSnmpRequest(Bytes(request.data(), request.data() + length));
  FUZZ_CHECK(read && read->objects.size() == 1);
  const auto& object = read->objects.front();
  FUZZ_CHECK(object.size() == kPrefixSize + command.size());
  FUZZ_CHECK(std::equal(command.begin(), command.end(), object.begin() + kPrefixSize));
}

bool SameByte(int left, int right) {
  return static_cast<std::uint8_t>(left) == static_cast<std::uint8_t>(right);
}

// Whether what the host gave is what it reads back, where a printer keeps it.
bool Agrees(const std::string& name, const Ravik::value& given, const Ravik::value& read) {
  using Table = Ravik::CCommandConvertTable;
  unsigned int byte = 0;
  if (given.is<std::string>()) {
    const auto& text = given.get<std::string>();
    const bool named = Table::StringToBinary(name, text, byte);
    return !named || (read.is<std::string>() && read.get<std::string>() == text);
  }
  const int number = given.get<int>();
  if (read.is<int>()) return SameByte(read.get<int>(), number);
  const int sent = Table::InverseCorrectValue(name, static_cast<unsigned int>(number));
  return Table::StringToBinary(name, read.get<std::string>(), byte) &&
         SameByte(sent, static_cast<int>(byte));
}

std::string Text(const ParameterMapVO& values) {
  std::ostringstream text;
  text << values;
  return text.str();
}

class Session {
 public:
  explicit Session(const std::string& device_name)
      : device_name_(device_name),
        family_(*VirtualPrinter::FindFamily(device_name)),
        printer_({device_name, "VP00000001", "1.00", ""}, VirtualPrinter::FactoryRecords(family_),
                 faults_, trace_) {}

  Bytes Execute(const Bytes& command) {
    return printer_.Execute(VirtualPrinter::Port::kRaw, command);
  }

  // What is read of the record that the variable part of a write names.
  ParameterMapVO Read(COMMAND_KEY key, const Bytes& variable) {
    ParameterMapVO parameters;
    parameters.insert(Ravik::CUSTOMMEDIA_NUMBER, variable[1]);
    parameters.insert(Ravik::CUSTOMMEDIA_CMDVERSION, variable[2]);
    // As the transport hands it over; a record that itself ends in "NA;" is no refusal so.
    constexpr std::size_t kReplySize = 512;
    Bytes reply = Execute(Built(device_name_, key, parameters));
    reply.resize(kReplySize);
    ParameterMapVO values;
    auto error = Ravik::ERROR_NONE;
    FUZZ_CHECK(Ravik::CPrinterReply::AnalysisCommandReply(
        device_name_, key, {reply.data(), static_cast<int>(reply.size())}, values, error));
    return values;
  }

  // What was written is read back, and writing what is read changes nothing of that.
  void CheckRecord(COMMAND_KEY key, const ParameterMapVO& given, const Bytes& variable) {
    const COMMAND_KEY read_key = kLayoutOfWrite.at(key).read_key;
    const ParameterMapVO values = Read(read_key, variable);
    const auto& layout = *VirtualPrinter::FindLayout(family_, variable[2]);
    for (std::size_t i = 0; i < layout.settings; ++i) {
      const std::string name = VirtualPrinter::SettingName(family_, layout, i);
      Ravik::value parameter;
      Ravik::value read;
      if (variable[VirtualPrinter::kRecordHeadSize + i] == VirtualPrinter::kLeaveAsIs) continue;
      if (!given.find(name, parameter) || !values.find(name, read)) continue;
      FUZZ_CHECK(Agrees(name, parameter, read));
    }
    const Bytes reply = Execute(Built(device_name_, key, values));
    FUZZ_CHECK(reply == VirtualPrinter::ToBytes("EX:0000001BOK;"));
    FUZZ_CHECK(Text(Read(read_key, variable)) == Text(values));
  }

 private:
  const std::string device_name_;
  const VirtualPrinter::Family& family_;
  VirtualPrinter::Faults faults_;
  VirtualPrinter::Trace trace_{nullptr};
  VirtualPrinter::Printer printer_;
};

void Run(const std::string& device_name, COMMAND_KEY key, const ParameterMapVO& given) {
  Ravik::CPrinterCommand command;
  if (!command.Set(device_name, key, given)) return;
  const Bytes bytes = command.GetCommand().bytes();
  const VirtualPrinter::Command parsed = VirtualPrinter::ParseCommand(bytes);
  FUZZ_CHECK(parsed.kind == KindOf(key));
  CheckSpooled(command);
  CheckSnmp(bytes);
  Session session(device_name);
  const Bytes reply = session.Execute(bytes);
  const auto layout = kLayoutOfWrite.find(key);
  const bool stored = reply == VirtualPrinter::ToBytes("EX:0000001BOK;");
  if (layout == kLayoutOfWrite.end() || !stored) return;
  if (parsed.variable.at(2) == layout->second.version) {
    session.CheckRecord(key, given, parsed.variable);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string device_name = input.PickValueInArray(fuzz::kDeviceNames);
  const COMMAND_KEY key = input.PickValueInArray(fuzz::kCommandKeys);
  Completes([&] {
    Ravik::CommandInfoVO info;
    FUZZ_CHECK(Ravik::CModelInfomation::GetInstance().ReadCommandInfo(device_name, key, info));
    ParameterMapVO parameters;
    for (const auto& [name, field] : info.valueInfo)
      InsertParameter(input, name, field, parameters);
    Run(device_name, key, parameters);
  });
  return 0;
}
