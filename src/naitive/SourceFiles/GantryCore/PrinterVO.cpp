#include "GantryCore/PrinterVO.h"

namespace Ravik {

PrinterVO::PrinterVO(const std::string& printerName, const std::string& deviceName)
    : printerName_(printerName), deviceName_(deviceName) {}

void PrinterVO::setPrinter(const std::string& printerName, const std::string& deviceName) {
  printerName_ = printerName;
  deviceName_ = deviceName;
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
