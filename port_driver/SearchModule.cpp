// Both sides of the call from the driver into a search module.
#include "port_driver/SearchModule.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <exception>
#include <iterator>
#include <memory>
#include <new>

#include "util/Diagnostics.h"

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

// The module's search, or null with a line on standard error.
decltype(&ZIOPSearch) Load(const std::string& path) {
  void* const code = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  void* const search = code == nullptr ? nullptr : ::dlsym(code, "ZIOPSearch");
  if (search == nullptr) {
    const char* const reason = ::dlerror();
    Ravik::ReportLine("ZIOP",
                      "search left out: " + Ravik::Printable(reason == nullptr ? path : reason));
  }
  return reinterpret_cast<decltype(&ZIOPSearch)>(search);
}

}  // namespace

void ServeSearch(const ZIOPSearchRequest& request, ZIOPFoundCallback found, void* context,
                 SearchFunction search) noexcept {
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
  const auto search = Load(path);
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

std::string DriverFolder() {
  Dl_info own{};
  if (::dladdr(reinterpret_cast<const void*>(&DriverFolder), &own) == 0) {
    return {};
  }
  const std::unique_ptr<char, void (*)(void*)> path(::realpath(own.dli_fname, nullptr), ::free);
  const std::string file = path ? path.get() : "";
  return file.substr(0, file.rfind('/') == std::string::npos ? 0 : file.rfind('/'));
}

}  // namespace ZIOP
