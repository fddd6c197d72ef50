// What a search on the network has asked of whom, and what came of it.
#ifndef PORT_DRIVER_NETWORK_SEARCH_INQUIRY_H_
#define PORT_DRIVER_NETWORK_SEARCH_INQUIRY_H_

#include <array>
#include <bitset>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "port_driver/FoundPrinter.h"
#include "port_driver/HostAddress.h"
#include "port_driver/network_search/Objects.h"
#include "port_driver/network_search/Respondents.h"

namespace ZIOP {

// Printers that a search takes from broadcasts; the answers of further ones are passed over.
constexpr std::size_t kMaximumFromBroadcasts = 1000;

// Addresses that a search asks; further ones are left out.
constexpr std::size_t kMaximumAsked = 4096;

// A request to be sent.
struct SearchRequest {
  HostAddress to;
  std::string message;
  std::size_t object;  // its place in kSearchedObjects
};

class Inquiry {
 public:
  // newId gives an unpredictable number from 1 to 0x7FFFFFFF; local is what LocalNetworks gives.
  Inquiry(int32_t (*newId)(), std::vector<Network> local)
      : newId_(newId), local_(std::move(local)) {}

  // Takes up an address, with its port, unless it has been. entry is what the list calls it. False
  // when kMaximumAsked are taken up already.
  bool Ask(const HostAddress& address, const std::string& entry);

  // Puts everything that has no answer yet into the queue, unless the queue is not empty.
  void StartTry();

  // The next request of the queue. Null when that is empty. A host that has just been taken up or
  // heard of is put into the queue at once.
  std::optional<SearchRequest> Next();

  // Takes a datagram from the network. It counts as an answer, the result is true, if it comes from
  // where the request with its id went to, is about the object that was asked for, and is the
  // first.
  bool Take(const HostAddress& from, std::string_view datagram);

  bool isQueueEmpty() const { return queue_.empty(); }

  // Whether no further answer can come: everybody who was asked is one host and has answered
  // everything.
  bool isComplete() const;

  // Who gave a text.
  std::vector<FoundPrinter> Printers() const;

 private:
  struct Host {
    HostAddress address;
    Respondents respondents;
    std::string entry;
    std::array<int32_t, kSearchedObjectCount> ids;
    std::bitset<kSearchedObjectCount> answered;
    FoundPrinter printer;
  };
  struct Question {
    std::size_t host;
    std::size_t object;
  };

  void Add(const HostAddress& address, const Respondents& respondents, const std::string& entry);
  Host* Respondent(const Question& question, const HostAddress& from);
  bool IsOpen(const Question& question) const;
  void QueueUp(std::size_t host);
  void Record(Host& host, std::size_t object, const std::string& text);

  int32_t (*const newId_)();
  const std::vector<Network> local_;
  std::deque<Host> hosts_;  // stay where they are when others are added
  std::unordered_map<std::string, std::size_t> places_;  // in hosts_, by address
  std::size_t fromBroadcasts_ = 0;
  std::unordered_map<int32_t, Question> asked_;  // by request-id
  std::deque<Question> queue_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORK_SEARCH_INQUIRY_H_
