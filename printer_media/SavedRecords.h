// The records of a printer, and the file that they are saved in.
#ifndef PRINTER_MEDIA_SAVEDRECORDS_H_
#define PRINTER_MEDIA_SAVEDRECORDS_H_

#include <map>
#include <string>

#include "printer_media/Host.h"

namespace PrinterMedia {

// By layout.
using Record = std::map<int, Settings>;

struct SavedRecords {
  std::string printer;
  std::string device;
  const Family* family = nullptr;
  std::map<int, Record> records;  // by number
};

// The name under which a record is registered; empty for none.
std::string NameOf(const Record& record);

// Reads all registered records of the printer in all layouts, with a bar for its progress. A layout
// that the printer refuses is left out, and said to be so on standard error, but for layout 0.
SavedRecords LoadRecords(Host& host, const Printer& printer);

// The text of a file; docs/printer-media.md describes it.
std::string FormatRecords(const SavedRecords& saved);

// Reads a file and checks all of it. Throws Failure that says what is wrong with which record.
SavedRecords ReadRecords(const std::string& path);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_SAVEDRECORDS_H_
