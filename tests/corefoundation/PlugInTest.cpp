// Bundles and the instances of their factories.
#include <CoreFoundation/CFPlugIn.h>

#include <algorithm>

#include "tests/corefoundation/TestSupport.h"

namespace {

const char kType[] = "11111111-2222-3333-4444-5555555555AA";
const char kFactory[] = "11111111-2222-3333-4444-5555555555AB";

std::string Information(const std::string& executable,
                        const std::string& function = "MakeTestInstance",
                        const std::string& type = kType) {
  return "<dict><key>CFBundleExecutable</key><string>" + executable +
         "</string><key>CFPlugInFactories</key><dict><key>" + kFactory + "</key><string>" +
         function + "</string></dict><key>CFPlugInTypes</key><dict><key>" + type +
         "</key><array><string>" + kFactory + "</string></array></dict></dict>";
}

CFRef<CFPlugInRef> Create(const std::string& path) {
  const CFRef<CFURLRef> url(
      CFURLCreateWithFileSystemPath(nullptr, MakeString(path).get(), kCFURLPOSIXPathStyle, 1));
  return CFRef<CFPlugInRef>(CFPlugInCreate(kCFAllocatorDefault, url.get()));
}

CFIndex CountFactories(const CFRef<CFPlugInRef>& plugin) {
  const CFRef<CFArrayRef> factories(
      CFPlugInFindFactoriesForPlugInTypeInPlugIn(MakeUUID(kType).get(), plugin.get()));
  if (!factories) return 0;
  EXPECT_TRUE(CFEqual(CFArrayGetValueAtIndex(factories.get(), 0), MakeUUID(kFactory).get()));
  return CFArrayGetCount(factories.get());
}

CFUUIDBytes* NewInstance(const char* type = kType, const char* factory = kFactory) {
  return static_cast<CFUUIDBytes*>(
      CFPlugInInstanceCreate(nullptr, MakeUUID(factory).get(), MakeUUID(type).get()));
}

TEST(PlugIn, FindsFactoriesAndTheExecutable) {
  const TemporaryFolder folder;
  const std::string named = Information("TEST");
  const struct {
    std::string information, file;
    CFIndex factories;
    bool found;
    int lines = 0;  // on standard error
    const char* executable = TEST_PLUGIN;
  } cases[] = {
      {"<dict><key>CFPlugInFactories</key>", "Contents/TEST", 0, false},
      {"<dict><key>CFBundleExecutable</key><data/><key>CFPlugInFactories</key><array/>"
       "<key>CFPlugInTypes</key><string>x</string></dict>",
       "Contents/Linux/libB.so", 0, false},
      {Information("TEST", "F", kFactory), "Contents/TEST", 0, false},
      {"<dict><key>CFPlugInFactories</key><dict><key></key><string>F</string><key>no digits</key>"
       "<string>F</string><key>" +
           std::string(kFactory) +
           "</key><integer>1</integer></dict><key>CFPlugInTypes</key><dict>" + "<key>" + kType +
           "</key><array><dict/><string/><string>" + kFactory + "</string></array></dict></dict>",
       "Contents/Linux/libB.so", 0, false},
      {Information("", "MakeTestInstance", "{11111111-2222-3333-4444-5555555555aa}"),
       "Contents/Linux/libB.so", 1, true},
      {named, "Contents/Linux/TEST", 1, true},
      {named, "Contents/Linux/libTEST.so", 1, true},
      {named, "Contents/TEST", 1, true},
      {named, "Contents/libTEST.so", 1, true},
      {named, "Contents/MacOS/TEST", 1, false, 1},
      {named, "libTEST.so", 1, false, 1},
      // A name is no path.
      {Information("../Linux/TEST"), "Contents/Linux/TEST", 1, false, 1},
      {Information("../libTEST.so"), "Contents/libTEST.so", 1, false, 1},
      {Information("a/TEST"), "Contents/Linux/a/TEST", 1, false, 1},
      {Information(".."), "Contents/Linux/TEST", 1, false, 1},
      {named, "Contents/Linux/libTEST.so", 1, false, 1, "/etc/passwd"},
      {Information("TEST", "MissingFunction"), "Contents/Linux/libTEST.so", 1, false},
  };
  for (const auto& test : cases) {
    const std::string path = folder.path() + "/" + std::to_string(&test - cases) + "/B.plugin/";
    SCOPED_TRACE(path + test.file);
    WriteFile(path + "Contents/Info.plist", test.information);
    WriteFile(path + test.file, ReadFile(test.executable));
    EXPECT_EQ(CountFactories(Create(path)), test.factories);
    testing::internal::CaptureStderr();
    EXPECT_EQ(NewInstance() != nullptr, test.found);
    const std::string report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), test.lines) << report;
    EXPECT_FALSE(Create(path + test.file)) << "no folder";
  }
  EXPECT_FALSE(Create(folder.path() + "/missing"));
  EXPECT_EQ(CFPlugInCreate(kCFAllocatorDefault, nullptr), nullptr);
}

// The dynamic linker maps an object file as far as it is there, and touches the rest.
TEST(PlugIn, ExecutablesThatAreCutShortAreNotLoaded) {
  const TemporaryFolder folder;
  const std::string code = ReadFile(TEST_PLUGIN);
  for (std::size_t size = 0; size < code.size(); size += 1 + code.size() / 100) {
    const std::string path = folder.path() + "/" + std::to_string(size) + "/B.plugin/";
    WriteFile(path + "Contents/Info.plist", Information("TEST"));
    WriteFile(path + "Contents/TEST", code.substr(0, size));
    EXPECT_EQ(CountFactories(Create(path)), 1);
    testing::internal::CaptureStderr();
    const bool found = NewInstance() != nullptr;
    const std::string report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), found ? 0 : 1) << report;
    EXPECT_FALSE(found && size < code.size() / 4) << "segments make most of it";
  }
}

TEST(PlugIn, OutlivesItsReference) {
  const TemporaryFolder folder;
  const std::string path = folder.path() + "/B.plugin";
  WriteFile(path + "/Contents/Info.plist", Information("TEST"));
  WriteFile(path + "/Contents/TEST", ReadFile(TEST_PLUGIN));
  const CFPlugInRef object = Create(path).get();
  CFUUIDBytes* const instance = NewInstance();
  ASSERT_NE(instance, nullptr);
  EXPECT_EQ(instance->byte15, 0xAA);
  EXPECT_EQ(Create(path + "/Contents/../").get(), object);
  EXPECT_EQ(NewInstance(), instance);
  EXPECT_EQ(NewInstance(kFactory), nullptr) << "a type that the factory does not make";
  EXPECT_EQ(NewInstance(kType, kType), nullptr) << "a factory that no bundle has";
}

}  // namespace
