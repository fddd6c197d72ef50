// Status texts of printers: split by the transport, and read by every reader of the status reply.
//
// Input: the status text.
#include <algorithm>
#include <iterator>
#include <optional>

#include "GantryCore/IPrinterLibrary.h"
#include "fuzz/Fuzz.h"
#include "printer_control/StatusReply.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace {

using Bytes = std::vector<unsigned char>;

// The field area of a status text that filled up its buffer, found by other means than the worker.
std::optional<Bytes> FieldArea(const std::string& text) {
  const std::size_t separator = text.substr(0, text.find('\0')).find("\r\n");
  if (separator == std::string::npos) return std::nullopt;
  const Bytes rest(text.begin() + static_cast<std::ptrdiff_t>(separator) + 2, text.end());
  if (rest.size() < 2) return Bytes();
  const std::size_t length = rest[0] + std::size_t{rest[1]} * 256;
  return Bytes(rest.begin() + 2,
               rest.begin() + 2 + static_cast<std::ptrdiff_t>(std::min(length, rest.size() - 2)));
}

// The data of the fields with this id, the first alone or all of them.
Bytes Data(const Bytes& area, unsigned char id, bool all = false) {
  Bytes data;
  for (std::size_t at = 0; at < area.size();) {
    const std::size_t length = at + 1 < area.size() ? area[at + 1] : 0;
    const std::size_t begin = std::min(at + 2, area.size());
    const std::size_t end = std::min(begin + length, area.size());
    if (area[at] == id) {
      data.insert(data.end(), area.begin() + static_cast<std::ptrdiff_t>(begin),
                  area.begin() + static_cast<std::ptrdiff_t>(end));
      if (!all) return data;
    }
    at = end;
  }
  return data;
}

int Code(const Bytes& data) {
  return data.empty() ? -1 : data.front();
}

void CheckReaders(const StatusReply& status, const Bytes& area) {
  const int code = Code(Data(area, 0x01));
  FUZZ_CHECK(status.GetStatus() == code);
  FUZZ_CHECK(status.IsStatusReady() == (code == 4) && status.IsStatusError() == (code == 0));
  FUZZ_CHECK(status.GetErrorCode() == Code(Data(area, 0x02)));
  Bytes warnings = Data(area, 0x04);
  warnings.resize(std::min<std::size_t>(warnings.size(), 50));
  FUZZ_CHECK(status.GetWarning() == warnings);
  const Bytes serial = Data(area, 0x1F);
  FUZZ_CHECK(status.GetSerialNumber() == std::string(serial.begin(), serial.end()));
  const Bytes tanks = Data(area, 0x0D);
  FUZZ_CHECK(status.GetMaintTankRemain() == std::vector<int>(tanks.begin(), tanks.end()));
  FUZZ_CHECK(status.GetHeater() == Data(area, 0x2E, true));
  const int usb = status.GetUSBStatus();
  FUZZ_CHECK(area.empty() ? usb == -1 : usb == 0 || usb == 1);
  const int colors = status.GetInkColorCount();
  FUZZ_CHECK(colors == 8 || colors == 6 || colors == 4);
  // On the heap, so that the sanitizer sees the elements' ends.
  std::vector<int> third(63);
  std::vector<int> first(63);
  std::vector<int> fourth(63);
  FUZZ_CHECK(status.GetInkRemain(third.data(), first.data(), fourth.data()) <= 63);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fake_plugin::Session session;
  static Ravik::IPrinterLibrary library;
  static const bool opened =
      (fake_plugin::StorePrinters({{"N", "QM-R410 Series", "network"}}), library.OpenLibrary("N"));
  FUZZ_CHECK(opened);
  std::string text(data, data + std::min<std::size_t>(size, ZIO_STATUS_BUFFER_SIZE));
  fake_plugin::script().status = text;
  text.resize(ZIO_STATUS_BUFFER_SIZE);
  StatusReply status;
  const auto area = FieldArea(text);
  FUZZ_CHECK(library.GetStatus(status) == area.has_value());
  CheckReaders(status, area.value_or(Bytes()));
  fake_plugin::TakeCalls();
  return 0;
}
