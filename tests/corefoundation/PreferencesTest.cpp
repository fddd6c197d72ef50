// The user's defaults and their file.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/corefoundation/TestSupport.h"

namespace {

void Set(const std::string& key, const CFRef<CFTypeRef>& value) {
  CFPreferencesSetAppValue(MakeString(key).get(), value.get(), kCFPreferencesCurrentApplication);
}

// Whether value is the object in an XML list, such as "<true/>"; an empty text is for none.
bool Is(const CFRef<CFTypeRef>& value, const std::string& xml) {
  const CFRef<CFTypeRef> expected = Parse(xml);
  return value && expected ? CFEqual(value.get(), expected.get()) != 0 : !value && !expected;
}

bool Has(const std::string& key, const std::string& xml) {
  const auto application = kCFPreferencesCurrentApplication;
  return Is(CFRef(CFPreferencesCopyAppValue(MakeString(key).get(), application)), xml);
}

bool Synchronise() {
  return CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication) != 0;
}

// Each test has a place of its own.
class Preferences : public testing::Test {
 protected:
  Preferences() {
    setenv("HOME", folder_.path().c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder_.path() + "/made/config").c_str(), 1);
  }

  bool FileHolds(const std::string& xml) const { return Is(Parse(ReadFile(file_)), xml); }

  TemporaryFolder folder_;
  const std::string file_ = folder_.path() + "/made/config/corefoundation_tests.plist";
};

TEST_F(Preferences, WritesAPrivateFile) {
  Set("key", Parse("<true/>"));
  EXPECT_TRUE(Has("key", "<true/>"));
  EXPECT_FALSE(std::filesystem::exists(file_));
  const mode_t mask = umask(0);
  EXPECT_TRUE(Synchronise());
  umask(mask);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(file_).permissions(), perms{0600});
  for (const char* made : {"/made/config", "/made"}) {
    EXPECT_EQ(std::filesystem::status(folder_.path() + made).permissions(), perms{0700}) << made;
  }
  EXPECT_EQ(ReadFile(file_).substr(0, 5), "<?xml");
  WriteFile(file_ + ".new-AbC012", "what a killed writer left");
  WriteFile(file_ + ".backup", "the user's own");
  Set("key", {});
  EXPECT_TRUE(Has("key", ""));
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(FileHolds("<dict/>"));
  EXPECT_TRUE(std::filesystem::remove(file_ + ".backup"));
  const auto files = std::filesystem::directory_iterator(folder_.path() + "/made/config");
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a new file was left behind";
}

TEST_F(Preferences, FallsBackToTheHomeFolder) {
  for (const char* place : {"", "relative"}) {
    setenv("XDG_CONFIG_HOME", place, 1);
    Set("key", Parse("<true/>"));
    EXPECT_TRUE(Synchronise());
    EXPECT_TRUE(std::filesystem::remove(folder_.path() + "/.config/corefoundation_tests.plist"));
  }
}

TEST_F(Preferences, KeepsWhatOthersWrite) {
  const std::string others =
      "<dict><key>date</key><date>9999-12-31T23:59:59Z</date><key>most</"
      "key><integer>18446744073709551615</integer>"
      "<key>least</key><integer>-9223372036854775808</integer>"
      "<key>real</key><real>0.10000000000000001</real><key>huge</key><real>-1e+300</real>"
      "<key>all</key><array><data>AAH/</data><dict><key></key><string>a&amp;日&lt;</string></dict>"
      "<false/></array>";
  WriteFile(file_, others + "</dict>");
  EXPECT_TRUE(Has("real", "<real>0.1</real>"));
  Set("key", Parse("<string>new</string>"));
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(FileHolds(others + "<key>key</key><string>new</string></dict>"));
  WriteFile(file_, "<dict><key>key</key><integer>2</integer></dict>");
  EXPECT_TRUE(Has("key", "<integer>2</integer>"));
  std::filesystem::remove(file_);
  EXPECT_TRUE(Has("key", ""));
}

// Names come from printers and lists.
TEST_F(Preferences, KeepsTextsOfAnyCharacters) {
  std::string ascii;
  for (char c = 1; c > 0; ++c) ascii += c;
  for (const std::string& text :
       {ascii, std::string("\r"), std::string(" \r\n "), std::string("]]>&amp;<![CDATA[<!--"),
        std::string("\xEF\xBF\xBF\xF4\x8F\xBF\xBF\xEF\xBB\xBF")}) {
    for (const std::string& key : {std::string("key"), text}) {
      Set(key, MakeString(text));
      EXPECT_TRUE(Synchronise());
      const auto application = kCFPreferencesCurrentApplication;
      const CFRef<CFTypeRef> read(CFPreferencesCopyAppValue(MakeString(key).get(), application));
      EXPECT_TRUE(read && CFEqual(read.get(), MakeString(text).get())) << text;
    }
  }
}

