// Device URIs of queues, and what the driver opens for them.
#include "port_driver/queue_search/QueuePrinter.h"

#include <cups/http.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "port_driver/DeviceId.h"
#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

constexpr std::string_view kUsb = "usb";
constexpr std::string_view kSocket = "socket";
constexpr std::string_view kNetworkSchemes[] = {kSocket, "ipp", "ipps", "lpd"};
constexpr int kUsualPort = 9100;

[[noreturn]] void Refuse(const std::string& reason) {
  throw DriverError(DriverCode::kUnsupported, reason);
}

// A device URI in parts, decoded but for its options.
struct Location {
  std::string scheme;
  std::string host;
  int port = 0;  // the scheme's own where none is given
  std::string path;
  std::string_view options;  // of the text that was split
};

Location Split(const std::string& uri) {
  const std::size_t query = std::min(uri.find('?'), uri.size());
  char scheme[HTTP_MAX_URI];
  char user[HTTP_MAX_URI];
  char host[HTTP_MAX_URI];
  char path[HTTP_MAX_URI];
  int port = 0;
  if (uri.find("%00") != std::string::npos ||  // would cut the text that it is decoded to
      httpSeparateURI(HTTP_URI_CODING_MOST, uri.substr(0, query).c_str(), scheme, sizeof scheme,
                      user, sizeof user, host, sizeof host, &port, path,
                      sizeof path) < HTTP_URI_STATUS_OK) {
    Refuse("its device URI cannot be read");
  }
  const std::string_view options = std::string_view(uri).substr(std::min(query + 1, uri.size()));
  return {scheme, host, port, path, options};
}

// Cuts one option off the front.
std::string_view TakeOption(std::string_view& options) {
  const std::size_t end = std::min(options.find('&'), options.size());
  const std::string_view option = options.substr(0, end);
  options.remove_prefix(std::min(end + 1, options.size()));
  return option;
}

// The decoded value of an option; empty if it is not there.
std::string ValueOf(std::string_view options, const std::string& name) {
  while (!options.empty()) {
    const std::string_view option = TakeOption(options);
    if (option.substr(0, name.size() + 1) == name + "=") {
      return Split("x://x/" + std::string(option.substr(name.size() + 1))).path.substr(1);
    }
  }
  return {};
}

// host as a device URI takes it (RFC 6874 for an address with a zone).
std::string EncodedHost(const std::string& host) {
  const bool is_address6 = host.find(':') != std::string::npos;
  std::string encoded;
  for (const char c : host) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    if (byte > 0x20 && byte < 0x7F && std::string_view("%/?#[]@").find(c) == std::string::npos) {
      encoded += c;
    } else {
      encoded += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return is_address6 ? '[' + encoded + ']' : encoded;
}

bool CanBeParsed(const std::string& uri) {
  try {
    DeviceURI::Parse(uri);
    return true;
  } catch (const DriverError&) {
    return false;
  }
}

// The printing system has options of its own, and one of the name snmp that takes "false".
std::string NetworkURI(const Location& location) {
  std::string uri = "socket://" + EncodedHost(location.host);
  if (location.scheme == kSocket && location.port != kUsualPort) {
    uri += ':' + std::to_string(location.port);
  }
  if (!CanBeParsed(uri)) {
    Refuse("the host in its device URI cannot be used");
  }
  std::string_view options = location.scheme == kSocket ? location.options : std::string_view();
  char separator = '?';
  while (!options.empty()) {
    const std::string longer = uri + separator + std::string(TakeOption(options));
    if (CanBeParsed(longer)) {
      uri = longer;
      separator = '&';
    }
  }
  return uri;
}

void CheckIsDevice(const Location& location) {
  // A service by multicast DNS is no host, and a queue of another server is not the printer.
  const bool is_service = location.host.find("._tcp.") != std::string::npos;
  const bool is_queue =
      location.path.rfind("/printers/", 0) == 0 || location.path.rfind("/classes/", 0) == 0;
  if (is_service || is_queue) {
    Refuse(is_service ? "its device is a service without a host" : "it is a queue of another host");
  }
}

// Letters and digits alone, in lower case: the spelling of models differs in blanks and dashes.
std::string Bare(const std::string& text) {
  std::string bare;
  for (const char c : text) {
    const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    if ((lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9')) {
      bare += lower;
    }
  }
  return bare;
}

// A model as the printing system gives it in a URI: without the maker's name in front.
std::string BareModel(const std::string& maker, const std::string& model) {
  const std::string bare_maker = Bare(maker);
  const std::string bare = Bare(model);
  return bare.rfind(bare_maker, 0) == 0 ? bare.substr(bare_maker.size()) : bare;
}

FoundPrinter UsbDevice(const Location& location, const std::vector<FoundPrinter>& devices) {
  const std::string serial = ValueOf(location.options, "serial");
  const std::string model = BareModel(location.host, location.path);
  const auto is_it = [&](const FoundPrinter& device) {
    const DeviceId id = DeviceId::Parse(device.deviceId);
    return BareModel(id.manufacturer, id.model) == model &&
           (serial.empty() || id.serial.empty() || serial == id.serial);
  };
  const auto found = std::find_if(devices.begin(), devices.end(), is_it);
  if (found == devices.end()) {
    Refuse("its device has no node");
  }
  if (std::find_if(found + 1, devices.end(), is_it) != devices.end()) {
    Refuse("its device cannot be told from another of the same model");
  }
  FoundPrinter printer = *found;
  printer.serial = serial;
  return printer;
}

}  // namespace

FoundPrinter PrinterOfQueue(const Queue& queue, const std::vector<FoundPrinter>& devices) {
  const Location location = Split(queue.deviceUri);
  FoundPrinter printer;
  if (location.scheme == kUsb) {
    printer = UsbDevice(location, devices);
  } else if (std::count(std::begin(kNetworkSchemes), std::end(kNetworkSchemes), location.scheme) !=
             0) {
    CheckIsDevice(location);
    printer.uri = NetworkURI(location);
    printer.serial = ValueOf(location.options, "serial");
    printer.uuid = ValueOf(location.options, "uuid");
  } else {
    Refuse("no port for scheme \"" + Ravik::Printable(location.scheme) + "\"");
  }
  printer.name = queue.name;
  printer.model = queue.model;
  printer.description = queue.info;
  return printer;
}

bool IsOnUsb(const Queue& queue) {
  try {
    return Split(queue.deviceUri).scheme == kUsb;
  } catch (const DriverError&) {
    return false;
  }
}

}  // namespace ZIOP
