// The worker's command builder and reply analyser against the virtual printer's decoder, which
// shares no code with them, over random records.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/ParameterMapVO.h"
#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
#include "ModelInfomation/ModelInfomation.h"
#include "virtual_printer/Printer.h"

namespace {

using Ravik::ParameterMapVO;

// A record to write, and how the printer must understand its settings.
struct RandomRecord {
  ParameterMapVO parameters;
  std::vector<std::string> settings;  // " NAME=HH", as the printer describes them
};

class Comparison {
 public:
  Comparison(const std::string& device, Ravik::COMMAND_KEY write, Ravik::COMMAND_KEY read,
             int version)
      : device_(device),
        write_(write),
        read_(read),
        version_(version),
        trace_(nullptr),
        printer_({device, "", "", ""},
                 VirtualPrinter::FactoryRecords(*VirtualPrinter::FindFamily(device)), faults_,
                 trace_) {
    EXPECT_TRUE(Ravik::CModelInfomation::GetInstance().ReadCommandInfo(device, write, info_));
  }

  void Run(int records) {
    for (int i = 0; i < records && !testing::Test::HasFailure(); ++i) {
      const RandomRecord record = MakeRecord();
      SCOPED_TRACE(device_ + " layout " + std::to_string(version_) + " record " +
                   std::to_string(i));
      Write(record);
      ReadBack(record);
    }
  }

 private:
  int Random(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }

  // A setting in the form that its raw value has for a host: its name, or the corrected number.
  void AddSetting(const std::string& key, RandomRecord& record) {
    const auto raw = static_cast<unsigned int>(Random(0, 254));
    std::string name;
    if (Ravik::CCommandConvertTable::BinaryToString(key, raw, name)) {
      record.parameters.insert(key, name);
    } else {
      record.parameters.insert(key, Ravik::CCommandConvertTable::CorrectValue(key, raw));
    }
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", raw);
    record.settings.push_back(' ' + (key == "RegistrationFlag" ? "flag" : key) + '=' + digits);
  }

  RandomRecord MakeRecord() {
    RandomRecord record;
    record.parameters.insert("CustomMediaNo", Random(1, 30));
    record.parameters.insert("CommandVersion", version_);
    for (const auto& [key, field] : info_.valueInfo) {
      const bool isSetting = field.position > 2 && field.valueType == Ravik::VALUE_INTEGER &&
                             key.rfind("Reserv", 0) != 0;
      // The reference media type has no value that leaves it as it is.
      if (isSetting && (key == "ReferenceMediaType" || Random(0, 3) != 0)) AddSetting(key, record);
    }
    std::string name;
    for (int length = Random(0, 32); length > 0; --length) {
      name += static_cast<char>(Random('#', '~'));
    }
    if (!name.empty()) {
      record.parameters.insert("CustomMediaName", name);
      record.settings.push_back(" media_name=\"" + name + '"');
    }
    return record;
  }

  Ravik::CommandVO Build(Ravik::COMMAND_KEY key, const ParameterMapVO& parameters) {
    Ravik::CPrinterCommand command;
    EXPECT_TRUE(command.Set(device_, key, parameters));
    return command.GetCommand();
  }

  void Write(const RandomRecord& record) {
    const VirtualPrinter::Bytes command = Build(write_, record.parameters).bytes();
    std::string description =
        VirtualPrinter::DescribeCommand(*VirtualPrinter::FindFamily(device_), command);
    for (const std::string& setting : record.settings) {
      const auto position = description.find(setting);
      ASSERT_NE(position, std::string::npos) << setting << " is not in" << description;
      description.erase(position, setting.size());
    }
    EXPECT_EQ(description.substr(description.find(" layout=")),
              " layout=" + std::to_string(version_));
    const VirtualPrinter::Bytes reply = printer_.Execute(VirtualPrinter::Port::kSnmp, command);
    EXPECT_EQ(std::string(reply.begin(), reply.end()), "EX:0000001BOK;");
  }

  void ReadBack(const RandomRecord& record) {
    VirtualPrinter::Bytes reply =
        printer_.Execute(VirtualPrinter::Port::kSnmp, Build(read_, record.parameters).bytes());
    reply.resize(512);
    ParameterMapVO readBack;
    Ravik::APPLICATION_ERROR error = Ravik::ERROR_NONE;
    EXPECT_TRUE(Ravik::CPrinterReply::AnalysisCommandReply(
        device_, read_, Ravik::CommandVO(reply.data(), static_cast<int>(reply.size())), readBack,
        error));
    EXPECT_GT(readBack.size(), 12U);
    EXPECT_TRUE(record.parameters.isContain(readBack)) << record.parameters << '\n' << readBack;
  }

  const std::string device_;
  const Ravik::COMMAND_KEY write_;
  const Ravik::COMMAND_KEY read_;
  const int version_;
  VirtualPrinter::Faults faults_;
  VirtualPrinter::Trace trace_;
  VirtualPrinter::Printer printer_;
  Ravik::CommandInfoVO info_;
  std::mt19937 random_{20260101};
};

TEST(Comparison, ThePrinterUnderstandsWhatTheWorkerBuilds) {
  constexpr int kRecords = 200;
  for (const std::string_view name : VirtualPrinter::DeviceNames()) {
    const std::string device(name);
    Comparison(device, Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::READ_CUSTOMMEDIA_INFO1, 0)
        .Run(kRecords);
    const auto* family = VirtualPrinter::FindFamily(device);
    if (VirtualPrinter::FindLayout(*family, 1) == nullptr) continue;
    Comparison(device, Ravik::WRITE_CUSTOMMEDIA_INFO2, Ravik::READ_CUSTOMMEDIA_INFO2, 1)
        .Run(kRecords);
  }
}

}  // namespace
