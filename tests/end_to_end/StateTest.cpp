// The stored list of printers, which all workers of a user share.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <string>
#include <vector>

#include "tests/end_to_end/Rig.h"

namespace {

constexpr char kDevice[] = "QM-R410 Series";
constexpr char kOpened[] = R"({"GetStatusReply":0,"Reply":{"StatusCode":4}})";
constexpr char kNotOpened[] = R"({"GetStatusReply":-4})";

// count printers "P0" and so on, which are all the same one.
std::vector<ListedPrinter> Printers(int count, const VirtualPrinter& printer) {
  std::vector<ListedPrinter> printers;
  printers.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    printers.push_back({"P" + std::to_string(i), kDevice, printer.Uri()});
  }
  return printers;
}

std::string Status(int printer) {
  return Request("GetStatusReply", "P" + std::to_string(printer), kDevice, R"(["StatusCode"])");
}

TEST(State, SearchesAndOpensAtTheSameTimeDoNotDisturbEachOther) {
  constexpr int kRounds = 50;
  constexpr int kPrinters = 40;
  const VirtualPrinter printer(kDevice);
  const WorkerFolder folder(Printers(kPrinters, printer));
  const std::string list = Ask(folder.Start(), kList);
  const auto rightAnswers = [&folder](const std::string& request, const std::string& answer) {
    return std::async(std::launch::async, [&folder, request, answer] {
      const Process worker = folder.Start();
      int count = 0;
      for (int i = 0; i < kRounds; ++i) count += Ask(worker, request) == answer ? 1 : 0;
      return count;
    });
  };
  std::future<int> workers[] = {rightAnswers(kList, list), rightAnswers(kList, list),
                                rightAnswers(Status(kPrinters - 1), kOpened)};
  for (auto& worker : workers) EXPECT_EQ(worker.get(), kRounds);
  EXPECT_EQ(folder.Errors(), "");
  const auto files = std::filesystem::directory_iterator(folder.path() / "config");
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST(State, OnAFullDiskAWorkerGoesByItsOwnSearchAndOthersByTheOldList) {
  const VirtualPrinter printer(kDevice);
  const WorkerFolder folder(Printers(1, printer));
  EXPECT_EQ(folder.Run(Line(kList) + Line(Status(0))).output,
            R"({"GetPrinterList":0,"Reply":{"DeviceName":"QM-R410 Series","PrinterName":"P0"}})" +
                std::string(kOpened));
  folder.List(Printers(50, printer));
  const Process worker = folder.Start(R"(ulimit -f 8; exec "$0")");
  EXPECT_THAT(Ask(worker, kList), testing::HasSubstr(R"("PrinterName":"P49"})"));
  EXPECT_EQ(Ask(worker, Status(49)), kOpened);
  EXPECT_THAT(folder.Errors(),
              testing::MatchesRegex("CoreFoundation: preferences .*/PrinterNativeProcess.plist not "
                                    "written: write: File too large\n"));
  EXPECT_EQ(folder.Run(Line(Status(0)) + Line(Status(49))).output,
            std::string(kOpened) + kNotOpened);
}

}  // namespace
