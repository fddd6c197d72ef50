// The memory of a search, and what of it still holds.
#include "port_driver/PrinterMemory.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <unordered_set>

#include "corefoundation/Foundation.h"
#include "port_driver/DeviceId.h"
#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"
#include "port_driver/PrinterIdentity.h"

namespace ZIOP {
namespace {

using std::chrono::seconds;

constexpr seconds kLongest = std::chrono::hours(24);
constexpr std::size_t kMaximumText = 4096;  // bytes of each text

// Keys of an entry. All values are data: the texts are bytes in any encoding, and the time is the
// decimal number of seconds since 1970.
constexpr char kTimeKey[] = "Time";
struct TextRow {
  const char* key;
  std::string FoundPrinter::*text;
};
constexpr TextRow kTexts[] = {
    {"URI", &FoundPrinter::uri},           {"Address", &FoundPrinter::address},
    {"Asked", &FoundPrinter::asked},       {"Model", &FoundPrinter::model},
    {"Serial", &FoundPrinter::serial},     {"Description", &FoundPrinter::description},
    {"DeviceID", &FoundPrinter::deviceId},
};

struct Remembered {
  FoundPrinter printer;
  seconds time;
};

CFStringRef MemoryKey() {
  return CFSTR("networkPrinters");
}
CFStringRef Application() {
  return CFSTR("ZIOP");
}

CFRef<CFStringRef> MakeKey(const char* key) {
  return CFRef<CFStringRef>(
      CFStringCreateWithCString(kCFAllocatorDefault, key, kCFStringEncodingUTF8));
}

// Empty when the entry has no such text, or one that is too long.
std::string ReadText(CFDictionaryRef entry, const char* key) {
  const auto data = CFCast<CFDataRef>(CFDictionaryGetValue(entry, MakeKey(key).get()));
  const CFIndex length = data == nullptr ? 0 : CFDataGetLength(data);
  if (length == 0 || static_cast<std::size_t>(length) > kMaximumText) {
    return {};
  }
  return {reinterpret_cast<const char*>(CFDataGetBytePtr(data)), static_cast<std::size_t>(length)};
}

void WriteText(CFMutableDictionaryRef entry, const char* key, const std::string& text) {
  const std::size_t length = std::min(text.size(), kMaximumText);
  const CFRef<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                           reinterpret_cast<const UInt8*>(text.data()),
                                           static_cast<CFIndex>(length)));
  CFDictionarySetValue(entry, MakeKey(key).get(), data.get());
}

std::optional<Remembered> ReadEntry(CFDictionaryRef entry) {
  if (entry == nullptr) {
    return std::nullopt;
  }
  Remembered remembered{};
  for (const TextRow& row : kTexts) {
    remembered.printer.*row.text = ReadText(entry, row.key);
  }
  const std::string time = ReadText(entry, kTimeKey);
  seconds::rep count = 0;
  const auto [end, error] = std::from_chars(time.data(), time.data() + time.size(), count);
  if (error != std::errc() || end != time.data() + time.size()) {
    return std::nullopt;
  }
  remembered.time = seconds(count);
  return remembered;
}

