// Datagrams that reach a search on the network.
//
// Input: any number of datagrams, each behind one byte that says where it comes from and two bytes
// of length, big-endian.
#include <arpa/inet.h>

#include <algorithm>

#include "fuzz/Fuzz.h"
#include "port_driver/SnmpMessage.h"
#include "port_driver/network_search/Inquiry.h"
#include "port_driver/network_search/NameResolver.h"

namespace {

using ZIOP::HostAddress;
using ZIOP::Inquiry;

HostAddress At(const char* address) {
  const auto soon = ZIOP::Deadline::After(std::chrono::milliseconds(1000));
  return ZIOP::ResolveSearchAddress(ZIOP::SearchAddress::Parse(address), soon).at(0);
}

// A host that is asked, one that answers a broadcast, others that nobody asked.
const HostAddress& SourceOf(std::uint8_t number) {
  static const HostAddress sources[] = {At("127.0.0.1"),      At("127.0.0.2"),
                                        At("[fe80::1%lo]"),   At("[fe80::2%lo]:1161"),
                                        At("127.0.0.3:1161"), At("192.0.2.1")};
  return sources[number % std::size(sources)];
}

// Ids that the seeds can hold: the first host's are 1 to 6.
int32_t last_id = 0;
int32_t NextId() {
  return ++last_id;
}

void TakeOne(Inquiry& inquiry, std::uint8_t source, const std::vector<char>& datagram) {
  const std::string_view bytes(datagram.data(), datagram.size());
  const std::size_t count = inquiry.Printers().size();
  inquiry.Take(SourceOf(source), bytes);
  const auto printers = inquiry.Printers();
  FUZZ_CHECK(printers.size() <= count + 1);
  for (const auto& printer : printers) {
    FUZZ_CHECK(printer.uri.rfind("socket://", 0) == 0 && !printer.address.empty());
  }
  // What is new was told by this datagram.
  FUZZ_CHECK(printers.size() == count ||
             std::any_of(printers.begin(), printers.end(), [&](const ZIOP::FoundPrinter& printer) {
               const std::string text = printer.deviceId + printer.model + printer.description;
               return bytes.find(text) != std::string_view::npos;
             }));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  last_id = 0;
  static const std::vector<ZIOP::Network> local = {{htonl(0x7F000000U), htonl(0xFF000000U)}};
  static const std::pair<const char*, HostAddress> asked[] = {{"host", At("127.0.0.1")},
                                                              {"broadcast", At("127.255.255.255")},
                                                              {"link", At("[fe80::1%lo]")}};
  Inquiry inquiry(NextId, local);
  for (const auto& [entry, address] : asked) inquiry.Ask(address, entry);
  while (size >= 3) {
    const std::size_t length = std::min<std::size_t>(data[1] * 256U + data[2], size - 3);
    // On the heap in its exact size, so that the sanitizer sees its end.
    TakeOne(inquiry, data[0], {data + 3, data + 3 + length});
    data += 3 + length;
    size -= 3 + length;
    while (const auto request = inquiry.Next()) {
      FUZZ_CHECK(ZIOP::ReadSnmpMessage(request->message));
    }
    inquiry.StartTry();
  }
  return 0;
}
