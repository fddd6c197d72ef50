// The user's defaults and their file.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/corefoundation/TestSupport.h"

namespace {

void Set(const std::string& key, CFTypeRef value) {
  CFPreferencesSetAppValue(MakeString(key).get(), value, kCFPreferencesCurrentApplication);
}

CFRef<CFTypeRef> Get(const std::string& key) {
  return CFRef<CFTypeRef>(
      CFPreferencesCopyAppValue(MakeString(key).get(), kCFPreferencesCurrentApplication));
}

bool Synchronise() {
  return CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication) != 0;
}

// The number stored under a key; -1 when there is none.
SInt32 NumberAt(const std::string& key) {
  const CFRef<CFTypeRef> value = Get(key);
  SInt32 number = -1;
  if (const auto object = CFCast<CFNumberRef>(value.get())) {
    CFNumberGetValue(object, kCFNumberSInt32Type, &number);
  }
  return number;
}

mode_t ModeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

// Each test has a place of its own.
class Preferences : public testing::Test {
 protected:
  void SetUp() override { UsePlace(folder_.path() + "/made/config"); }
  void TearDown() override { unsetenv("XDG_CONFIG_HOME"); }

  void UsePlace(const std::string& place) {
    setenv("XDG_CONFIG_HOME", place.c_str(), 1);
    file_ = place + "/corefoundation_test.plist";
  }

  CFRef<CFTypeRef> ReadBack() const {
    return CFRef<CFTypeRef>(CFPropertyListCreateWithData(
        nullptr, MakeData(ReadFile(file_)).get(), kCFPropertyListImmutable, nullptr, nullptr));
  }

  TemporaryFolder folder_;
  std::string file_;
};

TEST_F(Preferences, WritesAPrivateFile) {
  EXPECT_FALSE(Get("key"));
  Set("key", CFSTR("value"));
  EXPECT_TRUE(CFEqual(Get("key").get(), CFSTR("value")));
  EXPECT_FALSE(std::filesystem::exists(file_));
  const mode_t mask = umask(0);
  EXPECT_TRUE(Synchronise());
  umask(mask);
  EXPECT_EQ(ModeOf(file_), 0600U);
  EXPECT_EQ(ModeOf(folder_.path() + "/made/config"), 0700U);
  EXPECT_EQ(ModeOf(folder_.path() + "/made"), 0700U);
  EXPECT_EQ(ReadFile(file_).substr(0, 5), "<?xml");
  EXPECT_TRUE(CFEqual(Get("key").get(), CFSTR("value")));

  WriteFile(file_ + ".new-AbC012", "what a killed writer left");
  Set("key", nullptr);
  EXPECT_FALSE(Get("key"));
  EXPECT_TRUE(Synchronise());
  EXPECT_FALSE(Get("key"));
  const auto files = std::filesystem::directory_iterator(folder_.path() + "/made/config");
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a new file was left behind";
}

TEST_F(Preferences, FallsBackToTheHomeFolder) {
  const std::string home = getenv("HOME") != nullptr ? getenv("HOME") : "";
  setenv("HOME", folder_.path().c_str(), 1);
  for (const char* place : {"", "relative"}) {
    setenv("XDG_CONFIG_HOME", place, 1);
    Set("key", CFSTR("value"));
    EXPECT_TRUE(Synchronise());
    EXPECT_TRUE(std::filesystem::remove(folder_.path() + "/.config/corefoundation_test.plist"));
  }
  setenv("HOME", home.c_str(), 1);
}

TEST_F(Preferences, KeepsOtherKeys) {
  WriteFile(file_,
            "<plist version=\"1.0\"><dict><key>date</key><date>2031-02-03T04:05:06Z</date>"
            "<key>most</key><integer>18446744073709551615</integer>"
            "<key>real</key><real>0.10000000000000001</real>"
            "<key>key</key><string>old</string></dict></plist>");
  const CFRef<CFTypeRef> before = ReadBack();
  EXPECT_TRUE(CFEqual(Get("key").get(), CFSTR("old")));
  Set("key", CFSTR("new"));
  EXPECT_TRUE(Synchronise());
  Set("key", CFSTR("old"));
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(CFEqual(ReadBack().get(), before.get())) << ReadFile(file_);
}