TEST_F(Preferences, ReplacesWhatIsNoDictionary) {
  ASSERT_EQ(mkfifo((folder_.path() + "/pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/null", folder_.path() + "/link");
  for (const std::string what :
       {"", "<dict><key>lost</key>", "<array/>", "bplist00", "pipe", "link"}) {
    SCOPED_TRACE(what);
    WriteFile(file_, what);
    const bool special = what == "pipe" || what == "link";
    if (special) std::filesystem::rename(folder_.path() + "/" + what, file_);
    EXPECT_TRUE(Has("lost", ""));
    Set("key", Parse("<true/>"));
    ASSERT_TRUE(Synchronise());
    EXPECT_TRUE(FileHolds("<dict><key>key</key><true/></dict>"));
  }
}

TEST_F(Preferences, KeepsValuesThatCannotBeWritten) {
  for (const std::string& obstacle : {folder_.path() + "/made", file_ + "/in a folder"}) {
    SCOPED_TRACE(obstacle);
    WriteFile(obstacle, "stands in the way");
    Set("key", Parse("<true/>"));
    EXPECT_FALSE(Synchronise());
    EXPECT_TRUE(Has("key", "<true/>"));
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder_.path())) {
      EXPECT_EQ(file.path().native().find(".new-"), std::string::npos) << file.path();
    }
    std::filesystem::remove_all(folder_.path() + "/made");
    EXPECT_TRUE(Synchronise());
    EXPECT_TRUE(std::filesystem::remove(file_));
    std::filesystem::remove_all(folder_.path() + "/made");
  }
}

TEST_F(Preferences, LeavesAListAloneThatIsTooLong) {
  WriteFile(file_, "<dict><key>lost</key><true/></dict>");
  std::filesystem::resize_file(file_, 100'000'000);
  EXPECT_TRUE(Has("lost", ""));
  Set("key", Parse("<true/>"));
  EXPECT_FALSE(Synchronise());
  EXPECT_TRUE(Has("key", "<true/>"));
  EXPECT_EQ(std::filesystem::file_size(file_), 100'000'000U);
  std::filesystem::resize_file(file_, 35);
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(FileHolds("<dict><key>key</key><true/><key>lost</key><true/></dict>"));
}

TEST_F(Preferences, CopiesListsAlone) {
  const CFRef<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  Set("key", array);
  const CFRef<CFUUIDRef> uuid = MakeUUID("1");
  CFArrayAppendValue(array.get(), uuid.get());
  EXPECT_TRUE(Has("key", "<array/>"));
  const CFRef<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  CFDictionarySetValue(dictionary.get(), uuid.get(), CFSTR("a key that is no text"));
  const CFRef<CFTypeRef> unwritable[] = {uuid, array, dictionary,
                                         MakeString("\x3D\xD8", kCFStringEncodingUTF16LE),
                                         Parse(Nested(512))};
  for (const auto& value : unwritable) {
    ASSERT_TRUE(value);
    Set("key", value);
    EXPECT_TRUE(Has("key", "<array/>")) << &value - unwritable;
  }
}

// Writers of one key each in processes of their own, while this one reads: no list is ever torn,
// and no writer undoes another's work.
TEST_F(Preferences, ConcurrentWritersKeepEachOthersKeys) {
  constexpr int kWriters = 4;
  Set("first", Parse("<true/>"));
  ASSERT_TRUE(Synchronise());
  for (int i = 0; i < kWriters; ++i) {
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer != 0) continue;
    for (int round = 0; round <= 25; ++round) {
      Set(std::to_string(i), Parse("<integer>" + std::to_string(round) + "</integer>"));
      if (!Synchronise()) _exit(1);
    }
    _exit(0);
  }
  for (int ended = 0; ended < kWriters;) {
    const CFRef<CFTypeRef> list = Parse(ReadFile(file_));
    EXPECT_NE(CFCast<CFDictionaryRef>(list.get()), nullptr) << ReadFile(file_);
    int status = 0;
    if (waitpid(-1, &status, WNOHANG) <= 0) continue;
    ++ended;
    EXPECT_EQ(status, 0);
  }
  for (const char* writer : {"0", "1", "2", "3"}) EXPECT_TRUE(Has(writer, "<integer>25</integer>"));
  EXPECT_TRUE(Has("first", "<true/>"));
}

}  // namespace
