// Path, file, text and time-stamp utilities.
#include "util/RavikStdUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "util/CFText.h"
#include "util/ZIOLibrary.h"

namespace Ravik {
namespace {

using testing::AllOf;
using testing::ElementsAreArray;
using testing::Ge;
using testing::Le;

// A folder that goes away with the test.
class StdUtilFileTest : public testing::Test {
 protected:
  StdUtilFileTest() {
    std::string folder = (std::filesystem::temp_directory_path() / "stdutil-XXXXXX").string();
    EXPECT_NE(mkdtemp(folder.data()), nullptr);
    folder_ = folder;
  }

  ~StdUtilFileTest() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  std::string WriteFile(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }

  std::filesystem::path folder_;
};

TEST(StdUtilPath, SplitsAtTheLastBackslashElseTheLastSlash) {
  struct Case {
    const char* path;
    const char* directory;
    const char* file_name;
    const char* normalized;
    const char* extension;
    const char* renamed;  // to .txt
  };
  const Case cases[] = {
      {"", "", "", "", "", ".txt"},
      {"readme", "readme", "readme", "readme", "", "readme.txt"},
      {"/a/b.c", "/a/", "b.c", "/a/b.c", ".c", "/a/b.txt"},
      {"x/y\\z/w", "x/y\\", "z/w", "x/y\\z/w", "", "x/y\\z/w.txt"},
      {"/a/b//", "/a/b//", "", "/a/b/", "", "/a/b//.txt"},
      {"c:\\d\\", "c:\\d\\", "", "c:\\d", "", "c:\\d\\.txt"},
      {"/", "/", "", "", "", "/.txt"},
      {"\\", "\\", "", "", "", "\\.txt"},
      {"archive.tar.gz", "archive.tar.gz", "archive.tar.gz", "archive.tar.gz", ".gz",
       "archive.tar.txt"},
      {"dir.old/file", "dir.old/", "file", "dir.old/file", ".old/file", "dir.txt"},
      {"name.", "name.", "name.", "name.", ".", "name.txt"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(StdUtil::GetCurrentPath(c.path), c.directory);
    EXPECT_EQ(StdUtil::GetFileName(c.path), c.file_name);
    EXPECT_EQ(StdUtil::NormalizationPath(c.path), c.normalized);
    EXPECT_EQ(StdUtil::GetExtension(c.path), c.extension);
    EXPECT_EQ(StdUtil::RenameExt(".txt", c.path), c.renamed);
  }
}

TEST(StdUtilPath, FindsTheFilesBesideTheExecutable) {
  const std::string directory =
      std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/";
  EXPECT_EQ(StdUtil::GetModuleDir(), directory);

  std::string path;
  ASSERT_TRUE(CopyText(ZIOLibrary::GetLibraryPath().get(), kCFStringEncodingUTF8, path));
  EXPECT_EQ(path, directory + "ZIO/ZIOP.plugin");
  ASSERT_TRUE(CopyText(ZIOLibrary::GetSupportPrinterListPath().get(), kCFStringEncodingUTF8, path));
  EXPECT_EQ(path, directory + "SupportPrinterList.xml");
}

TEST(StdUtilText, ReplacesFromLeftToRightWithoutSearchingWhatItInserted) {
  struct Case {
    const char* text;
    const char* from;
    const char* to;
    const char* expected;
  };
  const Case cases[] = {
      {"aaa", "a", "aa", "aaaaaa"},
      {"aaaa", "aa", "a", "aa"},
      {"abab", "ab", "", ""},
      {"abc", "abc", "abc", "abc"},
      {"abc", "", "x", "abc"},
      {"", "a", "b", ""},
      {"abc", nullptr, "x", "abc"},
      {"abc", "a", nullptr, "abc"},
      {"abc", "d", "x", "abc"},
      {"xaax", "a", "xa", "xxaxax"},
      {"abc", "c", "longer", "ablonger"},
  };
  for (const Case& c : cases) {
    std::string text = c.text;
    EXPECT_EQ(&StdUtil::StringReplace(text, c.from, c.to), &text);
    EXPECT_EQ(text, c.expected) << c.text;
  }

  std::string text = "abcabc";
  StdUtil::StringReplace(text, text.c_str() + 4, text.c_str());
  EXPECT_EQ(text, "aabcabcaabcabc") << "both pointers into the text itself";
}

TEST(StdUtilText, FormatsWithinItsBuffer) {
  EXPECT_EQ(StdUtil::Format("%s-%03d", "no", 7), "no-007");
  EXPECT_EQ(StdUtil::Format("ab%ccd", 0), "ab") << "up to the first zero byte";
  EXPECT_EQ(StdUtil::Format("%*s", 4999, "x").size(), 4999U);
  EXPECT_EQ(StdUtil::Format("%*s", 5000, "x"), std::string(4999, ' '));
}

std::string LocalStamp(const char* format) {
  const std::time_t now = std::time(nullptr);
  char text[32] = {};
  std::strftime(text, sizeof(text), format, std::localtime(&now));
  return text;
}

TEST(StdUtilTime, StampsTheLocalTimeInDigits) {
  // Half an hour off every whole zone, so that UTC would be noticed.
  ASSERT_EQ(setenv("TZ", "XST-5:30", 1), 0);
  tzset();
  struct Case {
    std::string (*stamp)();
    const char* format;
  };
  const Case cases[] = {{StdUtil::DateStr, "%Y%m%d"},
                        {StdUtil::TimeStr, "%H%M%S"},
                        {StdUtil::DateTimeStr, "%Y%m%d%H%M%S"}};
  for (const Case& c : cases) {
    std::string before;
    std::string stamp;
    std::string after;
    do {  // once more if midnight fell in between
      before = LocalStamp(c.format);
      stamp = c.stamp();
      after = LocalStamp(c.format);
    } while (after < before);
    EXPECT_THAT(stamp, AllOf(Ge(before), Le(after))) << c.format;
    EXPECT_EQ(stamp.size(), before.size());
  }
}

TEST_F(StdUtilFileTest, CopiesEveryByteOrTellsThatItDidNot) {
  std::string bytes;
  for (int i = 0; i < 70000; ++i) bytes += static_cast<char>(i * 31);
  const std::string source = WriteFile("source", bytes);
  const std::string destination = WriteFile("destination", std::string(90000, 'x'));
  EXPECT_TRUE(StdUtil::FileCopy(source, destination));
  std::ifstream copy(destination, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(copy), {}), bytes);

  EXPECT_FALSE(StdUtil::FileCopy(Path("missing"), Path("new")));
  EXPECT_FALSE(StdUtil::IsFile(Path("new"))) << "nothing is created for a missing source";
  EXPECT_FALSE(StdUtil::FileCopy(source, Path("no/such/folder")));
  EXPECT_FALSE(StdUtil::FileCopy(folder_.string(), Path("new"))) << "a folder cannot be read";
  EXPECT_FALSE(StdUtil::FileCopy(source, "/dev/full")) << "bytes that did not arrive";
  EXPECT_FALSE(StdUtil::FileCopy(WriteFile("short", "x"), "/dev/full"));
  EXPECT_TRUE(StdUtil::FileCopy(WriteFile("empty", ""), Path("new")));
  EXPECT_TRUE(StdUtil::IsFile(Path("new")));
}

TEST_F(StdUtilFileTest, LoadsLookupTables) {
  constexpr unsigned char kUntouched = 0xEE;
  struct Case {
    const char* text;  // nullptr: no such file
    int count;
    std::vector<unsigned char> stored;
  };
  const Case cases[] = {
      {"1\n2\n", 4, {1, 2, 0}},
      {"1\n2", 4, {1, 2}},
      {"1\n2\n3\n", 2, {1, 2}},
      {"256\n300\n-1\n", 3, {0, 44, 255}},
      {" +7x\n\nabc\n 8 9\r\n", 5, {7, 0, 0, 8, 0}},
      {"99999999999999999999\n4294967297\n", 2, {255, 1}},
      {"", 3, {0}},
      {"1\n", 0, {}},
      {"1\n", -1, {}},
      {nullptr, 3, {0, 0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text == nullptr ? "no file" : c.text);
    const std::string path = c.text == nullptr ? Path("missing") : WriteFile("table", c.text);
    std::vector<unsigned char> expected = c.stored;
    expected.resize(6, kUntouched);
    std::vector<unsigned char> table(6, kUntouched);
    EXPECT_TRUE(StdUtil::GetLUT(path, table.data(), c.count));
    EXPECT_THAT(table, ElementsAreArray(expected));
  }
  EXPECT_TRUE(StdUtil::GetLUT(WriteFile("table", "1\n"), nullptr, 1));
}

}  // namespace
}  // namespace Ravik