TEST_F(Preferences, SeesWhatOthersWrite) {
  Set("key", MakeNumber(1).get());
  Set("mine", MakeNumber(7).get());
  EXPECT_TRUE(Synchronise());
  EXPECT_EQ(NumberAt("key"), 1);
  WriteFile(file_ + ".new", "<plist><dict><key>key</key><integer>2</integer></dict></plist>");
  std::filesystem::rename(file_ + ".new", file_);
  EXPECT_EQ(NumberAt("key"), 2);
  EXPECT_EQ(NumberAt("mine"), -1);
  std::filesystem::remove(file_);
  EXPECT_EQ(NumberAt("key"), -1);
}

TEST_F(Preferences, ReplacesWhatIsNoDictionary) {
  for (const char* damaged :
       {"", "<plist><dict><key>lost</key>", "<plist><array/></plist>", "bplist00", "text"}) {
    WriteFile(file_, damaged);
    EXPECT_FALSE(Get("lost")) << damaged;
    Set("key", CFSTR("value"));
    EXPECT_TRUE(Synchronise()) << damaged;
    EXPECT_NE(CFCast<CFDictionaryRef>(ReadBack().get()), nullptr) << damaged;
  }
}

TEST_F(Preferences, DoesNotWaitForAPipe) {
  std::filesystem::create_directories(folder_.path() + "/made/config");
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
  EXPECT_FALSE(Get("key"));
  Set("key", CFSTR("value"));
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(std::filesystem::is_regular_file(file_));
}

TEST_F(Preferences, KeepsValuesThatCannotBeWritten) {
  const std::string obstacle = folder_.path() + "/obstacle";
  WriteFile(obstacle, "a file where the folder should be");
  UsePlace(obstacle + "/config");
  Set("key", CFSTR("value"));
  EXPECT_FALSE(Synchronise());
  EXPECT_TRUE(CFEqual(Get("key").get(), CFSTR("value")));
  std::filesystem::remove(obstacle);
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(std::filesystem::exists(file_));
}

TEST_F(Preferences, CopiesWhatIsSet) {
  const CFRef<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  Set("key", array.get());
  CFArrayAppendValue(array.get(), CFSTR("later"));
  const CFRef<CFTypeRef> kept = Get("key");
  EXPECT_EQ(CFArrayGetCount(CFCast<CFArrayRef>(kept.get())), 0);
  const CFRef<CFUUIDRef> uuid(CFUUIDCreateFromString(nullptr, CFSTR("1")));
  Set("key", uuid.get());
  EXPECT_TRUE(CFEqual(Get("key").get(), kept.get())) << "a UUID is no property list";
}

// Writers of one key each in processes of their own, while this one reads: no list is ever torn,
// and no writer undoes another's work.
TEST_F(Preferences, ConcurrentWritersKeepEachOthersKeys) {
  constexpr int kWriters = 4;
  constexpr SInt32 kRounds = 25;
  Set("first", MakeNumber(0).get());
  ASSERT_TRUE(Synchronise());
  pid_t writers[kWriters];
  for (int i = 0; i < kWriters; ++i) {
    writers[i] = fork();
    ASSERT_GE(writers[i], 0);
    if (writers[i] != 0) continue;
    bool good = true;
    for (SInt32 round = 1; round <= kRounds; ++round) {
      Set("writer " + std::to_string(i), MakeNumber(round).get());
      good = Synchronise() && good;
    }
    _exit(good ? 0 : 1);
  }
  int ended = 0;
  while (ended < kWriters) {
    ASSERT_NE(CFCast<CFDictionaryRef>(ReadBack().get()), nullptr) << ReadFile(file_);
    int status = 0;
    while (ended < kWriters && waitpid(-1, &status, WNOHANG) > 0) {
      ++ended;
      EXPECT_EQ(status, 0);
    }
  }
  for (int i = 0; i < kWriters; ++i) EXPECT_EQ(NumberAt("writer " + std::to_string(i)), kRounds);
  EXPECT_EQ(NumberAt("first"), 0);
}

}  // namespace
