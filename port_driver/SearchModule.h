// A search that is a shared object of its own beside the driver, so that the libraries it stands on
// are loaded only by a request that asks for the search.
//
// A module exports ZIOPSearch and nothing else. No C++ object crosses between driver and module;
// both are built together from this header.
#ifndef PORT_DRIVER_SEARCHMODULE_H_
#define PORT_DRIVER_SEARCHMODULE_H_

#include <cstddef>
#include <string>
#include <vector>

#include "port_driver/Deadline.h"
#include "port_driver/FoundPrinter.h"

extern "C" {

// Bytes of any value, not zero-terminated, the giver's for the length of the call.
struct ZIOPText {
  const char* bytes;
  std::size_t length;
};

// Takes one printer that was found: fields holds its texts in the order of kFoundPrinterFields.
// Called on the thread that the search was called on; throws nothing.
typedef void (*ZIOPFoundCallback)(void* context, const ZIOPText* fields);

// What is searched. Everything is the driver's for the length of the call.
struct ZIOPSearchRequest {
  const ZIOPText* addresses;  // hosts and broadcast addresses to ask, where the search asks hosts
  std::size_t addressCount;
  int timeout;  // milliseconds from the call on, at least 0
};

// Searches, calls found for each printer, and returns within the time-out. It is called on a thread
// of its own, on which all signals are blocked. Throws nothing; reports a failure with ReportLine.
__attribute__((visibility("default"))) void ZIOPSearch(const ZIOPSearchRequest* request,
                                                       ZIOPFoundCallback found,
                                                       void* context) noexcept;

}  // extern "C"

namespace ZIOP {

// The members of FoundPrinter in the order in which they cross.
inline constexpr std::string FoundPrinter::*kFoundPrinterFields[] = {
    &FoundPrinter::name,        &FoundPrinter::maker,   &FoundPrinter::model,
    &FoundPrinter::description, &FoundPrinter::uri,     &FoundPrinter::serial,
    &FoundPrinter::uuid,        &FoundPrinter::address, &FoundPrinter::deviceId,
    &FoundPrinter::asked,
};

// Printers that are taken from one search; what it finds past them is left out, with one line on
// standard error.
constexpr std::size_t kMaximumFoundPrinters = 4096;

// What a module's ZIOPSearch does: runs search and hands over what it found, also when it throws,
// which costs one line on standard error.
using SearchFunction = void (*)(const std::vector<std::string>& addresses, const Deadline& deadline,
                                std::vector<FoundPrinter>& found);
void ServeSearch(const ZIOPSearchRequest& request, ZIOPFoundCallback found, void* context,
                 SearchFunction search) noexcept;

// Loads the module at path, an absolute one, unless it is loaded already, runs its search and
// appends what it found. Blocks until the deadline at most. The module stays loaded until the
// process ends. One that cannot be loaded is reported with one line on standard error.
void RunSearchModule(const std::string& path, const std::vector<std::string>& addresses,
                     const Deadline& deadline, std::vector<FoundPrinter>& found);

}  // namespace ZIOP

#endif  // PORT_DRIVER_SEARCHMODULE_H_
