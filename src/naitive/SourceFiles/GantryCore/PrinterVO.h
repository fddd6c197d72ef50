// The identity of one printer.
#ifndef GANTRYCORE_PRINTERVO_H_
#define GANTRYCORE_PRINTERVO_H_

#include <ostream>
#include <string>

namespace Ravik {

class PrinterVO {
 public:
  PrinterVO() = default;
  PrinterVO(std::string printerName, std::string deviceName);

  // The name under which the printer is listed and opened.
  const std::string& printerName() const { return printerName_; }

  // The driver's or the model's name, which selects the printer family.
  const std::string& deviceName() const { return deviceName_; }

  void setPrinter(std::string printerName, std::string deviceName);

  // Writes both names as the two members of a JSON object, without its braces and unescaped.
  void print(std::ostream& out) const;

 private:
  std::string printerName_;
  std::string deviceName_;
};

std::ostream& operator<<(std::ostream& out, const PrinterVO& printer);

}  // namespace Ravik

#endif  // GANTRYCORE_PRINTERVO_H_
