// Bundles and the instances of their factories.
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

#include "tests/corefoundation/TestPlugIn.h"
#include "tests/corefoundation/TestSupport.h"

namespace {

std::string InformationFor(const std::string& executable, const std::string& function,
                           const std::string& factory = TEST_FACTORY_ID,
                           const std::string& type = TEST_TYPE_ID) {
  return "<plist version=\"1.0\"><dict>" + executable + "<key>CFPlugInFactories</key><dict><key>" +
         factory + "</key><string>" + function +
         "</string></dict><key>CFPlugInTypes</key><dict><key>" + type + "</key><array><string>" +
         factory + "</string></array></dict></dict></plist>";
}

const std::string kNamed = "<key>CFBundleExecutable</key><string>TEST</string>";

CFRef<CFPlugInRef> Create(const std::string& path) {
  const CFRef<CFURLRef> url(
      CFURLCreateWithFileSystemPath(nullptr, MakeString(path).get(), kCFURLPOSIXPathStyle, 1));
  return CFRef<CFPlugInRef>(CFPlugInCreate(kCFAllocatorDefault, url.get()));
}

CFRef<CFUUIDRef> MakeUUID(const char* text) {
  return CFRef<CFUUIDRef>(CFUUIDCreateFromString(kCFAllocatorDefault, MakeString(text).get()));
}

CFIndex CountFactories(CFPlugInRef plugin) {
  const CFRef<CFArrayRef> factories(
      CFPlugInFindFactoriesForPlugInTypeInPlugIn(MakeUUID(TEST_TYPE_ID).get(), plugin));
  return factories ? CFArrayGetCount(factories.get()) : 0;
}

TestInstance* NewInstance(CFAllocatorRef allocator = nullptr) {
  return static_cast<TestInstance*>(CFPlugInInstanceCreate(
      allocator, MakeUUID(TEST_FACTORY_ID).get(), MakeUUID(TEST_TYPE_ID).get()));
}

class PlugIn : public testing::Test {
 protected:
  std::string Path(const std::string& file) const { return folder_.path() + "/B.plugin/" + file; }

  void Install(const std::string& file) const {
    WriteFile(Path("Contents/Info.plist"), information_);
    std::filesystem::create_directories(std::filesystem::path(Path(file)).parent_path());
    std::filesystem::copy_file(TEST_PLUGIN, Path(file));
  }

  TemporaryFolder folder_;
  std::string information_ = InformationFor(kNamed, "MakeTestInstance");
};

TEST_F(PlugIn, NeedsAFolder) {
  EXPECT_EQ(CFPlugInCreate(kCFAllocatorDefault, nullptr), nullptr);
  EXPECT_FALSE(Create(folder_.path() + "/missing"));
  WriteFile(folder_.path() + "/file", "text");
  EXPECT_FALSE(Create(folder_.path() + "/file"));
}

TEST_F(PlugIn, TellsFactoriesFromInformation) {
  const struct {
    const char* name;
    std::string information;
    CFIndex factories;
  } cases[] = {
      {"none", "", 0},
      {"broken", "<plist><dict><key>CFPlugInFactories</key>", 0},
      {"array", "<plist><array/></plist>", 0},
      {"no factories", "<plist><dict>" + kNamed + "</dict></plist>", 0},
      {"wrong classes",
       "<plist><dict><key>CFBundleExecutable</key><data/><key>CFPlugInFactories</key><array/>"
       "<key>CFPlugInTypes</key><string>x</string></dict></plist>",
       0},
      {"another type", InformationFor("", "F", TEST_FACTORY_ID, TEST_OTHER_FACTORY_ID), 0},
      {"other spelling",
       InformationFor("", "F", TEST_FACTORY_ID, "{11111111-2222-3333-4444-5555555555aa}"), 1},
      {"plain", InformationFor("", "F"), 1},
  };
  for (const auto& test : cases) {
    const std::string path = folder_.path() + "/" + test.name;
    std::filesystem::create_directories(path);
    if (!test.information.empty()) WriteFile(path + "/Contents/Info.plist", test.information);
    const CFRef<CFPlugInRef> plugin = Create(path);
    ASSERT_TRUE(plugin) << test.name;
    EXPECT_EQ(CountFactories(plugin.get()), test.factories) << test.name;
  }
}

TEST_F(PlugIn, ReadsBinaryInformation) {
  const CFRef<CFPropertyListRef> list(CFPropertyListCreateWithData(
      nullptr, MakeData(information_).get(), kCFPropertyListImmutable, nullptr, nullptr));
  const CFRef<CFDataRef> binary(
      CFPropertyListCreateData(nullptr, list.get(), kCFPropertyListBinaryFormat_v1_0, 0, nullptr));
  information_.assign(reinterpret_cast<const char*>(CFDataGetBytePtr(binary.get())),
                      static_cast<std::size_t>(CFDataGetLength(binary.get())));
  Install("Contents/Linux/libTEST.so");
  const CFRef<CFPlugInRef> plugin = Create(Path(""));
  EXPECT_EQ(CountFactories(plugin.get()), 1);
}

TEST_F(PlugIn, DoesNotWaitForAPipe) {
  std::filesystem::create_directories(Path("Contents/Linux"));
  ASSERT_EQ(mkfifo(Path("Contents/Info.plist").c_str(), 0600), 0);
  const CFRef<CFPlugInRef> plugin = Create(Path(""));
  ASSERT_TRUE(plugin);
  EXPECT_EQ(CountFactories(plugin.get()), 0);
}

TEST_F(PlugIn, FindsTheExecutable) {
  const struct {
    const char *executable, *file;
    bool found;
  } cases[] = {
      {"TEST", "Contents/Linux/TEST", true},
      {"TEST", "Contents/Linux/libTEST.so", true},
      {"TEST", "Contents/TEST", true},
      {"TEST", "Contents/libTEST.so", true},
      {nullptr, "Contents/Linux/libB.so", true},
      {"TEST", "Contents/MacOS/TEST", false},
      {"TEST", "libTEST.so", false},
  };
  for (const auto& test : cases) {
    const std::string path = folder_.path() + "/" + std::to_string(&test - cases) + "/B.plugin/";
    WriteFile(path + "Contents/Info.plist",
              InformationFor(test.executable != nullptr ? kNamed : "", "MakeTestInstance"));
    std::filesystem::create_directories(std::filesystem::path(path + test.file).parent_path());
    std::filesystem::copy_file(TEST_PLUGIN, path + test.file);
    const CFRef<CFPlugInRef> plugin = Create(path);
    ASSERT_EQ(CountFactories(plugin.get()), 1) << test.file;
    testing::internal::CaptureStderr();
    TestInstance* instance = NewInstance();
    const std::string report = testing::internal::GetCapturedStderr();
    EXPECT_EQ(instance != nullptr, test.found) << test.file;
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), test.found ? 0 : 1) << report;
    if (instance != nullptr) instance->table->Release(instance);
  }
}

