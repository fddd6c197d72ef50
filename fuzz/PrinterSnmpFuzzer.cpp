// Datagrams that reach the virtual printer.
//
// Input: the datagram; its last byte selects the model.
#include <sstream>

#include "fuzz/Fuzz.h"
#include "port_driver/SnmpMessage.h"
#include "virtual_printer/Printer.h"
#include "virtual_printer/SnmpAgent.h"

namespace {

using VirtualPrinter::Bytes;

std::optional<ZIOP::SnmpMessage> AsDriverReads(const Bytes& bytes) {
  return ZIOP::ReadSnmpMessage({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

// The port driver takes every answer for the one to its request.
void Check(const Bytes& request, const Bytes& answer) {
  constexpr std::size_t kLongestAnswer = 16384;
  const auto asked = AsDriverReads(request);
  const auto answered = AsDriverReads(answer);
  FUZZ_CHECK(asked && answered);
  FUZZ_CHECK(ZIOP::AnswersRequest(*answered, *asked, false));
  FUZZ_CHECK(answered->errorStatus >= 0 && answered->errorStatus <= 2);
  FUZZ_CHECK(answer.size() <= kLongestAnswer || answered->errorStatus == 1);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const auto models = VirtualPrinter::DeviceNames();
  const std::string model(models[input.ConsumeIntegralInRange<std::size_t>(0, models.size() - 1)]);
  const Bytes datagram = input.ConsumeRemainingBytes<std::uint8_t>();
  VirtualPrinter::Faults faults;
  std::ostringstream text;
  VirtualPrinter::Trace trace(&text);
  const auto& family = *VirtualPrinter::FindFamily(model);
  VirtualPrinter::Printer printer({model, "VP00000001", "1.00", ""},
                                  VirtualPrinter::FactoryRecords(family), faults, trace);
  const auto answer = VirtualPrinter::SnmpAgent(printer, faults, trace).Answer(datagram);
  if (answer) Check(datagram, *answer);
  return 0;
}
