// Both sides of the call from the driver into a search module.
#include "port_driver/SearchModule.h"

#include <exception>
#include <iterator>
#include <new>

#include "port_driver/Module.h"
#include "util/Diagnostics.h"
#include "util/ProcessTrace.h"

namespace ZIOP {
namespace {

std::string StringOf(const ZIOPText& text) {
  return {text.bytes, text.length};
}

ZIOPText TextOf(const std::string& string) {
  return {string.data(), string.size()};
}

// What the driver's callback is called with.
struct Collector {
  std::vector<FoundPrinter>& found;
  std::size_t count = 0;
};

void Collect(void* context, const ZIOPText* fields) noexcept {
  auto& collector = *static_cast<Collector*>(context);
  if (++collector.count > kMaximumFoundPrinters) {
    return;
  }
  try {
    FoundPrinter printer;
    for (std::size_t i = 0; i < std::size(kFoundPrinterFields); ++i) {
      printer.*kFoundPrinterFields[i] = StringOf(fields[i]);
    }
    collector.found.push_back(std::move(printer));
  } catch (const std::bad_alloc&) {
    // There is no memory for the printer, nor for a line about it.
  }
}

}  // namespace

void ServeSearch(const ZIOPSearchRequest& request, ZIOPFoundCallback found, void* context,
                 SearchFunction search) noexcept {
  Ravik::ProcessTrace::Start("ZIOP");
  std::vector<FoundPrinter> printers;
  try {
    const auto deadline = Deadline::After(std::chrono::milliseconds(request.timeout));
    std::vector<std::string> addresses;
    for (std::size_t i = 0; i < request.addressCount; ++i) {
      addresses.push_back(StringOf(request.addresses[i]));
    }
    search(addresses, deadline, printers);
  } catch (const std::exception& error) {
    Ravik::ReportLine("ZIOP", "search broken off: " + Ravik::Printable(error.what()));
  }
  for (const FoundPrinter& printer : printers) {
    ZIOPText fields[std::size(kFoundPrinterFields)];
    for (std::size_t i = 0; i < std::size(fields); ++i) {
      fields[i] = TextOf(printer.*kFoundPrinterFields[i]);
    }
    found(context, fields);
  }
}

void RunSearchModule(const std::string& path, const std::vector<std::string>& addresses,
                     const Deadline& deadline, std::vector<FoundPrinter>& found) {
  const auto search = LoadModule<decltype(ZIOPSearch)>(path, "ZIOPSearch");
  if (search == nullptr) {
    return;
  }
  std::vector<ZIOPText> texts;
  texts.reserve(addresses.size());
  for (const std::string& address : addresses) {
    texts.push_back(TextOf(address));
  }
  const ZIOPSearchRequest request{texts.data(), texts.size(), deadline.PollTimeout()};
  Collector collector{found};
  search(&request, Collect, &collector);
  if (collector.count > kMaximumFoundPrinters) {
    Ravik::ReportLine("ZIOP", "printers left out: a search found more than " +
                                  std::to_string(kMaximumFoundPrinters));
  }
}

}  // namespace ZIOP
