// Datagrams that reach the port driver, and whether they answer its requests.
//
// Input: the datagram.
#include "fuzz/Fuzz.h"
#include "port_driver/SnmpMessage.h"
#include "virtual_printer/SnmpMessage.h"

namespace {

using ZIOP::SnmpMessage;

bool LiesIn(std::string_view part, std::string_view whole) {
  return part.empty() ||
         (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

// Requests that the virtual printer takes are messages, and read the same.
void CompareReaders(const VirtualPrinter::Bytes& datagram, const std::optional<SnmpMessage>& read) {
  const auto request = VirtualPrinter::ParseSnmpRequest(datagram);
  if (!request) return;
  FUZZ_CHECK(read && read->version == 0 && read->pduType == ZIOP::kSnmpGetRequest);
  FUZZ_CHECK(read->requestId == request->request_id);
  FUZZ_CHECK(read->name.empty() == request->objects.empty());
  VirtualPrinter::SnmpResponse response{request->community, request->request_id, {}, 0, {}};
  for (const auto& object : request->objects) {
    response.variables.push_back({object, VirtualPrinter::BerEncodeOctets({})});
  }
  const auto bytes = VirtualPrinter::EncodeSnmpResponse(response);
  const auto answer =
      ZIOP::ReadSnmpMessage({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  FUZZ_CHECK(answer && ZIOP::AnswersRequest(*answer, *read, false));
}

// Whatever else it holds, a message answers the status request only as its response.
void CheckMatching(const SnmpMessage& message) {
  const auto id = static_cast<int32_t>(static_cast<std::uint32_t>(message.requestId) & 0x7FFFFFFF);
  const std::string bytes = ZIOP::MakeStatusRequest(id);
  const auto asked = ZIOP::ReadSnmpMessage(bytes);
  FUZZ_CHECK(asked && asked->requestId == id && asked->valueTag == ZIOP::kSnmpNull);
  FUZZ_CHECK(!ZIOP::AnswersRequest(*asked, *asked, true));
  const bool matches_id = ZIOP::AnswersRequest(message, *asked, true);
  const bool matches = ZIOP::AnswersRequest(message, *asked, false);
  FUZZ_CHECK(matches_id == (message.pduType == ZIOP::kSnmpGetResponse && message.version == 0 &&
                            message.requestId == id));
  FUZZ_CHECK(matches == (matches_id && message.name == asked->name));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // On the heap in their exact size, so that the sanitizer sees their end.
  const VirtualPrinter::Bytes datagram(data, data + size);
  const std::string_view bytes(reinterpret_cast<const char*>(datagram.data()), datagram.size());
  const auto message = ZIOP::ReadSnmpMessage(bytes);
  CompareReaders(datagram, message);
  if (!message) return 0;
  FUZZ_CHECK(LiesIn(message->name, bytes) && LiesIn(message->value, bytes));
  CheckMatching(*message);
  return 0;
}
