// Answers of print servers, and the device URIs in them.
//
// Input: the answer's IPP message.
#include "fuzz/Fuzz.h"
#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"
#include "port_driver/queue_search/QueueMessage.h"
#include "port_driver/queue_search/QueuePrinter.h"

namespace {

std::vector<ZIOP::FoundPrinter> Devices() {
  std::vector<ZIOP::FoundPrinter> devices(2);
  devices[0].uri = "file:///dev/usb/lp0";
  devices[0].deviceId = "MFG:M;MDL:M O;SN:1;";
  devices[1].uri = "file:///dev/usb/lp1";
  devices[1].deviceId = "MFG:M;MDL:O;SN:2;";
  return devices;
}

void Check(const ZIOP::Queue& queue) {
  static const std::vector<ZIOP::FoundPrinter> devices = Devices();
  try {
    const ZIOP::FoundPrinter printer = ZIOP::PrinterOfQueue(queue, devices);
    FUZZ_CHECK(ZIOP::DeviceURI::Parse(printer.uri).isLocal() == ZIOP::IsOnUsb(queue));
    FUZZ_CHECK(printer.name == queue.name);
  } catch (const ZIOP::DriverError& error) {
    FUZZ_CHECK(error.code() == ZIOP::DriverCode::kUnsupported);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FUZZ_CHECK(ippLength(ZIOP::MakeQueueRequest().get()) != 0);
  const std::vector<char> answer(data, data + size);  // no zero behind it
  std::vector<ZIOP::Queue> queues;
  try {
    queues = ZIOP::ReadQueueAnswer({answer.data(), answer.size()});
  } catch (const ZIOP::DriverError& error) {
    FUZZ_CHECK(error.code() == ZIOP::DriverCode::kPrinter);
  }
  for (const ZIOP::Queue& queue : queues) Check(queue);
  return 0;
}
