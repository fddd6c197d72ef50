// Forgiving reader of device identifiers.
#include "port_driver/DeviceId.h"

#include <algorithm>

#include "port_driver/PlainText.h"

namespace ZIOP {
namespace {

struct Key {
  std::string_view name;  // in lower case
  std::string DeviceId::*text;
};

constexpr Key kKeys[] = {
    {"mfg", &DeviceId::manufacturer},
    {"manufacturer", &DeviceId::manufacturer},
    {"mdl", &DeviceId::model},
    {"model", &DeviceId::model},
    {"cmd", &DeviceId::commandSet},
    {"command set", &DeviceId::commandSet},
    {"sn", &DeviceId::serial},
    {"sern", &DeviceId::serial},
    {"serialnumber", &DeviceId::serial},
    {"des", &DeviceId::description},
    {"description", &DeviceId::description},
};

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// Whether an identifier without a length may have c among its first two bytes.
bool BeginsText(char c) {
  return !IsControl(c) || c == '\t' || c == '\n' || c == '\r';
}

// Cuts one "KEY:VALUE" with what ends it off the front.
std::string_view TakePart(std::string_view& bytes) {
  const std::size_t end = std::min(bytes.find_first_of(";\r\n"), bytes.size());
  const std::string_view part = bytes.substr(0, end);
  bytes.remove_prefix(std::min(end + 1, bytes.size()));
  return part;
}

}  // namespace

DeviceId DeviceId::Parse(std::string_view bytes) {
  if (bytes.size() >= 2 && !(BeginsText(bytes[0]) && BeginsText(bytes[1]))) {
    bytes.remove_prefix(2);
  }
  DeviceId id;
  while (!bytes.empty()) {
    const std::string_view part = TakePart(bytes);
    const std::size_t colon = part.find(':');
    if (colon == std::string_view::npos) {
      continue;
    }
    const std::string name = LowerCase(Tidy(part.substr(0, colon)));
    const auto* const key = std::find_if(std::begin(kKeys), std::end(kKeys),
                                         [&](const Key& each) { return each.name == name; });
    if (key != std::end(kKeys) && (id.*key->text).empty()) {
      id.*key->text = Tidy(part.substr(colon + 1));
    }
  }
  return id;
}

}  // namespace ZIOP
