// The command line.
#include "virtual_printer/Options.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/virtual_printer/TestPrinter.h"

namespace VirtualPrinter {
namespace {

std::string Parse(std::vector<std::string> arguments, Options& options) {
  arguments.insert(arguments.begin(), "virtual-printer");
  std::vector<char*> pointers(arguments.size() + 1);
  std::transform(arguments.begin(), arguments.end(), pointers.begin(),
                 [](std::string& argument) { return argument.data(); });
  return ParseOptions(static_cast<int>(arguments.size()), pointers.data(), options);
}

TEST(Options, TakesWhatIsRight) {
  Options options;
  ASSERT_EQ(Parse({"--model",
                   "QM-V5 Series",
                   "--snmp=161",
                   "--raw",
                   "65535",
                   "--listen",
                   "::1",
                   "--local",
                   "/tmp/printer",
                   "--serial",
                   "S",
                   "--firmware",
                   "2",
                   "--state",
                   "file",
                   "--fault",
                   "drop=1",
                   "--fault",
                   "status-text=0D0a",
                   "--trace"},
                  options),
            "");
  EXPECT_EQ(options.setup.model, "QM-V5 Series");
  EXPECT_EQ(options.snmp_port, 161);
  EXPECT_EQ(options.raw_port, 65535);
  EXPECT_EQ(options.listen, "::1");
  EXPECT_EQ(options.local_path, "/tmp/printer");
  EXPECT_EQ(options.setup.serial, "S");
  EXPECT_EQ(options.setup.firmware, "2");
  EXPECT_EQ(options.setup.state_path, "file");
  EXPECT_TRUE(options.trace);
  EXPECT_EQ(options.faults.StatusText(), Hex("0D0A"));
  EXPECT_TRUE(options.faults.LosesRequest());
  EXPECT_FALSE(options.faults.LosesRequest());
}

TEST(Options, SaysWhatIsWrong) {
  struct WrongCase {
    std::vector<std::string> arguments;
    const char* told;
  };
  const WrongCase cases[] = {
      {{}, "--model is missing"},
      {{"--model"}, "--model"},
      {{"--model", "QM-X Series"}, "QM-T84 Series"},  // lists the names
      {{"--colour", "red"}, "--colour"},
      {{"--model", "QM-V5 Series", "more"}, "more"},
      {{"--snmp", "65536"}, "--snmp"},
      {{"--snmp", "-1"}, "--snmp"},
      {{"--raw", "1x"}, "--raw"},
      {{"--raw", ""}, "--raw"},
      {{"--fault", "fire"}, "fire"},
      {{"--fault", ""}, "--fault"},
      {{"--fault", "drop"}, "drop"},
      {{"--fault", "drop="}, "drop="},
      {{"--fault", "loss=101"}, "loss=101"},
      {{"--fault", "loss=-1"}, "loss=-1"},
      {{"--fault", "delay=4294967296"}, "delay"},
      {{"--fault", "truncate=x"}, "truncate"},
      {{"--fault", "forget=1"}, "forget"},
      {{"--fault", "na="}, "na="},
      {{"--fault", "status-text"}, "status-text"},
      {{"--fault", "status-text=123"}, "status-text"},
      {{"--fault", "status-text=0G"}, "status-text"},
  };
  for (const auto& row : cases) {
    Options options;
    EXPECT_NE(Parse(row.arguments, options).find(row.told), std::string::npos)
        << testing::PrintToString(row.arguments) << Parse(row.arguments, options);
  }
}

}  // namespace
}  // namespace VirtualPrinter
