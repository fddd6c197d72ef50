// The permanent memory of the printer, kept in a file: one JSON object with "family" and "slots",
// an array of thirty objects with "settings", "name" and "block" (hexadecimal digits) and "flag"
// (a number).
#ifndef VIRTUAL_PRINTER_STATEFILE_H_
#define VIRTUAL_PRINTER_STATEFILE_H_

#include <string>

#include "virtual_printer/MediaRecord.h"
#include "virtual_printer/Model.h"

namespace VirtualPrinter {

// Reads the records of a printer of `family`. A file that does not exist leaves `records` alone
// and is no failure. Answers an empty text, or what is wrong; `records` is whole either way. What
// a printer left behind that was killed while it saved is removed: a file is for one printer.
std::string LoadState(const std::string& path, const Family& family, RecordTable& records);

// Replaces the file at once as a whole: readers find the old one or the new one. Answers an empty
// text, or what is wrong.
std::string SaveState(const std::string& path, const Family& family, const RecordTable& records);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_STATEFILE_H_