CFRef<CFDictionaryRef> MakeEntry(const Remembered& remembered) {
  CFRef<CFMutableDictionaryRef> entry(CFDictionaryCreateMutable(
      kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  for (const TextRow& row : kTexts) {
    WriteText(entry.get(), row.key, remembered.printer.*row.text);
  }
  WriteText(entry.get(), kTimeKey, std::to_string(remembered.time.count()));
  return entry;
}

std::vector<Remembered> Read() {
  const CFRef<CFPropertyListRef> value(CFPreferencesCopyAppValue(MemoryKey(), Application()));
  const auto list = CFCast<CFArrayRef>(value.get());
  const CFIndex count = list == nullptr ? 0 : CFArrayGetCount(list);
  std::vector<Remembered> all;
  for (CFIndex i = 0; i < count && all.size() < kMaximumRemembered; ++i) {
    if (auto entry = ReadEntry(CFCast<CFDictionaryRef>(CFArrayGetValueAtIndex(list, i)))) {
      all.push_back(std::move(*entry));
    }
  }
  return all;
}

void Write(const std::vector<Remembered>& all) {
  const CFRef<CFMutableArrayRef> list(
      CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));
  for (const Remembered& each : all) {
    CFArrayAppendValue(list.get(), MakeEntry(each).get());
  }
  CFPreferencesSetAppValue(MemoryKey(), list.get(), Application());
  CFPreferencesAppSynchronize(Application());
}

// A printer with what it is recognised by. None for a URI that cannot be read, and for a model that
// is not supported.
struct Recognised {
  std::string model;
  std::vector<std::string> traits;
};

std::optional<Recognised> Recognise(const FoundPrinter& printer, const SupportedModels& models) {
  try {
    const DeviceId id = DeviceId::Parse(printer.deviceId);
    const std::string& serial = printer.serial.empty() ? id.serial : printer.serial;
    const auto identity =
        PrinterIdentity::Of(DeviceURI::Parse(printer.uri), {}, printer.address, serial);
    Recognised recognised{models.NameOf(printer, id), identity.places};
    if (recognised.model.empty()) {
      return std::nullopt;
    }
    if (!identity.serial.empty()) {
      recognised.traits.push_back(recognised.model + "\n" + identity.serial);
    }
    return recognised;
  } catch (const DriverError&) {
    return std::nullopt;
  }
}

// printer with the texts of one at the same place that last time was the same model.
FoundPrinter FilledIn(FoundPrinter printer, const std::string& model,
                      const std::vector<Remembered>& before, const SupportedModels& models) {
  for (const auto& [known, time] : before) {
    if (known.uri != printer.uri ||
        models.NameOf(known, DeviceId::Parse(known.deviceId)) != model) {
      continue;
    }
    const bool is_other = !printer.serial.empty() && printer.serial != known.serial;
    for (const auto text : {&FoundPrinter::serial, &FoundPrinter::deviceId}) {
      if (!is_other && (printer.*text).empty()) {
        printer.*text = known.*text;
      }
    }
  }
  return printer;
}

using Traits = std::unordered_set<std::string>;

bool HasOneOf(const Traits& traits, const std::vector<std::string>& some) {
  return std::any_of(some.begin(), some.end(),
                     [&](const std::string& trait) { return traits.count(trait) != 0; });
}

// Puts those of found that are supported into all, their texts filled in, and gives their traits.
Traits NoteFound(std::vector<FoundPrinter>& found, const std::vector<Remembered>& before,
                 const SupportedModels& models, seconds now, std::vector<Remembered>& all) {
  Traits traits;
  for (FoundPrinter& printer : found) {
    auto recognised = Recognise(printer, models);
    if (!recognised) {
      continue;
    }
    // With another's maker in its identifier the printer may be another model, or none.
    FoundPrinter filled = FilledIn(printer, recognised->model, before, models);
    auto again = Recognise(filled, models);
    if (again && again->model == recognised->model) {
      printer = std::move(filled);
      recognised = std::move(again);
    }
    traits.insert(recognised->traits.begin(), recognised->traits.end());
    all.push_back({printer, now});
  }
  return traits;
}

bool IsValid(const Remembered& remembered, const std::vector<std::string>& addresses, seconds now) {
  return remembered.time <= now && remembered.time >= now - kLongest &&
         std::find(addresses.begin(), addresses.end(), remembered.printer.asked) != addresses.end();
}

}  // namespace

std::vector<FoundPrinter> RecallPrinters(std::vector<FoundPrinter>& found,
                                         const std::vector<std::string>& addresses,
                                         const SupportedModels& models,
                                         std::chrono::system_clock::time_point now) {
  const auto moment = std::chrono::duration_cast<seconds>(now.time_since_epoch());
  const std::vector<Remembered> stored = Read();
  std::vector<Remembered> before;
  std::copy_if(stored.begin(), stored.end(), std::back_inserter(before),
               [&](const Remembered& each) { return IsValid(each, addresses, moment); });
  std::vector<Remembered> all;
  const Traits traits = NoteFound(found, before, models, moment, all);
  std::vector<FoundPrinter> recalled;
  for (const Remembered& each : before) {
    const auto recognised = Recognise(each.printer, models);
    if (recognised && !HasOneOf(traits, recognised->traits)) {
      recalled.push_back(each.printer);
      all.push_back(each);
    }
  }
  all.resize(std::min(all.size(), kMaximumRemembered));
  if (!all.empty() || !stored.empty()) {
    Write(all);
  }
  return recalled;
}

}  // namespace ZIOP
