// The user's defaults and their file.
#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "tests/corefoundation/TestSupport.h"

namespace {

bool is_coarse = false;

}  // namespace

// The call of this program and of the library. While is_coarse, as where the clock ticks a hundred
// times a second and a file takes over the number of the one that it replaces.
extern "C" __attribute__((visibility("default"))) int stat(const char* path,
                                                           struct stat* status) noexcept {
  static const auto system = reinterpret_cast<decltype(&stat)>(dlsym(RTLD_NEXT, "stat"));
  const int result = system(path, status);
  if (result == 0 && is_coarse) {
    status->st_ino = 1;
    for (timespec* time : {&status->st_mtim, &status->st_ctim}) {
      time->tv_nsec -= time->tv_nsec % 10000000;
    }
  }
  return result;
}

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

std::string Text(std::size_t size, char letter = 'x') {
  return "<string>" + std::string(size, letter) + "</string>";
}

// No file can grow beyond size bytes: what a full disk does to its writers.
void LimitFiles(rlim_t size) {
  rlimit limit;
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = std::min(size, limit.rlim_max);
  setrlimit(RLIMIT_FSIZE, &limit);
}

// Permissions do not bind the superuser, who is therefore somebody else for the time.
class CommonUser {
 public:
  CommonUser() { EXPECT_TRUE(user_ != 0 || seteuid(65534) == 0); }
  CommonUser(const CommonUser&) = delete;
  CommonUser& operator=(const CommonUser&) = delete;
  ~CommonUser() { EXPECT_EQ(seteuid(user_), 0); }

 private:
  const uid_t user_ = geteuid();
};

// Each test has a place of its own.
class Preferences : public testing::Test {
 protected:
  Preferences() {
    setenv("HOME", folder_.path().c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder_.path() + "/made/config").c_str(), 1);
  }

  bool FileHolds(const std::string& xml) const { return Is(Parse(ReadFile(file_)), xml); }

  auto CountFiles() const {
    const auto files = std::filesystem::directory_iterator(place_);
    return std::distance(begin(files), end(files));
  }

  const CommonUser user_;
  const TemporaryFolder folder_;
  const std::string place_ = folder_.path() + "/made/config";
  const std::string file_ = place_ + "/corefoundation_tests.plist";
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
  EXPECT_EQ(CountFiles(), 1) << "a new file was left behind";
}

TEST_F(Preferences, FallsBackToTheHomeFolder) {
  for (const char* place : {"", "relative"}) {
    setenv("XDG_CONFIG_HOME", place, 1);
    Set("key", Parse("<true/>"));
    EXPECT_TRUE(Synchronise());
    EXPECT_TRUE(std::filesystem::remove(folder_.path() + "/.config/corefoundation_tests.plist"));
  }
}

