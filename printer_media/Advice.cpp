#include "printer_media/Advice.h"

#include <algorithm>
#include <iterator>

namespace PrinterMedia {

namespace {

struct Row {
  const char* part;  // of the line
  const char* advice;
};

// The first row counts whose part the line holds.
constexpr Row kRows[] = {
    {"no property list:",
     "The printer list is not there, or its XML is wrong: xmllint --noout FILE says in which "
     "line."},
    {"SupportedPrinters names no printers",
     "Take the key SupportedPrinters over from the printer list that ships."},
    {"SupportedPrinters lacks",
     "The model is not supported, or under another name: see SupportedPrinters in the printer "
     "list."},
    {"its name is taken", "Another printer has its name already: rename that one."},
    {"device URI:",
     "The printer is reached in a way that the driver does not know. Give it a "
     "socket: or file: device URI in the printer list."},
    {"its device has no node",
     "Plug the printer in or switch it on. Does /dev/usb/lp0 exist "
     "(kernel module usblp)?"},
    {"printing system: left out:",
     "Give the queue a device URI with the printer's address, or list "
     "the printer as configured."},
    {"search broken off: printing system:",
     "Start the printing system, or let CUPS_SERVER name the "
     "server that has the queues."},
    {"not asked:", "Mend the entry of Addresses in the printer list that it names."},
    {"search left out:",
     "The search's module is not beside the driver, or a library that it needs "
     "is not installed."},
    {"search broken off:", "What was found until then is listed: ask again."},
    {"left out: it is no", "Mend the key in the printer list: its value is of another class."},
    {"preferences", "The list is not stored for later: make room, or change the permissions."},
    {"left out", "Mend the entry in the printer list."},
};

}  // namespace

std::string AdviceOn(const std::string& line) {
  const Row* const row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& r) {
    return line.find(r.part) != std::string::npos;
  });
  return row == std::end(kRows) ? "" : row->advice;
}

}  // namespace PrinterMedia
