// IEEE 1284 device identifiers.
//
// Input: the identifier.
#include <string_view>

#include "fuzz/Fuzz.h"
#include "port_driver/DeviceId.h"

namespace {

using ZIOP::DeviceId;

constexpr std::string DeviceId::*kTexts[] = {&DeviceId::manufacturer, &DeviceId::model,
                                             &DeviceId::commandSet, &DeviceId::serial,
                                             &DeviceId::description};

bool IsTidy(const std::string& text) {
  bool tidy = text.empty() || (text.front() != ' ' && text.back() != ' ');
  for (const char c : text) {
    tidy = tidy && c != ';' && c != 0x7F && static_cast<unsigned char>(c) >= 0x20;
  }
  return tidy && text.find("  ") == std::string::npos;
}

// The identifier in the standard's form, but for the length.
std::string Written(const DeviceId& id) {
  return "MFG:" + id.manufacturer + ";MDL:" + id.model + ";CMD:" + id.commandSet +
         ";SN:" + id.serial + ";DES:" + id.description + ";";
}

bool Equal(const DeviceId& left, const DeviceId& right) {
  bool equal = true;
  for (const auto text : kTexts) equal = equal && left.*text == right.*text;
  return equal;
}

// What is left of an identifier that is cut off says nothing else than the whole.
void CheckCut(const DeviceId& whole, std::string_view bytes) {
  const DeviceId cut = DeviceId::Parse(bytes.substr(0, bytes.size() / 2));
  for (const auto text : kTexts) {
    FUZZ_CHECK((whole.*text).compare(0, (cut.*text).size(), cut.*text) == 0);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<char> copy(data, data + size);  // no zero behind it
  const std::string_view bytes(copy.data(), copy.size());
  const DeviceId id = DeviceId::Parse(bytes);
  for (const auto text : kTexts) FUZZ_CHECK(IsTidy(id.*text));
  const std::string written = Written(id);
  for (const char* const length : {"", "\x01\x40", "\x40\x01", "\x01\x0A"}) {
    FUZZ_CHECK(Equal(DeviceId::Parse(length + written), id));
  }
  CheckCut(id, bytes);
  return 0;
}
