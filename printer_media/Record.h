// The records of a printer, and which of them somebody means.
#ifndef PRINTER_MEDIA_RECORD_H_
#define PRINTER_MEDIA_RECORD_H_

#include <string>
#include <vector>

#include "printer_media/Host.h"

namespace PrinterMedia {

// All records of the printer, with a bar for the progress, which is gone afterwards.
std::vector<RecordName> ReadNames(Host& host, const Printer& printer);

// The number of the record that text tells by its number, or by the name under which it is
// registered, without regard to case. Throws Failure if none or several are meant.
int RecordNumber(Host& host, const Printer& printer, const std::string& text);

// `record 3 "Banner" of "Studio"`.
std::string RecordTitle(const Printer& printer, int number, const std::string& name);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_RECORD_H_
