// The built program: its command line, its ready line and its ends.
#include <gtest/gtest.h>
#include <picojson.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <utility>

#include "tests/end_to_end/Process.h"

namespace {

namespace fs = std::filesystem;

class Program : public testing::Test {
 protected:
  Program() { fs::create_directory(folder_); }
  ~Program() override { fs::remove_all(folder_); }

  Process Start(std::vector<std::string> arguments) const {
    fs::remove(folder_ / "errors");
    arguments.insert(arguments.begin(), VIRTUAL_PRINTER);
    return Process(std::move(arguments), folder_ / "errors");
  }

  std::string Errors() const {
    std::string text;
    std::getline(std::ifstream(folder_ / "errors"), text, '\0');
    return text;
  }

  const fs::path folder_ =
      fs::path(testing::TempDir()) / ("virtual-printer-program-" + std::to_string(getpid()));
};

TEST_F(Program, TellsItsPortsAndEndsOnAnInterrupt) {
  const fs::path link = folder_ / "printer";
  const fs::path state = folder_ / "state";
  Process program = Start({"--model", "ZARMO QM-V7PS Series", "--listen", "::1", "--raw=0",
                           "--local", link, "--state", state, "--trace"});
  const std::string line = program.ReadUntil("\n");
  picojson::value ready;
  ASSERT_EQ(picojson::parse(ready, line), "") << line;
  EXPECT_EQ(ready.get("model").to_str(), "ZARMO QM-V7PS Series");
  EXPECT_GT(ready.get("snmp").get<double>(), 0);
  EXPECT_GT(ready.get("raw").get<double>(), 0);
  EXPECT_EQ(ready.get("local").to_str(), link);
  EXPECT_TRUE(fs::is_character_file(link));
  EXPECT_EQ(program.Wait(SIGINT), 0);
  EXPECT_EQ(Errors(), "");
  EXPECT_FALSE(fs::is_symlink(link));
  // The state of one family is no other family's.
  EXPECT_EQ(WEXITSTATUS(Start({"--model", "QM-T84 Series", "--state", state}).Wait()), 1);
  EXPECT_NE(Errors().find("Corvel"), std::string::npos);
}

TEST_F(Program, SaysWhatIsWrong) {
  const struct {
    int status;
    std::vector<std::string> arguments;
    const char* told;
  } kCases[] = {
      {2, {}, "--model is missing"},
      {2, {"--model"}, "--model"},
      {2, {"--model", "QM-X Series"}, "QM-T84 Series"},  // lists the names
      {2, {"--model", "QM-V5 Series", "more"}, "more"},
      {2, {"--snmp", "65536"}, "--snmp"},
      {2, {"--snmp", "-1"}, "--snmp"},
      {2, {"--raw", ""}, "--raw"},
      {2, {"--fault", ""}, "unknown fault"},
      {2, {"--fault", "drop"}, "drop: "},
      {2, {"--fault", "loss=101"}, "loss=101: "},
      {2, {"--fault", "delay=4294967296"}, "delay=4294967296: "},
      {2, {"--fault", "forget=1"}, "forget=1: "},
      {2, {"--fault", "na="}, "na=: "},
      {2, {"--fault", "status-text=0G"}, "status-text=0G: "},
      {1, {"--model", "QM-V5 Series", "--listen", "192.0.2.1"}, "192.0.2.1"},
      {1, {"--model", "QM-V5 Series", "--local", "/tmp"}, "/tmp"},
      {1, {"--model", "QM-V5 Series", "--state", "/dev/null"}, "/dev/null"},
  };
  for (const auto& c : kCases) {
    Process program = Start(c.arguments);
    EXPECT_EQ(program.ReadAll(), "");
    EXPECT_EQ(WEXITSTATUS(program.Wait()), c.status) << testing::PrintToString(c.arguments);
    EXPECT_NE(Errors().find(c.told), std::string::npos)
        << testing::PrintToString(c.arguments) << Errors();
  }
}

}  // namespace
