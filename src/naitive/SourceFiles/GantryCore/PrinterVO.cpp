#include "GantryCore/PrinterVO.h"

#include <utility>

namespace Ravik {

PrinterVO::PrinterVO(std::string printerName, std::string deviceName)
    : printerName_(std::move(printerName)), deviceName_(std::move(deviceName)) {}

void PrinterVO::setPrinter(std::string printerName, std::string deviceName) {
  printerName_ = std::move(printerName);
  deviceName_ = std::move(deviceName);
}

void PrinterVO::print(std::ostream& out) const {
  constexpr char kPrinterName[] = "PrinterName";
  constexpr char kDeviceName[] = "DeviceName";
  out << '"' << kPrinterName << "\":\"" << printerName_ << "\",\"" << kDeviceName << "\":\""
      << deviceName_ << '"';
}

std::ostream& operator<<(std::ostream& out, const PrinterVO& printer) {
  printer.print(out);
  return out;
}

}  // namespace Ravik
