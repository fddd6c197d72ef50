// Searches in shared objects of their own.
#include "port_driver/SearchModule.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "port_driver/Module.h"

namespace ZIOP {
namespace {

// What the module finds, a line each, and what it says on standard error.
std::string Search(const std::string& path, const std::vector<std::string>& addresses) {
  std::vector<FoundPrinter> found(1);
  found[0].name = "kept";
  testing::internal::CaptureStderr();
  RunSearchModule(path, addresses, Deadline::After(std::chrono::seconds(60)), found);
  std::string text;
  for (const FoundPrinter& printer : found) {
    for (const auto field : kFoundPrinterFields) {
      text += printer.*field + "|";
    }
    text += "\n";
  }
  return text + testing::internal::GetCapturedStderr();
}

TEST(SearchModuleTest, HandsOverWhatItFound) {
  const std::string bytes("\0\xFF", 2);
  const std::string printer = bytes + "|maker|model|text|uri|serial|uuid|address|id|asked|";
  EXPECT_EQ(Search(FAKE_SEARCH, {printer, "", "throw", printer}),
            "kept||||||||||\n" + printer + "\n||||||||||\n" +
                "ZIOP: search broken off: no\\x0Anetwork\n");
  EXPECT_THAT(Search(FAKE_SEARCH, std::vector<std::string>(kMaximumFoundPrinters + 1)),
              testing::EndsWith("|\nZIOP: printers left out: a search found more than 4096\n"));
}

TEST(SearchModuleTest, AModuleThatCannotBeUsedIsReported) {
  for (const std::string path : {"/no/module.so", ZIOP_BUNDLE "/Contents/Linux/libZIOP.so",
                                 ZIOP_BUNDLE "/Contents/Info.plist"}) {
    EXPECT_THAT(Search(path, {""}),
                testing::MatchesRegex("kept[|]+\nZIOP: search left out: /[^\n]+\n"));
  }
}

TEST(SearchModuleTest, TheDriverKnowsItsFolder) {
  EXPECT_EQ(::access((DriverFolder() + "/port_driver_tests").c_str(), X_OK), 0) << DriverFolder();
}

}  // namespace
}  // namespace ZIOP
