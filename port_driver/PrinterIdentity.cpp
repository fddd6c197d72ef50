// Places, serial numbers and UUIDs in the form in which they are compared.
#include "port_driver/PrinterIdentity.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "port_driver/PlainText.h"

namespace ZIOP {
namespace {

constexpr std::size_t kLeastSerialLength = 5;
constexpr std::size_t kGreatestSerialLength = 64;
constexpr std::size_t kLeastVariety = 3;
constexpr std::size_t kUUIDDigits = 32;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsVaried(std::string_view text) {
  return std::set<char>(text.begin(), text.end()).size() >= kLeastVariety;
}

// "12345678", "34567890": what a keyboard gives.
bool IsRow(std::string_view text) {
  const auto breaks = [](char left, char right) {
    return !IsDigit(left) || right != (left == '9' ? '0' : left + 1);
  };
  return std::adjacent_find(text.begin(), text.end(), breaks) == text.end();
}

std::string ReliableSerial(std::string_view text) {
  std::string serial = Tidy(text);
  const bool reliable =
      serial.size() >= kLeastSerialLength && serial.size() <= kGreatestSerialLength &&
      std::all_of(serial.begin(), serial.end(), [](char c) { return c >= 0x20 && c < 0x7F; }) &&
      std::any_of(serial.begin(), serial.end(), IsDigit) && IsVaried(serial) && !IsRow(serial);
  return reliable ? serial : std::string();
}

std::string ReliableUUID(std::string_view text) {
  std::string digits = LowerCase(text);
  constexpr std::string_view kScheme = "urn:uuid:";
  if (digits.compare(0, kScheme.size(), kScheme) == 0) {
    digits.erase(0, kScheme.size());
  }
  digits.erase(std::remove_if(digits.begin(), digits.end(),
                              [](char c) {
                                return std::string_view("{}- ").find(c) != std::string_view::npos;
                              }),
               digits.end());
  const bool reliable = digits.size() == kUUIDDigits && IsVaried(digits) &&
                        digits.find_first_not_of("0123456789abcdef") == std::string::npos;
  return reliable ? digits : std::string();
}

// The address in its one form; empty for what is none or is incomplete without its zone.
std::string Canonical(const std::string& address) {
  char text[INET6_ADDRSTRLEN];
  in_addr address4;
  if (::inet_pton(AF_INET, address.c_str(), &address4) == 1) {
    return ::inet_ntop(AF_INET, &address4, text, sizeof text);
  }
  const std::size_t zone = std::min(address.find('%'), address.size());
  in6_addr address6;
  if (::inet_pton(AF_INET6, address.substr(0, zone).c_str(), &address6) != 1) {
    return {};
  }
  if (IN6_IS_ADDR_V4MAPPED(&address6)) {
    return ::inet_ntop(AF_INET, &address6.s6_addr[12], text, sizeof text);
  }
  const bool needs_zone = IN6_IS_ADDR_LINKLOCAL(&address6);
  if (needs_zone && zone == address.size()) {
    return {};
  }
  return ::inet_ntop(AF_INET6, &address6, text, sizeof text) +
         (needs_zone ? address.substr(zone) : std::string());
}

// Adds the places of a printer on host.
void AddPlaces(const std::string& host, const DeviceURI& uri, std::vector<std::string>& places) {
  const DeviceURI usual;
  const bool is_address6 = host.find(':') != std::string::npos;
  if (uri.rawPort != usual.rawPort) {
    places.push_back((is_address6 ? "[" + host + "]" : host) + ":" + std::to_string(uri.rawPort));
  }
  if (uri.snmpPort != usual.snmpPort) {
    places.push_back(host + "?snmp=" + std::to_string(uri.snmpPort));
  }
  if (uri.rawPort == usual.rawPort && uri.snmpPort == usual.snmpPort) {
    places.push_back(host);
  }
}

// Places of a network printer, the URI's own first.
std::vector<std::string> PlacesOf(const DeviceURI& uri, const HostAddresses& hosts,
                                  std::string_view address) {
  std::vector<std::string> addresses = {uri.host, std::string(address)};
  if (const auto known = hosts.find(uri.host); known != hosts.end()) {
    addresses.insert(addresses.end(), known->second.begin(), known->second.end());
  }
  std::vector<std::string> places;
  for (const std::string& each : addresses) {
    const std::string canonical = Canonical(each);
    if (!canonical.empty()) {
      AddPlaces(canonical, uri, places);
    }
  }
  if (places.empty()) {
    AddPlaces(LowerCase(uri.host), uri, places);
  }
  return places;
}

}  // namespace

PrinterIdentity PrinterIdentity::Of(const DeviceURI& uri, const HostAddresses& hosts,
                                    std::string_view address, std::string_view serial,
                                    std::string_view uuid) {
  PrinterIdentity identity;
  identity.places =
      uri.isLocal() ? std::vector<std::string>{uri.path} : PlacesOf(uri, hosts, address);
  identity.serial = ReliableSerial(serial);
  identity.uuid = ReliableUUID(uuid);
  identity.tag = !identity.serial.empty() ? identity.serial
                 : !identity.uuid.empty() ? identity.uuid
                                          : identity.places.front();
  identity.serial = LowerCase(identity.serial);
  return identity;
}

}  // namespace ZIOP
