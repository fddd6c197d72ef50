#include "printer_media/Request.h"

#include "printer_media/Text.h"

namespace PrinterMedia {

std::string RequestLine(const nlohmann::json& request) {
  std::string line;
  for (const char character : Narrowed(request.dump())) line += '%' + ToHex({&character, 1});
  return line + '\n';
}

}  // namespace PrinterMedia
