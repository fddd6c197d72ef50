// Strict reader of device URIs.
#include "port_driver/DeviceURI.h"

#include <arpa/inet.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "port_driver/DriverError.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

constexpr std::size_t kMaximumHostLength = 255;

[[noreturn]] void Refuse(const std::string& reason) {
  throw DriverError(DriverCode::kParameter, "device URI: " + reason);
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Whether byte may stand in a decoded host name or zone. Bytes of UTF-8 may: names found by
// multicast DNS hold them.
bool IsNameByte(char c) {
  return IsLetter(c) || IsDigit(c) || c == '-' || c == '.' || c == '_' || c == '~' ||
         static_cast<unsigned char>(c) >= 0x80;
}

int HexDigit(char c) {
  if (IsDigit(c)) {
    return c - '0';
  }
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string PercentDecode(std::string_view text) {
  if (text.find('%') == std::string_view::npos) {
    return std::string(text);
  }
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded += text[i];
      continue;
    }
    const int high = text.size() - i > 2 ? HexDigit(text[i + 1]) : -1;
    const int low = text.size() - i > 2 ? HexDigit(text[i + 2]) : -1;
    if (high < 0 || low < 0) {
      Refuse("\"%\" without two hexadecimal digits");
    }
    decoded += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return decoded;
}

// Decimal digits alone, minimum to maximum. name is for the message.
int ParseNumber(std::string_view name, std::string_view text, int minimum, int maximum) {
  int number = 0;
  bool valid = !text.empty() && text.size() <= 9;
  for (const char c : text) {
    valid = valid && IsDigit(c);
    number = valid ? number * 10 + (c - '0') : 0;
  }
  if (!valid || number < minimum || number > maximum) {
    Refuse(std::string(name) + " is no number from " + std::to_string(minimum) + " to " +
           std::to_string(maximum));
  }
  return number;
}

uint16_t ParsePort(std::string_view name, std::string_view text) {
  return static_cast<uint16_t>(ParseNumber(name, text, 1, 65535));
}

enum class Target { kNetwork, kAny };

struct Option {
  std::string_view name;
  Target target;
  void (*set)(DeviceURI& uri, const std::string& value);
};

constexpr Option kOptions[] = {
    {"snmp", Target::kNetwork,
     [](DeviceURI& uri, const std::string& value) { uri.snmpPort = ParsePort("snmp", value); }},
    {"timeout", Target::kAny,
     [](DeviceURI& uri, const std::string& value) {
       uri.timeout = std::chrono::milliseconds(ParseNumber("timeout", value, 1, 600000));
     }},
    {"retries", Target::kNetwork,
     [](DeviceURI& uri, const std::string& value) {
       uri.retries = ParseNumber("retries", value, 0, 100);
     }},
    {"match", Target::kNetwork,
     [](DeviceURI& uri, const std::string& value) {
       if (value != "id") {
         Refuse("match takes \"id\" alone");
       }
       uri.matchesIdOnly = true;
     }},
};

// Cuts text up to the first separator off its front; the separator goes too.
std::string_view TakeUntil(std::string_view& text, char separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view head = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return head;
}

void ParseOptions(std::string_view query, DeviceURI& uri) {
  bool seen[std::size(kOptions)] = {};
  // A trailing "&" leaves an empty option, which is refused like every unknown one.
  for (bool more = true; more;) {
    more = query.find('&') != std::string_view::npos;
    std::string_view option = TakeUntil(query, '&');
    const std::string name = PercentDecode(TakeUntil(option, '='));
    const auto row =
        std::find_if(std::begin(kOptions), std::end(kOptions), [&](const Option& each) {
          return each.name == name && (!uri.isLocal() || each.target == Target::kAny);
        });
    if (row == std::end(kOptions)) {
      Refuse("unknown option \"" + Ravik::Printable(name) + "\"");
    }
    if (std::exchange(seen[row - std::begin(kOptions)], true)) {
      Refuse("option \"" + name + "\" given twice");
    }
    row->set(uri, PercentDecode(option));
  }
}

void CheckAddress6(const std::string& host) {
  const std::size_t zone = host.find('%');
  in6_addr address;
  if (host.find('\0') != std::string::npos ||  // inet_pton would take what is before it
      inet_pton(AF_INET6, host.substr(0, zone).c_str(), &address) != 1) {
    Refuse("no IPv6 address between the brackets");
  }
  if (zone != std::string::npos &&
      (zone + 1 == host.size() ||
       !std::all_of(host.begin() + static_cast<long>(zone) + 1, host.end(), IsNameByte))) {
    Refuse("unusable zone of the IPv6 address");
  }
}

void CheckName(const std::string& host) {
  if (host.empty() || host.size() > kMaximumHostLength) {
    Refuse(host.empty() ? "no host" : "host too long");
  }
  if (!std::all_of(host.begin(), host.end(), IsNameByte)) {
    Refuse("host holds a character that no host name has");
  }
}

// HOST[:PORT]
void ParseAuthority(std::string_view authority, DeviceURI& uri) {
  if (!authority.empty() && authority.front() == '[') {
    const std::size_t end = authority.find(']');
    if (end == std::string_view::npos) {
      Refuse("\"[\" without \"]\"");
    }
    uri.host = PercentDecode(authority.substr(1, end - 1));
    CheckAddress6(uri.host);
    authority.remove_prefix(end + 1);
  } else {
    const std::size_t end = std::min(authority.find(':'), authority.size());
    uri.host = PercentDecode(authority.substr(0, end));
    CheckName(uri.host);
    authority.remove_prefix(end);
  }
  if (authority.empty()) {
    return;
  }
  if (authority.front() != ':') {
    Refuse("text between host and port");
  }
  uri.rawPort = ParsePort("port", authority.substr(1));
}

// HOST[:PORT][/]
void ParseSocket(std::string_view place, DeviceURI& uri) {
  if (!place.empty() && place.back() == '/') {
    place.remove_suffix(1);
  }
  ParseAuthority(place, uri);
}

// An absolute path: no host stands before it.
void ParseFile(std::string_view place, DeviceURI& uri) {
  if (place.empty() || place.front() != '/') {
    Refuse("no absolute path behind \"file://\"");
  }
  uri.path = PercentDecode(place);
  if (uri.path.find('\0') != std::string::npos || place.find('#') != std::string_view::npos) {
    Refuse("path holds a character that no device's path has");
  }
  uri.retries = 0;
}

struct Scheme {
  std::string_view name;
  void (*parse)(std::string_view place, DeviceURI& uri);
};

constexpr Scheme kSchemes[] = {{"socket", ParseSocket}, {"file", ParseFile}};

void CheckCharacters(std::string_view text) {
  if (text.size() > kMaximumURILength) {
    Refuse("longer than " + std::to_string(kMaximumURILength) + " bytes");
  }
  if (!std::all_of(text.begin(), text.end(), [](char c) { return c > 0x20 && c < 0x7F; })) {
    Refuse("holds a byte that a URI has to percent-encode");
  }
}

// Cuts "SCHEME://" off the front of text.
const Scheme& TakeScheme(std::string_view& text) {
  const std::size_t end = text.find("://");
  if (end == std::string_view::npos || end == 0) {
    Refuse("no scheme");
  }
  std::string name(text.substr(0, end));
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
  const auto* const row = std::find_if(std::begin(kSchemes), std::end(kSchemes),
                                       [&](const Scheme& each) { return each.name == name; });
  if (row == std::end(kSchemes)) {
    throw DriverError(DriverCode::kUnsupported,
                      "device URI: no port for scheme \"" + Ravik::Printable(name) + "\"");
  }
  text.remove_prefix(end + 3);
  return *row;
}

}  // namespace

DeviceURI DeviceURI::Parse(std::string_view text) {
  CheckCharacters(text);
  const Scheme& scheme = TakeScheme(text);
  DeviceURI uri;
  const std::size_t query = text.find('?');
  scheme.parse(text.substr(0, query), uri);
  if (query != std::string_view::npos) {
    ParseOptions(text.substr(query + 1), uri);
  }
  return uri;
}

}  // namespace ZIOP