TEST_F(PlugIn, ReportsWhatCannotBeLoaded) {
  WriteFile(Path("Contents/Info.plist"), information_);
  WriteFile(Path("Contents/Linux/libTEST.so"), "no object file");
  const CFRef<CFPlugInRef> plugin = Create(Path(""));
  EXPECT_EQ(CountFactories(plugin.get()), 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(NewInstance(), nullptr);
  const std::string report = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 1) << report;
}

TEST_F(PlugIn, MakesNothingWithoutTheFunctionOrTheType) {
  information_ = InformationFor(kNamed, "MissingFunction");
  Install("Contents/Linux/libTEST.so");
  const CFRef<CFPlugInRef> plugin = Create(Path(""));
  EXPECT_EQ(CountFactories(plugin.get()), 1);
  EXPECT_EQ(NewInstance(), nullptr);
  const CFRef<CFUUIDRef> factory = MakeUUID(TEST_FACTORY_ID);
  const CFRef<CFUUIDRef> unknown = MakeUUID(TEST_INTERFACE_ID);
  EXPECT_EQ(CFPlugInInstanceCreate(nullptr, factory.get(), unknown.get()), nullptr);
  EXPECT_EQ(CFPlugInInstanceCreate(nullptr, unknown.get(), MakeUUID(TEST_TYPE_ID).get()), nullptr);
}

TEST_F(PlugIn, InstancesOutliveTheBundleReference) {
  Install("Contents/Linux/libTEST.so");
  CFRef<CFPlugInRef> plugin = Create(Path(""));
  const CFPlugInRef object = plugin.get();

  TestInstance* first = NewInstance(kCFAllocatorSystemDefault);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->allocator, kCFAllocatorSystemDefault);
  const CFUUIDBytes type = CFUUIDGetUUIDBytes(MakeUUID(TEST_TYPE_ID).get());
  EXPECT_EQ(std::memcmp(&first->type, &type, sizeof(type)), 0);

  plugin = CFRef<CFPlugInRef>();
  plugin = Create(folder_.path() + "/../" + folder_.path().substr(folder_.path().rfind('/')) +
                  "/B.plugin");
  EXPECT_EQ(plugin.get(), object);
  TestInstance* second = NewInstance();
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->allocator, nullptr);
  EXPECT_EQ(second->serial, first->serial + 1);

  EXPECT_EQ(first->table->Release(first), 0U);
  EXPECT_EQ(second->table->Release(second), 0U);
}

TEST_F(PlugIn, AnswersForItsInterfaces) {
  Install("Contents/Linux/libTEST.so");
  const CFRef<CFPlugInRef> plugin = Create(Path(""));
  TestInstance* instance = NewInstance();
  ASSERT_NE(instance, nullptr);
  const struct {
    CFUUIDBytes identifier;
    HRESULT result;
  } cases[] = {
      {CFUUIDGetUUIDBytes(IUnknownUUID), S_OK},
      {CFUUIDGetUUIDBytes(MakeUUID(TEST_INTERFACE_ID).get()), S_OK},
      {CFUUIDGetUUIDBytes(MakeUUID(TEST_TYPE_ID).get()), E_NOINTERFACE},
  };
  for (const auto& test : cases) {
    void* interface = &instance;
    EXPECT_EQ(instance->table->QueryInterface(instance, test.identifier, &interface), test.result);
    EXPECT_EQ(interface, test.result == S_OK ? instance : nullptr);
    if (interface != nullptr) instance->table->Release(interface);
  }
  EXPECT_EQ(instance->table->Release(instance), 0U);
}

}  // namespace
