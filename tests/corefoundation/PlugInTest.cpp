// Bundles and the instances of their factories.
#include <algorithm>
#include <cstring>

#include "tests/corefoundation/TestPlugIn.h"
#include "tests/corefoundation/TestSupport.h"

namespace {

const char kType[] = "11111111-2222-3333-4444-5555555555AA";
const char kFactory[] = "11111111-2222-3333-4444-5555555555AB";
const std::string kNamed = "<key>CFBundleExecutable</key><string>TEST</string>";

std::string InformationFor(const std::string& executable,
                           const std::string& function = "MakeTestInstance",
                           const std::string& type = kType) {
  return "<plist version=\"1.0\"><dict>" + executable + "<key>CFPlugInFactories</key><dict><key>" +
         kFactory + "</key><string>" + function +
         "</string></dict><key>CFPlugInTypes</key><dict><key>" + type + "</key><array><string>" +
         kFactory + "</string></array></dict></dict></plist>";
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

TestInstance* NewInstance(CFAllocatorRef allocator = nullptr, const char* type = kType,
                          const char* factory = kFactory) {
  return static_cast<TestInstance*>(
      CFPlugInInstanceCreate(allocator, MakeUUID(factory).get(), MakeUUID(type).get()));
}

TEST(PlugIn, TellsFactoriesFromInformation) {
  const TemporaryFolder folder;
  WriteFile(folder.path() + "/file", "text");
  for (const char* none : {"/missing", "/file"}) EXPECT_FALSE(Create(folder.path() + none)) << none;
  EXPECT_EQ(CFPlugInCreate(kCFAllocatorDefault, nullptr), nullptr);
  const struct {
    const char* name;
    std::string information;
    CFIndex factories;
  } cases[] = {
      {"none", "", 0},
      {"broken", "<plist><dict><key>CFPlugInFactories</key>", 0},
      {"no factories", "<plist><dict>" + kNamed + "</dict></plist>", 0},
      {"wrong classes",
       "<plist><dict><key>CFBundleExecutable</key><data/><key>CFPlugInFactories</key><array/>"
       "<key>CFPlugInTypes</key><string>x</string></dict></plist>",
       0},
      {"another type", InformationFor("", "F", "11111111-2222-3333-4444-5555555555AC"), 0},
      {"another spelling", InformationFor("", "F", "{11111111-2222-3333-4444-5555555555aa}"), 1},
  };
  for (const auto& test : cases) {
    const std::string path = folder.path() + "/" + test.name;
    std::filesystem::create_directories(path);
    if (!test.information.empty()) WriteFile(path + "/Contents/Info.plist", test.information);
    const CFRef<CFPlugInRef> plugin = Create(path);
    ASSERT_TRUE(plugin) << test.name;
    EXPECT_EQ(CountFactories(plugin), test.factories) << test.name;
  }
}

TEST(PlugIn, FindsTheExecutable) {
  const TemporaryFolder folder;
  const std::string unnamed = InformationFor("");
  const std::string named = InformationFor(kNamed);
  const struct {
    std::string information, file;
    bool found;
    int lines = 1;  // on standard error
    const char* executable = TEST_PLUGIN;
  } cases[] = {
      {named, "Contents/Linux/TEST", true, 0},
      {named, "Contents/Linux/libTEST.so", true, 0},
      {named, "Contents/TEST", true, 0},
      {named, "Contents/libTEST.so", true, 0},
      {unnamed, "Contents/Linux/libB.so", true, 0},
      {named, "Contents/MacOS/TEST", false},
      {named, "libTEST.so", false},
      {named, "Contents/Linux/libTEST.so", false, 1, "/etc/passwd"},
      {InformationFor(kNamed, "MissingFunction"), "Contents/Linux/libTEST.so", false, 0},
  };
  for (const auto& test : cases) {
    const std::string path = folder.path() + "/" + std::to_string(&test - cases) + "/B.plugin/";
    SCOPED_TRACE(path + test.file);
    WriteFile(path + "Contents/Info.plist", test.information);
    std::filesystem::create_directories(std::filesystem::path(path + test.file).parent_path());
    std::filesystem::copy_file(test.executable, path + test.file);
    const CFRef<CFPlugInRef> plugin = Create(path);
    ASSERT_EQ(CountFactories(plugin), 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(NewInstance() != nullptr, test.found);
    const std::string report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), test.lines) << report;
  }
}

TEST(PlugIn, OutlivesItsReference) {
  const TemporaryFolder folder;
  const std::string path = folder.path() + "/B.plugin";
  WriteFile(path + "/Contents/Info.plist", InformationFor(kNamed));
  WriteFile(path + "/Contents/Linux/libTEST.so", ReadFile(TEST_PLUGIN));
  CFRef<CFPlugInRef> plugin = Create(path);
  const CFPlugInRef object = plugin.get();
  const TestInstance* instance = NewInstance(kCFAllocatorSystemDefault);
  ASSERT_NE(instance, nullptr);
  EXPECT_EQ(instance->calls, 1);
  EXPECT_EQ(instance->allocator, kCFAllocatorSystemDefault);
  const CFUUIDBytes type = CFUUIDGetUUIDBytes(MakeUUID(kType).get());
  EXPECT_EQ(std::memcmp(&instance->type, &type, sizeof(type)), 0);

  plugin = {};
  plugin = Create(path + "/Contents/../");
  EXPECT_EQ(plugin.get(), object);
  ASSERT_EQ(NewInstance(), instance);
  EXPECT_EQ(instance->calls, 2);
  EXPECT_EQ(instance->allocator, nullptr);
  EXPECT_EQ(NewInstance(nullptr, kFactory), nullptr) << "a type that the factory does not make";
  EXPECT_EQ(NewInstance(nullptr, kType, kType), nullptr) << "a factory that no bundle has";
}

}  // namespace
