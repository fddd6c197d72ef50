// What to do about a line that the worker writes to standard error when it lists printers.
#ifndef PRINTER_MEDIA_ADVICE_H_
#define PRINTER_MEDIA_ADVICE_H_

#include <string>

namespace PrinterMedia {

// Empty for a line that is not known.
std::string AdviceOn(const std::string& line);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_ADVICE_H_
