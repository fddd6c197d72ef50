// Questions and answers of a search on the network.
#include "port_driver/network_search/Inquiry.h"

#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>

#include <algorithm>

#include "port_driver/network_search/SnmpCodec.h"

namespace ZIOP {
namespace {

constexpr uint16_t kUsualPort = 161;

// The address without its port and zone, and both of them.
struct Place {
  std::string address;
  std::string zone;
  uint16_t port;
};

Place PlaceOf(const HostAddress& address) {
  char host[NI_MAXHOST] = "";
  char port[NI_MAXSERV] = "0";
  ::getnameinfo(address.get(), address.length, host, sizeof host, port, sizeof port,
                NI_NUMERICHOST | NI_NUMERICSERV);
  const std::string text = host;
  const std::size_t zone = std::min(text.find('%'), text.size());
  return {text.substr(0, zone), text.substr(std::min(zone + 1, text.size())),
          static_cast<uint16_t>(std::stoul(port))};
}

// A zone in a URI (RFC 6874). Names of interfaces hold any byte but "/" and blanks.
std::string EncodedZone(const std::string& zone) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = zone.empty() ? "" : "%25";
  for (const char c : zone) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain = byte < 0x80 && (std::isalnum(byte) != 0 || c == '-' || c == '.');
    text +=
        isPlain ? std::string(1, c) : std::string{'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
  }
  return text;
}

// The device URI of the printer there; its raw port is the usual one.
std::string UriOf(const Place& place) {
  const bool isBracketed = place.address.find(':') != std::string::npos;
  const std::string host =
      isBracketed ? "[" + place.address + EncodedZone(place.zone) + "]" : place.address;
  return "socket://" + host +
         (place.port == kUsualPort ? "" : "?snmp=" + std::to_string(place.port));
}

// Tells addresses apart as IsSameAddress does.
std::string KeyOf(const HostAddress& address) {
  const Place place = PlaceOf(address);
  return place.address + "%" + place.zone + ":" + std::to_string(place.port);
}

}  // namespace

bool Inquiry::Ask(const HostAddress& address, const std::string& entry) {
  if (hosts_.size() >= kMaximumAsked + fromBroadcasts_) {
    return false;
  }
  if (places_.count(KeyOf(address)) == 0) {
    Add(address, Respondents(address, local_), entry);
  }
  return true;
}

void Inquiry::Add(const HostAddress& address, const Respondents& respondents,
                  const std::string& entry) {
  const std::size_t place = hosts_.size();
  places_.emplace(KeyOf(address), place);
  Host& host = hosts_.emplace_back(Host{address, respondents, entry, {}, {}, {}});
  for (std::size_t object = 0; object < kSearchedObjectCount; ++object) {
    do {
      host.ids[object] = newId_();
    } while (!asked_.emplace(host.ids[object], Question{place, object}).second);
  }
  QueueUp(place);
}

void Inquiry::QueueUp(std::size_t host) {
  for (std::size_t object = 0; object < kSearchedObjectCount; ++object) {
    queue_.push_back({host, object});
  }
}

void Inquiry::StartTry() {
  if (!isQueueEmpty()) {
    return;
  }
  // Object by object, so that no host gets its requests in one burst.
  for (std::size_t object = 0; object < kSearchedObjectCount; ++object) {
    for (std::size_t host = 0; host < hosts_.size(); ++host) {
      if (IsOpen({host, object})) {
        queue_.push_back({host, object});
      }
    }
  }
}

bool Inquiry::IsOpen(const Question& question) const {
  const Host& host = hosts_[question.host];
  return !host.answered[question.object] &&
         (!kSearchedObjects[question.object].isDetail || host.answered.any());
}

std::optional<SearchRequest> Inquiry::Next() {
  while (!queue_.empty()) {
    const Question question = queue_.front();
    queue_.pop_front();
    if (IsOpen(question)) {
      const Host& host = hosts_[question.host];
      return SearchRequest{
          host.address,
          EncodeSearchRequest(host.ids[question.object], kSearchedObjects[question.object]),
          question.object};
    }
  }
  return std::nullopt;
}

Inquiry::Host* Inquiry::Respondent(const Question& question, const HostAddress& from) {
  Host& asked = hosts_[question.host];
  if (!asked.respondents.Include(from)) {
    return nullptr;
  }
  if (asked.respondents.isOneHost()) {
    return &asked;
  }
  const auto known = places_.find(KeyOf(from));
  if (known != places_.end()) {
    Host& host = hosts_[known->second];
    return host.respondents.isOneHost() ? &host : nullptr;
  }
  const Respondents itself(from, local_);
  if (fromBroadcasts_ >= kMaximumFromBroadcasts || !itself.isOneHost()) {
    return nullptr;
  }
  ++fromBroadcasts_;
  Add(from, itself, asked.entry);
  return &hosts_.back();
}

bool Inquiry::Take(const HostAddress& from, std::string_view datagram) {
  const auto answer = DecodeSearchAnswer(datagram);
  if (!answer) {
    return false;
  }
  const auto asked = asked_.find(answer->requestId);
  if (asked == asked_.end() || asked->second.object != answer->object) {
    return false;
  }
  Host* const host = Respondent(Question(asked->second), from);
  if (host == nullptr || host->answered[answer->object]) {
    return false;
  }
  Record(*host, answer->object, answer->text);
  return true;
}

void Inquiry::Record(Host& host, std::size_t object, const std::string& text) {
  if (host.answered.none()) {
    QueueUp(places_.at(KeyOf(host.address)));
  }
  host.answered.set(object);
  std::string& known = host.printer.*kSearchedObjects[object].text;
  if (text.size() > known.size()) {
    known = text;
  }
}

bool Inquiry::isComplete() const {
  return std::all_of(hosts_.begin(), hosts_.end(), [](const Host& host) {
    return host.respondents.isOneHost() && host.answered.all();
  });
}

std::vector<FoundPrinter> Inquiry::Printers() const {
  std::vector<FoundPrinter> printers;
  for (const Host& host : hosts_) {
    FoundPrinter printer = host.printer;
    if (printer.deviceId.empty() && printer.model.empty() && printer.description.empty()) {
      continue;
    }
    const Place place = PlaceOf(host.address);
    printer.address = place.address;
    printer.uri = UriOf(place);
    printer.asked = host.entry;
    printers.push_back(std::move(printer));
  }
  return printers;
}

}  // namespace ZIOP
