// A search module that finds what it is asked for: an address holds the texts of one printer, in
// the order of kFoundPrinterFields, each before a "|"; "throw" ends the search with an exception,
// "signals" is left out where a signal may come.
#include <csignal>
#include <stdexcept>

#include "port_driver/SearchModule.h"

namespace {

ZIOP::FoundPrinter PrinterOf(const std::string& address) {
  ZIOP::FoundPrinter printer;
  std::size_t begin = 0;
  for (const auto field : ZIOP::kFoundPrinterFields) {
    const std::size_t end = address.find('|', begin);
    if (end == std::string::npos) {
      break;
    }
    printer.*field = address.substr(begin, end - begin);
    begin = end + 1;
  }
  return printer;
}

bool IsInterruptible() {
  sigset_t blocked;
  return ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked) != 0 ||
         ::sigismember(&blocked, SIGTERM) == 0 || ::sigismember(&blocked, SIGINT) == 0;
}

void Search(const std::vector<std::string>& addresses, const ZIOP::Deadline& /*deadline*/,
            std::vector<ZIOP::FoundPrinter>& found) {
  for (const std::string& address : addresses) {
    if (address == "throw") {
      throw std::runtime_error("no\nnetwork");
    }
    if (address.find("signals") != 0 || !IsInterruptible()) {
      found.push_back(PrinterOf(address));
    }
  }
}

}  // namespace

void ZIOPSearch(const ZIOPSearchRequest* request, ZIOPFoundCallback found, void* context) noexcept {
  ZIOP::ServeSearch(*request, found, context, Search);
}
