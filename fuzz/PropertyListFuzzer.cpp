// Property lists as they are read, walked and written again, and as the file of the defaults.
//
// Input: the list, XML or binary.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "corefoundation/Array.h"
#include "corefoundation/Dictionary.h"
#include "corefoundation/Foundation.h"
#include "fuzz/Fuzz.h"

// In place of the C library's: files need not outlive a power failure here.
extern "C" int fsync(int /*file*/) {
  return 0;
}

namespace {

CFRef<CFTypeRef> Parse(const std::string& bytes) {
  const CFRef<CFDataRef> data(CFDataCreate(nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
                                           static_cast<CFIndex>(bytes.size())));
  return CFRef<CFTypeRef>(CFPropertyListCreateWithData(
      nullptr, data.get(), kCFPropertyListMutableContainers, nullptr, nullptr));
}

std::string Written(CFTypeRef list, CFPropertyListFormat format) {
  const CFRef<CFDataRef> data(CFPropertyListCreateData(nullptr, list, format, 0, nullptr));
  FUZZ_CHECK(data);
  return std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(data.get())),
                     static_cast<std::size_t>(CFDataGetLength(data.get())));
}

void WalkNumber(CFNumberRef number) {
  SInt32 integer = 0;
  SInt64 long_integer = 0;
  double real = 0;
  CFNumberGetValue(number, kCFNumberSInt32Type, &integer);
  CFNumberGetValue(number, kCFNumberSInt64Type, &long_integer);
  CFNumberGetValue(number, kCFNumberDoubleType, &real);
}

void WalkString(CFStringRef string) {
  const CFIndex size =
      1 + CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
  std::vector<char> text(static_cast<std::size_t>(size));
  FUZZ_CHECK(CFStringGetCString(string, text.data(), size, kCFStringEncodingUTF8));
  const CFRef<CFStringRef> again(
      CFStringCreateWithCString(nullptr, text.data(), kCFStringEncodingUTF8));
  FUZZ_CHECK(again);
  for (const auto encoding : {kCFStringEncodingDOSJapanese, kCFStringEncodingMacRoman}) {
    text.resize(static_cast<std::size_t>(size / 2));
    CFStringGetCString(string, text.data(), size / 2, encoding);
  }
}

void Walk(CFTypeRef object) {
  if (const auto array = CFCast<CFArrayRef>(object)) {
    const CFIndex count = CFArrayGetCount(array);
    for (CFIndex i = 0; i < count; ++i) Walk(CFArrayGetValueAtIndex(array, i));
  } else if (const auto dictionary = CFCast<CFDictionaryRef>(object)) {
    const auto& entries =
        CoreFoundation::ObjectOf<CoreFoundation::Dictionary>(dictionary).entries();
    for (const auto& [key, value] : entries) {
      WalkString(CFCast<CFStringRef>(key));
      FUZZ_CHECK(CFDictionaryGetValue(dictionary, key) == value);
      Walk(value);
    }
  } else if (const auto string = CFCast<CFStringRef>(object)) {
    WalkString(string);
  } else if (const auto number = CFCast<CFNumberRef>(object)) {
    WalkNumber(number);
  }
}

// What is written is a list that is written the same. XML cuts a date to seconds, so that the first
// list may differ, and no list with a NaN equals another.
void CheckRewriting(CFTypeRef list) {
  for (const auto format : {kCFPropertyListXMLFormat_v1_0, kCFPropertyListBinaryFormat_v1_0}) {
    const std::string bytes = Written(list, format);
    const CFRef<CFTypeRef> again = Parse(bytes);
    FUZZ_CHECK(again);
    FUZZ_CHECK(Written(again.get(), format) == bytes);
  }
}

// The defaults of this process, in a folder of their own.
class Defaults {
 public:
  Defaults() {
    std::string folder = (std::filesystem::temp_directory_path() / "defaults-XXXXXX").string();
    FUZZ_CHECK(mkdtemp(folder.data()) != nullptr);
    folder_ = folder;
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  }
  ~Defaults() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Defaults(const Defaults&) = delete;
  Defaults& operator=(const Defaults&) = delete;

  void Store(const std::string& bytes) const {
    std::ofstream(folder_ / "fuzz_property_list.plist", std::ios::binary) << bytes;
    FUZZ_CHECK(CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication));
  }

  static CFRef<CFTypeRef> Get(CFStringRef key) {
    return CFRef<CFTypeRef>(CFPreferencesCopyAppValue(key, kCFPreferencesCurrentApplication));
  }

 private:
  std::filesystem::path folder_;
};

// A value stays when another one is stored beside it.
void CheckDefaults(const std::string& bytes) {
  static const Defaults defaults;
  defaults.Store(bytes);
  const auto kept = Defaults::Get(CFSTR("infoPrinterList"));
  CFPreferencesSetAppValue(CFSTR("other"), CFSTR("value"), kCFPreferencesCurrentApplication);
  FUZZ_CHECK(CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication));
  const auto again = Defaults::Get(CFSTR("infoPrinterList"));
  FUZZ_CHECK(kept ? again && CFEqual(kept.get(), again.get()) : !again);
  FUZZ_CHECK(CFEqual(Defaults::Get(CFSTR("other")).get(), CFSTR("value")));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  if (const auto list = Parse(bytes)) {
    Walk(list.get());
    CheckRewriting(list.get());
  }
  CheckDefaults(bytes);
  return 0;
}
