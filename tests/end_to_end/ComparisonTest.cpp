// The worker's command builder and reply analyser against the virtual printer's decoder, which
// shares no code with them, over random records.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/ParameterMapVO.h"
#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
#include "ModelInfomation/ModelInfomation.h"
#include "util/TraceLine.h"
#include "virtual_printer/Description.h"
#include "virtual_printer/Printer.h"

namespace {

using Ravik::ParameterMapVO;

// One device and record layout: what is written to its printer, and how the printer must
// understand it.
class Comparison {
 public:
  Comparison(const std::string& device, std::uint8_t version)
      : device_(device),
        version_(version),
        write_(version == 0 ? Ravik::WRITE_CUSTOMMEDIA_INFO1 : Ravik::WRITE_CUSTOMMEDIA_INFO2),
        read_(version == 0 ? Ravik::READ_CUSTOMMEDIA_INFO1 : Ravik::READ_CUSTOMMEDIA_INFO2) {
    EXPECT_TRUE(Ravik::CModelInfomation::GetInstance().ReadCommandInfo(device, write_, info_));
  }

  void Run() {
    MakeRecord();
    Write();
    ReadBack();
  }

 private:
  int Random(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }

  // A setting in the form that its raw value has for a host: its name, or the corrected number.
  void AddSetting(const std::string& key) {
    const auto raw = static_cast<unsigned int>(Random(0, 254));
    std::string name;
    if (Ravik::CCommandConvertTable::BinaryToString(key, raw, name)) {
      record_.insert(key, name);
    } else {
      record_.insert(key, Ravik::CCommandConvertTable::CorrectValue(key, raw));
    }
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", raw);
    settings_.push_back(' ' + (key == "RegistrationFlag" ? "flag" : key) + '=' + digits);
  }

  void MakeRecord() {
    record_ = {};
    settings_ = {};
    record_.insert("CustomMediaNo", Random(1, 30));
    record_.insert("CommandVersion", version_);
    for (const auto& [key, field] : info_.valueInfo) {
      const bool isSetting = field.position > 2 && field.valueType == Ravik::VALUE_INTEGER &&
                             key.rfind("Reserv", 0) != 0;
      // The reference media type has no value that leaves it as it is.
      if (isSetting && (key == "ReferenceMediaType" || Random(0, 3) != 0)) AddSetting(key);
    }
    std::string name;
    for (int length = Random(0, 32); length > 0; --length) {
      name += static_cast<char>(Random('#', '~'));
    }
    if (name.empty()) return;
    record_.insert("CustomMediaName", name);
    settings_.push_back(" media_name=" + Ravik::TraceQuoted(name));
  }

  VirtualPrinter::Bytes Build(Ravik::COMMAND_KEY key) const {
    Ravik::CPrinterCommand command;
    EXPECT_TRUE(command.Set(device_, key, record_));
    return command.GetCommand().bytes();
  }

  void Write() {
    const VirtualPrinter::Bytes command = Build(write_);
    std::string description = VirtualPrinter::DescribeCommand(family_, command);
    for (const std::string& setting : settings_) {
      const auto position = description.find(setting);
      ASSERT_NE(position, std::string::npos) << setting << " is not in" << description;
      description.erase(position, setting.size());
    }
    EXPECT_EQ(description.substr(description.find(" layout=")),
              " layout=" + std::to_string(version_));
    const VirtualPrinter::Bytes reply = printer_.Execute(VirtualPrinter::Port::kSnmp, command);
    EXPECT_EQ(std::string(reply.begin(), reply.end()), "EX:0000001BOK;");
  }

  void ReadBack() {
    VirtualPrinter::Bytes reply = printer_.Execute(VirtualPrinter::Port::kSnmp, Build(read_));
    reply.resize(512);
    ParameterMapVO readBack;
    Ravik::APPLICATION_ERROR error = Ravik::ERROR_NONE;
    EXPECT_TRUE(Ravik::CPrinterReply::AnalysisCommandReply(
        device_, read_, Ravik::CommandVO(reply.data(), static_cast<int>(reply.size())), readBack,
        error));
    EXPECT_GT(readBack.size(), 12U);
    EXPECT_TRUE(record_.isContain(readBack)) << record_ << '\n' << readBack;
  }

  const std::string device_;
  const std::uint8_t version_;
  const Ravik::COMMAND_KEY write_;
  const Ravik::COMMAND_KEY read_;
  const VirtualPrinter::Family& family_{*VirtualPrinter::FindFamily(device_)};
  VirtualPrinter::Faults faults_;
  VirtualPrinter::Trace trace_{nullptr};
  VirtualPrinter::Printer printer_{
      {device_, "", "", ""}, VirtualPrinter::FactoryRecords(family_), faults_, trace_};
  Ravik::CommandInfoVO info_;
  std::mt19937 random_{20260101};
  ParameterMapVO record_;
  std::vector<std::string> settings_;  // " NAME=HH", as the printer describes them
};

TEST(Comparison, ThePrinterUnderstandsWhatTheWorkerBuilds) {
  for (const std::string_view name : VirtualPrinter::DeviceNames()) {
    const std::string device(name);
    for (std::uint8_t version = 0; version < 2; ++version) {
      const auto* family = VirtualPrinter::FindFamily(device);
      if (VirtualPrinter::FindLayout(*family, version) == nullptr) continue;
      SCOPED_TRACE(device + " layout " + std::to_string(version));
      Comparison comparison(device, version);
      for (int record = 0; record < 200 && !HasFailure(); ++record) comparison.Run();
    }
  }
}

}  // namespace
