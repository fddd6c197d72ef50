// The worker's result codes in words.
#ifndef PRINTER_MEDIA_RESULTCODE_H_
#define PRINTER_MEDIA_RESULTCODE_H_

#include <string>

#include "printer_media/Failure.h"

namespace PrinterMedia {

enum class Operation { kList, kRead, kWrite };

// What to do where a printer refuses a read.
extern const char kReadRefused[];

// For a code other than 0. What was done stands in front: `record 3 of "Studio" was not read`.
Failure CodeFailure(int code, Operation operation, const std::string& what);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_RESULTCODE_H_
