// The examples in docs/ are what the system does.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "GantryCore/ParameterMapVO.h"
#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
#include "NativeProcess/URLDecoder.h"
#include "printer_control/StatusReply.h"
#include "printer_io/CZIOCommon.h"
#include "tests/end_to_end/Rig.h"

namespace {

using Bytes = std::vector<unsigned char>;

struct Block {
  std::string name;  // what stands behind the opening fence
  std::string text;
};

std::vector<Block> Blocks(const std::string& page) {
  std::istringstream lines(ReadFile(std::string(DOCUMENTS_FOLDER) + '/' + page));
  std::vector<Block> blocks;
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("```", 0) == 0) {
      if (!inside) blocks.push_back({line.substr(3), ""});
      inside = !inside;
    } else if (inside) {
      blocks.back().text += (blocks.back().text.empty() ? "" : "\n") + line;
    }
  }
  return blocks;
}

std::string Example(const std::string& page, const std::string& name) {
  for (const Block& block : Blocks(page)) {
    if (block.name == name) return block.text;
  }
  ADD_FAILURE() << page << " has no block " << name;
  return "";
}

// The bytes of a block; words behind the bytes of a line are remarks.
Bytes Hex(const std::string& page, const std::string& name) {
  std::istringstream lines(Example(page, name));
  Bytes bytes;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    for (std::string word; words >> word;) {
      if (word.size() != 2 || word.find_first_not_of("0123456789ABCDEF") != std::string::npos)
        break;
      bytes.push_back(static_cast<unsigned char>(std::stoi(word, nullptr, 16)));
    }
  }
  return bytes;
}

Ravik::CPrinterCommand Built(Ravik::COMMAND_KEY key, const Ravik::ParameterMapVO& parameters) {
  Ravik::CPrinterCommand command;
  EXPECT_TRUE(command.Set("QM-R410 Series", key, parameters));
  return command;
}

Ravik::ParameterMapVO RecordThree() {
  Ravik::ParameterMapVO parameters;
  parameters.insert("CustomMediaNo", 3);
  parameters.insert("CommandVersion", 0);
  return parameters;
}

std::string Printed(const Ravik::ParameterMapVO& map) {
  std::ostringstream out;
  out << map;
  return out.str();
}

TEST(Document, Commands) {
  const Ravik::CPrinterCommand read = Built(Ravik::READ_CUSTOMMEDIA_INFO1, RecordThree());
  EXPECT_EQ(read.GetCommand().bytes(), Hex("commands.md", "hex command read"));
  EXPECT_EQ(read.GetCommandForSpooler().bytes(), Hex("commands.md", "hex remote mode"));

  Ravik::ParameterMapVO settings = RecordThree();
  settings.insert("MediaSuction", 4);
  settings.insert("PlatenGap", "2.5");
  settings.insert("CustomMediaName", "Banner");
  EXPECT_EQ(Built(Ravik::WRITE_CUSTOMMEDIA_INFO1, settings).GetCommand().bytes(),
            Hex("commands.md", "hex command write"));
}

TEST(Document, SnmpRequest) {
  Bytes command = Hex("commands.md", "hex command read");
  CZIOCommon port(nullptr, nullptr);
  char request[512] = {};
  long length = 0;
  ASSERT_EQ(port.CreateSNMPCommand(reinterpret_cast<char*>(command.data()),
                                   static_cast<long>(command.size()), request, &length),
            0);
  EXPECT_EQ(Bytes(request, request + length), Hex("snmp.md", "hex snmp"));
}

TEST(Document, Reply) {
  Bytes reply = Hex("replies.md", "hex reply");
  reply.resize(512);
  Ravik::ParameterMapVO out;
  Ravik::APPLICATION_ERROR error = Ravik::ERROR_NONE;
  ASSERT_TRUE(Ravik::CPrinterReply::AnalysisCommandReply(
      "QM-R410 Series", Ravik::READ_CUSTOMMEDIA_INFO1,
      Ravik::CommandVO(reply.data(), static_cast<int>(reply.size())), out, error));
  EXPECT_EQ(Printed(out), Example("replies.md", "json reply"));
}

TEST(Document, Status) {
  const Bytes text = Hex("status.md", "hex status");
  constexpr std::size_t kBeforeLength = 4;  // the text and CR LF
  ASSERT_EQ(text.size(), kBeforeLength + 2 + text[kBeforeLength]);
  StatusReply status;
  ASSERT_TRUE(status.SetReply(text.data() + kBeforeLength));
  Ravik::ParameterMapVO asked;
  for (const char* key : {"StatusCode", "ErrorCode", "WarningCode", "SerialNumber"}) {
    asked.insert(key);
  }
  Ravik::ParameterMapVO out;
  Ravik::APPLICATION_ERROR error = Ravik::ERROR_NONE;
  Ravik::CPrinterReply::AnalysisStatusReply("QM-R410 Series", asked, status, out, error);
  EXPECT_EQ(Printed(out), Example("status.md", "json status"));
}

TEST(Document, Conversation) {
  VirtualPrinter studio("QM-R410 Series", {"--serial", "SN00012345"});
  VirtualPrinter proof("QM-V5 Series", {"--firmware", "2.31"});
  const WorkerFolder folder(
      {{"Studio", studio.model(), studio.Uri()}, {"Proof", proof.model(), proof.Uri()}});
  KeptWorker worker(folder);
  int examples = 0;
  std::string request;
  for (const Block& block : Blocks("protocol.md")) {
    if (block.name == "json request") {
      request = block.text;
    } else if (block.name == "json answer") {
      EXPECT_EQ(worker.Ask(request), block.text);
      ++examples;
    } else {
      EXPECT_EQ(block.name, "text request line");
      EXPECT_EQ(URLDecoder::decode(block.text), request);
    }
  }
  EXPECT_EQ(examples, 7);
}

}  // namespace
