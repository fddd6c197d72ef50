// Trace lines and the files that they go to.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "util/FileDescriptor.h"
#include "util/TraceLine.h"
#include "util/TraceWriter.h"
#include "util/WriteOnce.h"

namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(TraceLine, HasTheColumnsThatEveryProgramWrites) {
  const std::string self = std::to_string(getpid());
  EXPECT_THAT(Ravik::TraceLine({"driver", "snmp", "send", "\x30\x82\xFF", "try=1/4"}),
              MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{6}Z "
                           "driver\\[" +
                           self + "\\] snmp send 3082FF try=1/4\n"));
  EXPECT_THAT(Ravik::TraceLine({"worker", "host", "result"}), EndsWith("] host result -\n"));
}

// A pipe takes a line in one piece, however long what it tells of is.
TEST(TraceLine, IsBounded) {
  for (const std::size_t size : {1024U, 1025U, 70000U}) {
    const std::string line =
        Ravik::TraceLine({"driver", "raw", "recv", std::string(size, '\x7F'), "z"});
    const std::string more = size > 1024 ? '+' + std::to_string(size - 1024) : "";
    EXPECT_THAT(line, EndsWith("7F7F" + more + " z\n")) << size;
    for (const std::size_t text : {1U, 1900U, 5000U}) {
      const std::string both = Ravik::TraceLine(
          {"driver", "raw", "recv", std::string(size, 'a'), std::string(text, 'z')});
      EXPECT_LE(both.size(), Ravik::kTraceLineLimit) << size << ' ' << text;
      EXPECT_THAT(both, EndsWith(text == 5000 ? "zzz ...\n" : "z\n")) << size << ' ' << text;
    }
  }
}

TEST(TraceLine, QuotesWhatOthersSend) {
  EXPECT_EQ(Ravik::TraceQuoted(std::string("a\"b\\\n\x1B[2J\0\xC3", 10)),
            R"("a\x22b\x5C\x0A\x1B[2J\x00")");
  EXPECT_EQ(Ravik::TraceQuoted("abcdef", 4), R"("abcd"+2)");
}

class TraceFile : public testing::Test {
 protected:
  TraceFile() {
    std::string name = (fs::temp_directory_path() / "trace-XXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~TraceFile() override { fs::remove_all(folder_); }

  static std::string Read(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static constexpr Ravik::TraceEvent kEvent{"worker", "host", "request"};
  fs::path folder_;
};

TEST_F(TraceFile, IsTheUsersAloneAndWrittenAtItsEnd) {
  const fs::path path = folder_ / "new";
  EXPECT_TRUE(Ravik::TraceWriter("test", path).Write(kEvent));
  EXPECT_TRUE(Ravik::TraceWriter("test", path).Write(kEvent));
  const std::string text = Read(path);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << text;
  struct stat node {};
  ASSERT_EQ(stat(path.c_str(), &node), 0);
  EXPECT_EQ(node.st_mode & 0777U, 0600U);
}

TEST_F(TraceFile, IsNothingThatCouldHoldUpOrSurprise) {
  ASSERT_EQ(mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  fs::create_symlink(folder_ / "target", folder_ / "link");
  const struct {
    fs::path path;
    int error;
    std::string text;
  } kCases[] = {
      {folder_ / "fifo", EINVAL, "fifo is no regular file"},
      {folder_, EINVAL, " is no regular file"},
      {"/dev/null", EINVAL, "/dev/null is no regular file"},
      {folder_ / "link", ELOOP, "open "},
      {folder_ / "missing" / "file", ENOENT, "open "},
      {folder_ / "line\nfeed" / "file", ENOENT, "line\\x0Afeed"},
  };
  for (const auto& row : kCases) {
    try {
      const Ravik::TraceWriter writer("test", row.path);
      ADD_FAILURE() << row.path;
    } catch (const std::system_error& error) {
      EXPECT_EQ(error.code().value(), row.error) << row.path;
      EXPECT_THAT(error.what(), HasSubstr(row.text));
    }
  }
  EXPECT_FALSE(fs::exists(folder_ / "target"));
}

// A file at its limit of size would end the process with a signal.
TEST_F(TraceFile, EndsTheTraceWithOneLineWhenItIsFull) {
  constexpr std::size_t kSize = 65536;
  std::ofstream(folder_ / "full") << std::string(kSize, 'x');
  Ravik::TraceWriter writer("test", folder_ / "full");
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  testing::internal::CaptureStderr();
  const rlimit small{kSize + 20, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const bool first = writer.Write(kEvent);
  const bool second = writer.Write(kEvent);
  setrlimit(RLIMIT_FSIZE, &before);
  const std::string errors = testing::internal::GetCapturedStderr();
  EXPECT_FALSE(first);
  EXPECT_FALSE(second);
  EXPECT_THAT(errors, StartsWith("test: trace ended: write: "));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
}

TEST(WriteOnce, IsHeldUpByNobody) {
  using std::chrono::milliseconds;
  int ends[2] = {-1, -1};
  ASSERT_EQ(pipe(ends), 0);
  const std::string page(4096, 'x');
  int pages = 0;
  while (Ravik::WriteOnce(ends[1], page, milliseconds(0)) == 0) ++pages;
  EXPECT_GT(pages, 0);
  EXPECT_EQ(Ravik::WriteOnce(ends[1], page, milliseconds(20)), EAGAIN);
  close(ends[0]);
  EXPECT_EQ(Ravik::WriteOnce(ends[1], page, milliseconds(0)), EPIPE);
  close(ends[1]);
  EXPECT_EQ(Ravik::WriteOnce(ends[1], page, milliseconds(0)), EBADF);
}

// A terminal is ready as long as it has room for one byte.
TEST(WriteOnce, GetsALineThroughToATerminalThatIsRead) {
  using std::chrono::milliseconds;
  const Ravik::FileDescriptor reader(posix_openpt(O_RDWR | O_NOCTTY));
  ASSERT_EQ(grantpt(reader.get()), 0);
  ASSERT_EQ(unlockpt(reader.get()), 0);
  const Ravik::FileDescriptor terminal(open(ptsname(reader.get()), O_RDWR | O_NOCTTY));
  ASSERT_TRUE(terminal);
  const std::string line = std::string(4095, 'x') + '\n';
  int lines = 0;
  while (Ravik::WriteOnce(terminal.get(), line, milliseconds(0)) == 0) ASSERT_LT(++lines, 1000);
  EXPECT_EQ(Ravik::WriteOnce(terminal.get(), line, milliseconds(20)), EAGAIN);

  std::atomic<std::size_t> count{0};
  std::thread reading([&] {
    char bytes[512];
    for (ssize_t size = 0; (size = read(reader.get(), bytes, sizeof bytes)) > 0;) {
      count += static_cast<std::size_t>(std::count(bytes, bytes + size, 'y'));
      if (std::find(bytes, bytes + size, 'z') != bytes + size) break;
    }
  });
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(Ravik::WriteOnce(terminal.get(), std::string(4000, 'y') + '\n', milliseconds(5000)),
              0);
  }
  EXPECT_EQ(Ravik::WriteOnce(terminal.get(), "z\n", milliseconds(5000)), 0);
  reading.join();
  EXPECT_EQ(count, 80000U);
}

}  // namespace
