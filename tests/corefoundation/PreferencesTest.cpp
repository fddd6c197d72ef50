// The user's defaults and their file.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/corefoundation/TestSupport.h"

namespace {

void Set(const std::string& key, const CFRef<CFTypeRef>& value) {
  CFPreferencesSetAppValue(MakeString(key).get(), value.get(), kCFPreferencesCurrentApplication);
}

// What a key has: an XML list of one object, such as "<true/>"; an empty text for nothing.
void Set(const std::string& key, const std::string& xml) {
  Set(key, Parse(xml));
}

bool Has(const std::string& key, const std::string& xml) {
  const CFRef<CFTypeRef> value(
      CFPreferencesCopyAppValue(MakeString(key).get(), kCFPreferencesCurrentApplication));
  const CFRef<CFTypeRef> expected = Parse(xml);
  return value && expected ? CFEqual(value.get(), expected.get()) != 0 : !value && !expected;
}

bool Synchronise() {
  return CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication) != 0;
}

// Each test has a place of its own.
class Preferences : public testing::Test {
 protected:
  void SetUp() override { UsePlace(folder_.path() + "/made/config"); }
  void TearDown() override { unsetenv("XDG_CONFIG_HOME"); }

  void UsePlace(const std::string& place) {
    setenv("XDG_CONFIG_HOME", place.c_str(), 1);
    file_ = place + "/corefoundation_tests.plist";
  }

  bool FileHolds(const std::string& xml) const {
    const CFRef<CFTypeRef> list = Parse(ReadFile(file_));
    return list && CFEqual(list.get(), Parse(xml).get()) != 0;
  }

  TemporaryFolder folder_;
  std::string file_;
};

TEST_F(Preferences, WritesAPrivateFile) {
  Set("key", "<true/>");
  EXPECT_TRUE(Has("key", "<true/>"));
  EXPECT_FALSE(std::filesystem::exists(file_));
  const mode_t mask = umask(0);
  EXPECT_TRUE(Synchronise());
  umask(mask);
  const auto mode = [](const std::filesystem::path& path) {
    return static_cast<unsigned>(std::filesystem::status(path).permissions());
  };
  EXPECT_EQ(mode(file_), 0600U);
  for (const char* made : {"/made/config", "/made"}) EXPECT_EQ(mode(folder_.path() + made), 0700U);
  EXPECT_EQ(ReadFile(file_).substr(0, 5), "<?xml");
  EXPECT_TRUE(Has("key", "<true/>"));

  WriteFile(file_ + ".new-AbC012", "what a killed writer left");
  WriteFile(file_ + ".backup", "the user's own");
  Set("key", "");
  EXPECT_TRUE(Has("key", ""));
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(FileHolds("<dict/>"));
  EXPECT_TRUE(std::filesystem::remove(file_ + ".backup"));
  const auto files = std::filesystem::directory_iterator(folder_.path() + "/made/config");
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a new file was left behind";
}

TEST_F(Preferences, FallsBackToTheHomeFolder) {
  const std::string home = getenv("HOME") != nullptr ? getenv("HOME") : "";
  setenv("HOME", folder_.path().c_str(), 1);
  for (const char* place : {"", "relative"}) {
    setenv("XDG_CONFIG_HOME", place, 1);
    Set("key", "<true/>");
    EXPECT_TRUE(Synchronise());
    EXPECT_TRUE(std::filesystem::remove(folder_.path() + "/.config/corefoundation_tests.plist"));
  }
  setenv("HOME", home.c_str(), 1);
}

TEST_F(Preferences, KeepsWhatOthersWrite) {
  const std::string others =
      "<plist version=\"1.0\"><dict><key>date</key><date>9999-12-31T23:59:59Z</date>"
      "<key>most</key><integer>18446744073709551615</integer>"
      "<key>least</key><integer>-9223372036854775808</integer>"
      "<key>real</key><real>0.10000000000000001</real><key>huge</key><real>-1e+300</real>"
      "<key>all</key><array><data>AAH/</data><dict><key></key><string>a&amp;b "
      "日&lt;</string></dict>"
      "<false/></array>";
  WriteFile(file_, others + "</dict></plist>");
  EXPECT_TRUE(Has("real", "<real>0.1</real>"));
  Set("key", "<string>new</string>");
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(FileHolds(others + "<key>key</key><string>new</string></dict></plist>"))
      << ReadFile(file_);
  WriteFile(file_ + "2", "<dict><key>key</key><integer>2</integer></dict>");
  std::filesystem::rename(file_ + "2", file_);
  EXPECT_TRUE(Has("key", "<integer>2</integer>"));
  std::filesystem::remove(file_);
  EXPECT_TRUE(Has("key", ""));
}

TEST_F(Preferences, ReplacesWhatIsNoDictionary) {
  const auto expect_replaced = [this](const char* what) {
    EXPECT_TRUE(Has("lost", "")) << what;
    Set("key", "<true/>");
    EXPECT_TRUE(Synchronise()) << what;
    EXPECT_TRUE(FileHolds("<dict><key>key</key><true/></dict>")) << what;
  };
  for (const char* text : {"", "<dict><key>lost</key>", "<array/>", "bplist00", "text"}) {
    WriteFile(file_, text);
    expect_replaced(text);
  }
  std::filesystem::remove(file_);
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
  expect_replaced("a pipe");
  std::filesystem::remove(file_);
  std::filesystem::create_symlink("/dev/null", file_);
  expect_replaced("a link");
}

TEST_F(Preferences, KeepsValuesThatCannotBeWritten) {
  const std::string folder = folder_.path() + "/obstacle/config";
  UsePlace(folder);
  for (const std::string& obstacle : {folder_.path() + "/obstacle", file_ + "/in a folder"}) {
    WriteFile(obstacle, "stands in the way");
    Set("key", "<true/>");
    EXPECT_FALSE(Synchronise()) << obstacle;
    EXPECT_TRUE(Has("key", "<true/>")) << obstacle;
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder_.path())) {
      EXPECT_EQ(file.path().native().find(".new-"), std::string::npos) << file.path();
    }
    std::filesystem::remove_all(folder_.path() + "/obstacle");
    EXPECT_TRUE(Synchronise()) << obstacle;
    EXPECT_TRUE(std::filesystem::exists(file_)) << obstacle;
    std::filesystem::remove(file_);
  }
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
  Set("first", "<true/>");
  ASSERT_TRUE(Synchronise());
  for (int i = 0; i < kWriters; ++i) {
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer != 0) continue;
    bool good = true;
    for (int round = 0; round <= 25; ++round) {
      const CFRef<CFNumberRef> number(CFNumberCreate(nullptr, kCFNumberSInt32Type, &round));
      Set(std::to_string(i), number);
      good = Synchronise() && good;
    }
    _exit(good ? 0 : 1);
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
