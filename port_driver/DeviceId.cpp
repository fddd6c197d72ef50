// Forgiving reader of device identifiers.
#include "port_driver/DeviceId.h"

#include <algorithm>

namespace ZIOP {
namespace {

struct Key {
  std::string_view name;
  std::string DeviceId::*text;
};

constexpr Key kKeys[] = {
    {"MFG", &DeviceId::manufacturer},
    {"MANUFACTURER", &DeviceId::manufacturer},
    {"MDL", &DeviceId::model},
    {"MODEL", &DeviceId::model},
    {"CMD", &DeviceId::commandSet},
    {"COMMAND SET", &DeviceId::commandSet},
    {"SN", &DeviceId::serial},
    {"SERN", &DeviceId::serial},
    {"SERIALNUMBER", &DeviceId::serial},
    {"DES", &DeviceId::description},
    {"DESCRIPTION", &DeviceId::description},
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

// Blanks around text off, runs of them as one.
std::string Tidy(std::string_view text) {
  std::string tidy;
  bool pending = false;
  for (const char c : text) {
    if (c == ' ' || IsControl(c)) {
      pending = !tidy.empty();
      continue;
    }
    if (pending) {
      tidy += ' ';
      pending = false;
    }
    tidy += c;
  }
  return tidy;
}

bool IsKey(const std::string& text, std::string_view name) {
  return std::equal(text.begin(), text.end(), name.begin(), name.end(), [](char c, char upper) {
    return (c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) == upper;
  });
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
    const std::string name = Tidy(part.substr(0, colon));
    const auto* const key = std::find_if(std::begin(kKeys), std::end(kKeys),
                                         [&](const Key& each) { return IsKey(name, each.name); });
    if (key != std::end(kKeys) && (id.*key->text).empty()) {
      id.*key->text = Tidy(part.substr(colon + 1));
    }
  }
  return id;
}

}  // namespace ZIOP