TEST_F(Preferences, KeepsEachApplicationApart) {
  const auto other = MakeString("other");
  const CFRef<CFTypeRef> value = Parse("<true/>");
  for (const char* application : {"other", "../other", ""}) {
    const auto name = MakeString(application);
    CFPreferencesSetAppValue(other.get(), value.get(), name.get());
    EXPECT_EQ(CFPreferencesAppSynchronize(name.get()) != 0, name && *application == 'o');
  }
  EXPECT_TRUE(Has("other", ""));
  EXPECT_TRUE(Is(CFRef(CFPreferencesCopyAppValue(other.get(), other.get())), "<true/>"));
  EXPECT_TRUE(Is(Parse(ReadFile(place_ + "/other.plist")), "<dict><key>other</key><true/></dict>"));
  EXPECT_EQ(CountFiles(), 1);
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

// What was read is used again only when the file is provably the same. Versions that follow each
// other within a tick of the clock may differ in nothing but what they hold.
TEST_F(Preferences, SeesEveryVersionOfItsFile) {
  int version = 100000;
  const auto list = [](int number) { return "<integer>" + std::to_string(number) + "</integer>"; };
  const auto write = [&](const std::string& path) {
    WriteFile(path, "<dict><key>key</key>" + list(++version) + "</dict>");
  };
  const std::function<void()> ways[] = {[&] { write(file_); },
                                        [&] {
                                          write(file_ + "~");
                                          std::filesystem::rename(file_ + "~", file_);
                                        },
                                        [&] {
                                          const auto time = std::filesystem::last_write_time(file_);
                                          write(file_);
                                          std::filesystem::last_write_time(file_, time);
                                        }};
  is_coarse = true;
  for (int i = 0; i < 240; ++i) {
    ways[i == 0 ? 0 : i % 3]();
    if (i % 40 == 39) usleep(100000);  // old enough to be kept
    EXPECT_TRUE(Has("key", list(version))) << i;
    EXPECT_TRUE(Has("key", list(version))) << i;
  }
  is_coarse = false;
  chmod(file_.c_str(), 0);
  testing::internal::CaptureStderr();
  EXPECT_TRUE(Has("key", ""));
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("Permission denied"));
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
  const std::string empty = "empty: the file holds no dictionary of a property list\n";
  const auto write = [this](const char* bytes) { return [=] { WriteFile(file_, bytes); }; };
  const auto link = [this](const std::string& target) {
    return [=] { std::filesystem::create_symlink(target, file_); };
  };
  const std::string target = folder_.path() + "/target";
  WriteFile(target, "<array/>");
  const struct {
    std::function<void()> make;
    const std::string& report;
  } kCases[] = {
      {write(""), empty},
      {write("<dict><key>lost</key>"), empty},
      {write("<array/>"), empty},
      {write("bplist00"), empty},
      {[this] { mkfifo(file_.c_str(), 0600); }, empty},
      {[this] { mknod(file_.c_str(), S_IFSOCK | 0600, 0); }, empty},
      {link("/dev/null"), empty},
      {link(target), empty},
      {link("nowhere"), ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    std::filesystem::create_directories(place_);
    std::filesystem::remove(file_);
    c.make();
    Set("key", Parse("<true/>"));
    testing::internal::CaptureStderr();
    ASSERT_TRUE(Synchronise());
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::EndsWith(c.report));
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(file_)));
    EXPECT_TRUE(FileHolds("<dict><key>key</key><true/></dict>"));
  }
  EXPECT_EQ(ReadFile(target), "<array/>");
  EXPECT_FALSE(std::filesystem::exists(place_ + "/nowhere"));
}

TEST_F(Preferences, KeepsValuesThatCannotBeWrittenAndSaysWhy) {
  const std::string made = folder_.path() + "/made";
  const auto replace = [](const std::string& path, const std::string& file) {
    std::filesystem::remove_all(path);
    WriteFile(file, "in the way");
  };
  const struct {
    std::function<void()> obstruct;
    std::string report;
  } kCases[] = {
      {[&] { replace(made, made); }, "mkdir " + place_ + ": Not a directory"},
      {[&] { replace(file_, file_ + "/in a folder"); }, "rename: Is a directory"},
      {[&] {
         std::filesystem::remove(file_);
         std::filesystem::create_symlink(file_, file_);
       },
       "open: Too many levels of symbolic links"},
      {[&] { std::filesystem::resize_file(file_, (64U << 20U) + 1); }, "open: File too large"},
      {[&] { chmod(file_.c_str(), 0); }, "open: Permission denied"},
      {[&] { chmod(place_.c_str(), 0500); }, "mkostemp: Permission denied"},
      {[] { LimitFiles(1000); }, "write: File too large"},
  };
  std::signal(SIGXFSZ, SIG_IGN);
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.report);
    std::filesystem::remove_all(made);
    const std::string old = "<dict><key>old</key><true/></dict>";
    WriteFile(file_, old);
    c.obstruct();
    Set("key", Parse(Text(2000)));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(Synchronise());
    EXPECT_TRUE(Has("key", Text(2000)));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::EndsWith("CoreFoundation: preferences " + file_ +
                                  " not written: " + c.report + "\n"));
    LimitFiles(RLIM_INFINITY);
    for (const auto& path : {place_, file_}) chmod(path.c_str(), 0700);
    if (std::filesystem::is_regular_file(std::filesystem::symlink_status(file_))) {
      std::filesystem::resize_file(file_, old.size());
      EXPECT_EQ(ReadFile(file_), old);
    }
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder_.path())) {
      EXPECT_EQ(file.path().native().find(".new-"), std::string::npos) << file.path();
    }
    std::filesystem::remove_all(made);
    EXPECT_TRUE(Synchronise());
    EXPECT_TRUE(FileHolds("<dict><key>key</key>" + Text(2000) + "</dict>"));
  }
}

