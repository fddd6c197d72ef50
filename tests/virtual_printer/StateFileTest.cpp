// What outlives the printer.
#include "virtual_printer/StateFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/virtual_printer/TestPrinter.h"

namespace VirtualPrinter {
namespace {

TEST(StateFile, HoldsWhatWasMadePermanentOnly) {
  const std::string folder = testing::TempDir() + "virtual-printer-" + std::to_string(getpid());
  const std::string path = folder + "/state";
  const Family& family = *FindFamily(kPlain);
  TestPrinter printer({}, path);
  printer.Ask(Write("370101" + Repeat("21", 18) + "414243"));
  testing::internal::CaptureStderr();
  EXPECT_EQ(printer.Ask(kSave), "SV:NA;") << "the folder is not there";
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  ASSERT_TRUE(std::filesystem::create_directory(folder));
  RecordTable records = FactoryRecords(family);
  EXPECT_EQ(printer.printer.SaveState(), "");
  EXPECT_EQ(LoadState(path, family, records), "");
  EXPECT_EQ(records[0].flag, 0) << "what could not be saved is not permanent later";
  EXPECT_EQ(printer.Ask(kSave), "SV:OK;");
  printer.Ask(Write("370101" + Repeat("42", 18)));
  EXPECT_EQ(printer.printer.SaveState(), "");
  EXPECT_EQ(LoadState(path, family, records), "");
  EXPECT_EQ(records[0].settings, Bytes(17, 0x21));
  EXPECT_EQ(records[0].name[2], 'C');
  std::filesystem::remove_all(folder);
}

TEST(StateFile, IsReadWholeOrNotAtAll) {
  const std::string path = testing::TempDir() + "virtual-printer-" + std::to_string(getpid());
  const Family& family = *FindFamily(kPlain);
  RecordTable records = FactoryRecords(family);
  records[4].flag = 7;
  ASSERT_EQ(SaveState(path, family, records), "");
  std::string good;
  std::getline(std::ifstream(path), good, '\0');
  std::vector<std::string> damaged = {
      "", "x", "[]", "{}", R"({"family":1,"slots":[]})", R"({"family":"Ostrel","slots":[]})"};
  const std::pair<std::string, std::string> kReplaced[] = {
      {"\"flag\": 0", "\"flag\": 256"},
      {"\"flag\": 0", "\"flag\": -1"},
      {"\"flag\": 0", "\"flag\": \"\""},
      {"2020", "20"},
      {"2020", "202020"},
      {"2020", "20G0"},
      {"\"settings\"", "\"setting\""},
      {"Ostrel", "Lunde"},
      {"\n}", ""},
  };
  for (const auto& [from, to] : kReplaced) {
    damaged.push_back(std::string(good).replace(good.rfind(from), from.size(), to));
  }
  for (const auto& text : damaged) {
    std::ofstream(path) << text;
    RecordTable read = FactoryRecords(family);
    EXPECT_NE(LoadState(path, family, read), "") << text;
    EXPECT_EQ(read[4].flag, 0) << text;
  }
  unlink(path.c_str());
}

}  // namespace
}  // namespace VirtualPrinter
