// Requests, as a host sends them.
#ifndef PRINTER_MEDIA_REQUEST_H_
#define PRINTER_MEDIA_REQUEST_H_

#include <nlohmann/json.hpp>
#include <string>

namespace PrinterMedia {

// The line for a request whose texts are characters that stand for bytes: see Widened.
std::string RequestLine(const nlohmann::json& request);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_REQUEST_H_
