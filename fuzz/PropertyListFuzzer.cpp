// Property lists as they are read, walked and written again, and as the file of the defaults.
//
// Input: the list, XML or binary.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "corefoundation/Dictionary.h"
#include "corefoundation/Foundation.h"
#include "corefoundation/PropertyList.h"
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

std::string Written(CFTypeRef list) {
  const CoreFoundation::Node node = CoreFoundation::NodeFromObject(list);
  FUZZ_CHECK(node);
  return CoreFoundation::WriteXML(node.get());
}

void WalkNumber(CFNumberRef number) {
  SInt32 integer = 0;
  CFNumberGetValue(number, kCFNumberSInt32Type, &integer);
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

// Looks at every object of the list and says whether one is a date.
bool Walk(CFTypeRef object) {
  bool has_dates = CFGetTypeID(object) == static_cast<CFTypeID>(CoreFoundation::Type::kDate);
  if (const auto array = CFCast<CFArrayRef>(object)) {
    const CFIndex count = CFArrayGetCount(array);
    for (CFIndex i = 0; i < count; ++i) has_dates |= Walk(CFArrayGetValueAtIndex(array, i));
  } else if (const auto dictionary = CFCast<CFDictionaryRef>(object)) {
    const auto& entries =
        CoreFoundation::ObjectOf<CoreFoundation::Dictionary>(dictionary).entries();
    for (const auto& [key, value] : entries) {
      WalkString(CFCast<CFStringRef>(key.get()));
      FUZZ_CHECK(CFDictionaryGetValue(dictionary, key.get()) == value.get());
      has_dates |= Walk(value.get());
    }
  } else if (const auto string = CFCast<CFStringRef>(object)) {
    WalkString(string);
  } else if (const auto number = CFCast<CFNumberRef>(object)) {
    WalkNumber(number);
  }
  return has_dates;
}

// Whether both lists hold the same. They are compared as XML because no NaN equals another.
bool AreSame(CFTypeRef list, CFTypeRef other) {
  return Written(list) == Written(other);
}

// What is written can be read again. An XML date has four digits for the year: others are lost.
void CheckRewriting(CFTypeRef list, bool has_dates) {
  const CFRef<CFTypeRef> again = Parse(Written(list));
  FUZZ_CHECK(again);
  if (!has_dates) FUZZ_CHECK(AreSame(again.get(), list));
}

// A list that libplist reads, as it does behind a comment, is the one that is read without it.
void CheckPlainReading(const std::string& bytes, CFTypeRef list) {
  if (bytes.front() == 'b' || bytes.front() == '\xEF') return;
  const CFRef<CFTypeRef> commented = Parse("<!-- -->" + bytes);
  FUZZ_CHECK(commented);
  FUZZ_CHECK(AreSame(list, commented.get()));
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
  FUZZ_CHECK(static_cast<bool>(kept) == static_cast<bool>(again));
  if (kept && !Walk(kept.get())) FUZZ_CHECK(AreSame(kept.get(), again.get()));
  FUZZ_CHECK(CFEqual(Defaults::Get(CFSTR("other")).get(), CFSTR("value")));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  if (const auto list = Parse(bytes)) {
    CheckPlainReading(bytes, list.get());
    CheckRewriting(list.get(), Walk(list.get()));
  }
  CheckDefaults(bytes);
  return 0;
}
