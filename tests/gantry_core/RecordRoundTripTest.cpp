// A record that was read and is written back reaches the printer unchanged, in every family.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
#include "ModelInfomation/ModelInfomation.h"
#include "tests/model_information/Families.h"

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;
constexpr std::size_t kCommandHeadSize = 9;  // name, length field, five format bytes

class RecordRoundTrip : public testing::TestWithParam<FamilyCase> {
 protected:
  // A record of random bytes; what the printer does not report is FF, as a write leaves it.
  Bytes RandomRecord(const CommandInfoVO& write, const ReplyInfoVO& reply) {
    Bytes record;
    for (const auto& [name, field] : write.valueInfo) {
      record.resize(std::max<std::size_t>(record.size(), field.position + field.length));
      const bool reported = reply.replyInfo.count(name) != 0;
      for (unsigned int i = 0; i < field.length; ++i) {
        const auto random = static_cast<unsigned char>(random_() % 256);
        record[field.position + i] = reported ? random : static_cast<unsigned char>(0xFF);
      }
    }
    if (record.back() == ' ' || record.back() == '\t') record.back() = 'x';  // of the name
    return record;
  }

  // The printer's answer to a read, filled up as the transport hands it over.
  static CommandVO Answer(const Bytes& record, bool binary) {
    std::string text = "EX:0000001B";
    for (const unsigned char byte : record) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02X", byte);
      text += binary ? std::string(1, static_cast<char>(byte)) : digits;
    }
    text += ';';
    text.resize(512);
    return {text.data(), static_cast<int>(text.size())};
  }

  std::mt19937 random_{4711};
};

TEST_P(RecordRoundTrip, ReadThenWritten) {
  const std::string device_name = GetParam().device_name;
  CModelInfomation& models = CModelInfomation::GetInstance();
  for (const auto& [read_key, write_key] :
       {std::pair{READ_CUSTOMMEDIA_INFO1, WRITE_CUSTOMMEDIA_INFO1},
        {READ_CUSTOMMEDIA_INFO2, WRITE_CUSTOMMEDIA_INFO2},
        {READ_CUSTOMMEDIA_INFO3, WRITE_CUSTOMMEDIA_INFO3}}) {
    if (GetParam().reply_fields.count(read_key) == 0) continue;
    CommandInfoVO write;
    ReplyInfoVO reply;
    ASSERT_TRUE(models.ReadCommandInfo(device_name, write_key, write));
    ASSERT_TRUE(models.ReadReplyInfo(device_name, read_key, reply));
    for (int round = 0; round < 300; ++round) {
      const Bytes record = RandomRecord(write, reply);
      ParameterMapVO parameters;
      APPLICATION_ERROR error = ERROR_NONE;
      ASSERT_TRUE(CPrinterReply::AnalysisCommandReply(
          device_name, read_key, Answer(record, read_key == READ_CUSTOMMEDIA_INFO3), parameters,
          error));
      CPrinterCommand command;
      ASSERT_TRUE(command.Set(device_name, write_key, parameters));
      const Bytes bytes = command.GetCommand().bytes();
      ASSERT_EQ(Bytes(bytes.begin() + kCommandHeadSize, bytes.end()), record)
          << "operation " << read_key << ", read as " << parameters;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, RecordRoundTrip, testing::ValuesIn(Families()), FamilyName);

}  // namespace
}  // namespace Ravik
