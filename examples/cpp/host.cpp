// Changes one setting of a record: host WORKER PRINTER RECORD SETTING VALUE
#include <algorithm>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "PrinterWorker.h"

namespace {

picojson::value ToValue(const std::string& setting, const std::string& text) {
  const std::size_t digits = text.rfind('-', 0) == 0 ? 1 : 0;
  const bool is_number = setting != "CustomMediaName" && text.size() > digits &&
                         text.find_first_not_of("0123456789", digits) == std::string::npos;
  return is_number ? picojson::value(std::stod(text)) : picojson::value(text);
}

void Run(const std::string& program, const std::string& name, int number,
         const std::string& setting, const std::string& value) {
  PrinterWorker worker(program);
  const std::vector<Printer> printers = worker.Printers();
  for (const Printer& printer : printers) std::cout << "printer: " << printer.name << '\n';
  const auto printer = std::find_if(printers.begin(), printers.end(),
                                    [&](const Printer& found) { return found.name == name; });
  if (printer == printers.end()) throw std::runtime_error("there is no printer " + name);
  picojson::object record = worker.ReadRecord(*printer, number);
  if (record.count(setting) == 0) throw std::runtime_error("the record has no " + setting);
  std::cout << "before: " << record[setting].to_str() << '\n';
  record[setting] = ToValue(setting, value);
  worker.WriteRecord(*printer, number, record);
  std::cout << "after: " << worker.ReadRecord(*printer, number)[setting].to_str() << '\n';
}

}  // namespace

int main(int argc, char* argv[]) try {
  if (argc != 6) throw std::runtime_error("host WORKER PRINTER RECORD SETTING VALUE");
  Run(argv[1], argv[2], std::stoi(argv[3]), argv[4], argv[5]);
  return 0;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
