// The examples in docs/ are what the system does.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
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

constexpr char kDevice[] = "QM-R410 Series";

using Bytes = std::vector<unsigned char>;

struct Block {
  std::string name;  // what stands behind the opening fence
  std::string text;
};

std::vector<Block> Blocks(const std::string& page) {
  const std::string text = Document(page);
  const std::regex fenced("```(.+)\n([^`]*)\n```");
  std::vector<Block> blocks;
  for (std::sregex_iterator block(text.begin(), text.end(), fenced), end; block != end; ++block) {
    blocks.push_back({(*block)[1], (*block)[2]});
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

// The bytes of a block, without the remarks behind them.
Bytes Hex(const std::string& page, const std::string& name) {
  const std::regex hex("[0-9A-F]{2}");
  std::istringstream words(Example(page, name));
  Bytes bytes;
  for (std::string word; words >> word;) {
    if (std::regex_match(word, hex)) {
      bytes.push_back(static_cast<unsigned char>(std::stoi(word, nullptr, 16)));
    }
  }
  return bytes;
}

std::string File(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string Printed(const Ravik::ParameterMapVO& map) {
  std::ostringstream out;
  out << map;
  return out.str();
}

TEST(Document, Commands) {
  Ravik::ParameterMapVO parameters;
  parameters.insert("CustomMediaNo", 3);
  parameters.insert("CommandVersion", 0);
  Ravik::CPrinterCommand command;
  ASSERT_TRUE(command.Set(kDevice, Ravik::READ_CUSTOMMEDIA_INFO1, parameters));
  EXPECT_EQ(command.GetCommand().bytes(), Hex("commands.md", "hex command read"));
  EXPECT_EQ(command.GetCommandForSpooler().bytes(), Hex("commands.md", "hex remote mode"));

  parameters.insert("MediaSuction", 4);
  parameters.insert("PlatenGap", "2.5");
  parameters.insert("CustomMediaName", "Banner");
  ASSERT_TRUE(command.Set(kDevice, Ravik::WRITE_CUSTOMMEDIA_INFO1, parameters));
  EXPECT_EQ(command.GetCommand().bytes(), Hex("commands.md", "hex command write"));
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

TEST(Document, RepliesAndStatus) {
  Bytes reply = Hex("replies.md", "hex reply");
  reply.resize(512);
  Ravik::ParameterMapVO out;
  Ravik::APPLICATION_ERROR error = Ravik::ERROR_NONE;
  ASSERT_TRUE(Ravik::CPrinterReply::AnalysisCommandReply(
      kDevice, Ravik::READ_CUSTOMMEDIA_INFO1,
      Ravik::CommandVO(reply.data(), static_cast<int>(reply.size())), out, error));
  EXPECT_EQ(Printed(out), Example("replies.md", "json reply"));

  const Bytes text = Hex("status.md", "hex status");
  constexpr std::size_t kBeforeLength = 4;  // the text and CR LF
  ASSERT_EQ(text.size(), kBeforeLength + 2 + text[kBeforeLength]);
  StatusReply status;
  ASSERT_TRUE(status.SetReply(text.data() + kBeforeLength));
  Ravik::ParameterMapVO asked;
  for (const char* key : {"StatusCode", "ErrorCode", "WarningCode", "SerialNumber"}) {
    asked.insert(key);
  }
  out = {};
  Ravik::CPrinterReply::AnalysisStatusReply(kDevice, asked, status, out, error);
  EXPECT_EQ(Printed(out), Example("status.md", "json status"));
}

// What differs from run to run made equal, and the lines of one side alone: those of the two sides
// of a port are a matter of the clock.
std::string TraceOf(const std::string& programs, const std::string& trace) {
  std::string lines;
  std::istringstream text(trace);
  for (std::string line; std::getline(text, line);) {
    line = std::regex_replace(line, std::regex("^\\S+Z "), "");
    line = std::regex_replace(line, std::regex(R"(\[\d+\])"), "[]");
    line = std::regex_replace(line, std::regex(R"(127\.0\.0\.1:\d+(\?snmp=\d+)?)"), "ADDRESS");
    line = std::regex_replace(line, std::regex(R"(ms=[0-9.]+)"), "ms=");
    if (std::regex_search(line, std::regex("^(" + programs + ")\\["))) lines += line + '\n';
  }
  return lines;
}

TEST(Document, Trace) {
  const WorkerFolder folder({});
  const auto path = [&](const char* name) { return (folder.path() / name).string(); };
  VirtualPrinter studio(kDevice, {"--trace"}, Link::kNetwork, path("printer"));
  folder.List({{"Studio", kDevice, studio.Uri()}});
  folder.Run(Line(kList));
  Process worker = folder.Start("PRINTER_TRACE=\"${0%/*}/trace\" exec \"$0\"");
  worker.Write(Line(Request("GetCustomMediaInfo", "Studio", kDevice,
                            R"({"CustomMediaNo":3,"CommandVersion":0})")));
  worker.ReadAll();
  EXPECT_TRUE(studio.Stop());
  const std::string page = Example("trace.md", "text trace");
  EXPECT_EQ(TraceOf("worker|driver", File(path("trace"))), TraceOf("worker|driver", page));
  EXPECT_EQ(TraceOf("printer", File(path("printer"))), TraceOf("printer", page));
}

TEST(Document, Conversation) {
  VirtualPrinter studio(kDevice, {"--serial", "SN00012345"});
  VirtualPrinter proof("QM-V5 Series", {"--firmware", "2.31"});
  const WorkerFolder folder(
      {{"Studio", kDevice, studio.Uri()}, {"Proof", "QM-V5 Series", proof.Uri()}});
  const Process worker = folder.Start();
  int examples = 0;
  std::string request;
  for (const Block& block : Blocks("protocol.md")) {
    if (block.name == "json request") {
      request = block.text;
      ++examples;
    } else if (block.name == "json answer") {
      EXPECT_EQ(Ask(worker, request), block.text);
    } else {
      EXPECT_EQ(URLDecoder::decode(block.text), request) << block.name;
    }
  }
  EXPECT_EQ(examples, 7);
}

}  // namespace
