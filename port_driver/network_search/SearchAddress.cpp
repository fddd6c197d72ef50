// Reader of addresses to ask.
#include "port_driver/network_search/SearchAddress.h"

#include <netdb.h>

#include <algorithm>
#include <charconv>

#include "port_driver/DriverError.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

constexpr std::size_t kMaximumHostLength = 255;

[[noreturn]] void Refuse(const std::string& text) {
  throw DriverError(
      DriverCode::kParameter,
      "no address to ask: \"" + Ravik::Printable(text.substr(0, kMaximumHostLength)) + "\"");
}

bool IsHostByte(char c) {
  return static_cast<unsigned char>(c) > 0x20 && c != 0x7F && c != '[' && c != ']';
}

}  // namespace

SearchAddress SearchAddress::Parse(const std::string& text) {
  SearchAddress address;
  address.entry = text;
  const bool bracketed = !text.empty() && text.front() == '[';
  std::size_t end = bracketed ? text.find(']') : text.find(':');
  if (!bracketed && end != text.rfind(':')) {
    end = std::string::npos;  // an IPv6 address as it stands
  }
  if (bracketed && end == std::string::npos) {
    Refuse(text);
  }
  address.host = bracketed ? text.substr(1, end - 1) : text.substr(0, end);
  if (address.host.empty() || address.host.size() > kMaximumHostLength ||
      !std::all_of(address.host.begin(), address.host.end(), IsHostByte)) {
    Refuse(text);
  }
  const std::string rest = end == std::string::npos ? "" : text.substr(end + (bracketed ? 1 : 0));
  if (!rest.empty()) {
    const char* const last = rest.data() + rest.size();
    const auto [stop, error] = std::from_chars(rest.data() + 1, last, address.port);
    if (rest.front() != ':' || error != std::errc() || stop != last || address.port == 0) {
      Refuse(text);
    }
  }
  return address;
}

bool SearchAddress::isNumeric() const {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST;
  addrinfo* list = nullptr;
  if (::getaddrinfo(host.c_str(), nullptr, &hints, &list) != 0) {
    return false;
  }
  ::freeaddrinfo(list);
  return true;
}

}  // namespace ZIOP
