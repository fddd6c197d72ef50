// Path, file, text and time-stamp utilities.
#include "util/RavikStdUtil.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

namespace {

using Ravik::StdUtil;

class StdUtilTest : public testing::Test {
 protected:
  StdUtilTest() { EXPECT_NE(mkdtemp(folder_.data()), nullptr); }
  ~StdUtilTest() override { std::filesystem::remove_all(folder_); }

  std::string WriteFile(const std::string& bytes) const {
    std::ofstream(folder_ + "/file", std::ios::binary) << bytes;
    return folder_ + "/file";
  }

  static std::string Bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string folder_ = std::filesystem::temp_directory_path() / "stdutil-XXXXXX";
};

TEST_F(StdUtilTest, SplitsPathsAtTheLastBackslashElseTheLastSlash) {
  // Path; directory, file name, normalised path, extension, with the extension .txt.
  const std::array<const char*, 6> cases[] = {
      {"", "", "", "", "", ".txt"},
      {"readme", "readme", "readme", "readme", "", "readme.txt"},
      {"x/y\\z/w", "x/y\\", "z/w", "x/y\\z/w", "", "x/y\\z/w.txt"},
      {"/a/b//", "/a/b//", "", "/a/b/", "", "/a/b//.txt"},
      {"c:\\d\\", "c:\\d\\", "", "c:\\d", "", "c:\\d\\.txt"},
      {"/a.tar.gz", "/", "a.tar.gz", "/a.tar.gz", ".gz", "/a.tar.txt"},
      {"dir.old/file", "dir.old/", "file", "dir.old/file", ".old/file", "dir.txt"},
  };
  for (const auto& [path, directory, file_name, normalised, extension, renamed] : cases) {
    EXPECT_EQ(StdUtil::GetCurrentPath(path), directory);
    EXPECT_EQ(StdUtil::GetFileName(path), file_name);
    EXPECT_EQ(StdUtil::NormalizationPath(path), normalised);
    EXPECT_EQ(StdUtil::GetExtension(path), extension);
    EXPECT_EQ(StdUtil::RenameExt(".txt", path), renamed);
  }
}

TEST_F(StdUtilTest, FindsFilesBesideTheExecutableAndNeverInTheWorkingDirectory) {
  const std::string ascii = "/" + std::string(200, 'a');
  const std::pair<std::string, bool> cases[] = {
      {ascii + ascii, true},                                  // longer than the text buffer
      {"/\xE6\x97\xA5", true},                                // beyond ASCII
      {ascii + "\xE6\x97\xA5" + ascii, false},                // both
      {"/\xFF", false},                                       // ill-formed
      {ascii + ascii + ascii + ascii + ascii + "b", false}};  // longer than the path buffer
  for (const auto& [name, found] : cases) {
    const std::string folder = std::filesystem::canonical(folder_).string() + name;
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(PRINT_PATHS, folder + "/print_paths");
    const std::string command = "cd '" + folder + "' && ./print_paths > '" + folder_ + "/paths'";
    EXPECT_EQ(std::system(command.c_str()), 0);
    const std::string paths =
        (folder + "/ZIO/ZIOP.plugin\n").append(folder + "/SupportPrinterList.xml\n");
    EXPECT_EQ(Bytes(folder_ + "/paths"), found ? paths : "\n\n");
  }
}

TEST_F(StdUtilTest, ReplacesFromLeftToRightWithoutSearchingWhatItInserted) {
  // Text, from, to; text afterwards.
  const std::array<const char*, 4> cases[] = {
      {"aaa", "a", "aa", "aaaaaa"}, {"aaaa", "aa", "a", "aa"},    {"xaax", "a", "xa", "xxaxax"},
      {"abab", "ab", "", ""},       {"abc", "", "x", "abc"},      {"", "a", "b", ""},
      {"abc", nullptr, "x", "abc"}, {"abc", "a", nullptr, "abc"},
  };
  for (const auto& [before, from, to, after] : cases) {
    std::string text = before;
    EXPECT_EQ(StdUtil::StringReplace(text, from, to), after);
    EXPECT_EQ(text, after);
  }
  std::string text = "abcabc";
  StdUtil::StringReplace(text, text.c_str() + 4, text.c_str());
  EXPECT_EQ(text, "aabcabcaabcabc") << "both pointers into the text itself";
}

TEST_F(StdUtilTest, FormatsWithinItsBuffer) {
  EXPECT_EQ(StdUtil::Format("%s-%03d%cx", "no", 7, 0), "no-007") << "up to the first zero byte";
  EXPECT_EQ(StdUtil::Format("%*s", 5000, "x"), std::string(4999, ' '));
}

TEST_F(StdUtilTest, StampsTheLocalTimeInDigits) {
  ASSERT_EQ(setenv("TZ", "XST-5:30", 1), 0);  // so that UTC would be noticed
  char expected[32] = {};
  std::string stamps;
  std::time_t now = 0;
  do {  // once more if the second changed in between
    now = std::time(nullptr);
    stamps = StdUtil::DateTimeStr() + " " + StdUtil::DateStr() + StdUtil::TimeStr();
  } while (now != std::time(nullptr));
  std::strftime(expected, sizeof(expected), "%Y%m%d%H%M%S %Y%m%d%H%M%S", std::localtime(&now));
  EXPECT_EQ(stamps, expected);
}

TEST_F(StdUtilTest, CopiesEveryByteOrTellsThatItDidNot) {
  std::string bytes;
  for (int i = 0; i < 70000; ++i) bytes += static_cast<char>(i * 31);
  const std::string source = WriteFile(bytes);
  const std::string copy = folder_ + "/copy";
  EXPECT_FALSE(StdUtil::FileCopy(folder_ + "/missing", copy));
  EXPECT_FALSE(StdUtil::IsFile(copy)) << "nothing is created for a missing source";
  EXPECT_FALSE(StdUtil::FileCopy(source, folder_ + "/no/such/folder"));
  EXPECT_FALSE(StdUtil::FileCopy(folder_, copy)) << "a folder cannot be read";
  EXPECT_FALSE(StdUtil::FileCopy(source, "/dev/full")) << "bytes that did not arrive";
  EXPECT_TRUE(StdUtil::FileCopy(source, copy));
  EXPECT_EQ(Bytes(copy), bytes);
  EXPECT_TRUE(StdUtil::FileCopy(WriteFile("x"), copy));
  EXPECT_EQ(Bytes(copy), "x") << "what was there before is gone";
  EXPECT_FALSE(StdUtil::FileCopy(source, "/dev/full")) << "also bytes that a buffer still held";
  EXPECT_TRUE(StdUtil::FileCopy(WriteFile(""), copy));
}

TEST_F(StdUtilTest, LoadsLookupTables) {
  const struct {
    const char* text;
    int count;
    std::vector<unsigned char> stored;
  } cases[] = {
      {"1\n2\n", 4, {1, 2, 0}},
      {"1\n2", 4, {1, 2}},
      {"1\n2\n3\n", 2, {1, 2}},
      {"256\n300\n-1\n", 3, {0, 44, 255}},
      {" +7x\n\nabc\n 8 9\r\n", 5, {7, 0, 0, 8, 0}},
      {"99999999999999999999\n4294967297\n", 2, {255, 1}},
      {"", 3, {0}},
      {"1\n", -1, {}},
  };
  std::vector<unsigned char> table(6);
  for (const auto& c : cases) {
    table.assign(6, 0xEE);
    EXPECT_TRUE(StdUtil::GetLUT(WriteFile(c.text), table.data(), c.count));
    std::vector<unsigned char> expected = c.stored;
    expected.resize(6, 0xEE);
    EXPECT_EQ(table, expected) << c.text;
  }
  EXPECT_TRUE(StdUtil::GetLUT(folder_ + "/missing", table.data(), 6));
  EXPECT_EQ(table, std::vector<unsigned char>(6));
}

}  // namespace