// Each "&" of a name makes the written list dearer to read than the one that the name came in.
TEST_F(Preferences, KeepsTheFileWhenNobodyCouldReadTheNewOne) {
  Set("key", Parse("<true/>"));
  EXPECT_TRUE(Synchronise());
  const CFRef<CFTypeRef> costly = MakeString(std::string(40000, '&'));
  Set("other", costly);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(Synchronise());
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              testing::EndsWith("not written: they would cost too much to read\n"));
  EXPECT_TRUE(FileHolds("<dict><key>key</key><true/></dict>"));
  Set("other", {});
  EXPECT_TRUE(Synchronise());
}

TEST_F(Preferences, DoesWithoutALockThatAStoppedProcessKeeps) {
  std::filesystem::create_directories(place_);
  const int lock = open(place_.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  Set("key", Parse("<true/>"));
  testing::internal::CaptureStderr();
  EXPECT_TRUE(Synchronise());
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              testing::EndsWith("without the lock of the folder: another process has kept it for "
                                "2 s\n"));
  EXPECT_TRUE(FileHolds("<dict><key>key</key><true/></dict>"));
  close(lock);
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

// A writer is killed in the middle of its file by the limit on the file's size, and anywhere by
// chance.
TEST_F(Preferences, AKilledWriterLeavesTheOldListOrTheNew) {
  constexpr std::size_t kSize = 10000;
  const std::string old = Text(kSize, 'o');
  const auto number = [&] {
    struct stat status;
    return stat(file_.c_str(), &status) == 0 ? status.st_ino : 0;
  };
  const auto start_writer = [&](rlim_t limit) {
    const pid_t writer = fork();
    if (writer != 0) return writer;
    const rlimit no_core{};
    setrlimit(RLIMIT_CORE, &no_core);
    std::signal(SIGXFSZ, SIG_DFL);  // which another test ignores
    LimitFiles(limit);
    for (;; Synchronise()) Set("key", Parse(Has("key", old) ? Text(kSize, 'n') : old));
  };
  const auto list = [](const std::string& text) {
    return "<dict><key>key</key>" + text + "</dict>";
  };
  Set("key", Parse(old));
  ASSERT_TRUE(Synchronise());
  int status = 0;
  for (const rlim_t limit : {rlim_t{0}, rlim_t{1}, rlim_t{4096}, rlim_t{kSize}}) {
    EXPECT_GT(waitpid(start_writer(limit), &status, 0), 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ) << status;
    EXPECT_TRUE(FileHolds(list(old))) << limit;
    EXPECT_EQ(CountFiles(), 2) << "the list, and what the last writer alone left behind";
  }
  for (int i = 0; i < 25; ++i) {
    const ino_t before = number();
    const pid_t writer = start_writer(RLIM_INFINITY);
    while (number() == before) usleep(100);
    usleep(static_cast<useconds_t>(i * 157));
    kill(writer, SIGKILL);
    EXPECT_GT(waitpid(writer, &status, 0), 0);
    EXPECT_TRUE(FileHolds(list(old)) || FileHolds(list(Text(kSize, 'n')))) << i;
  }
  Set("key", Parse(old));
  EXPECT_TRUE(Synchronise());
  EXPECT_TRUE(FileHolds(list(old)));
  EXPECT_EQ(CountFiles(), 1);
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
