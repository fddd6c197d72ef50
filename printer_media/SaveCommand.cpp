// The command `save`.
#include <iostream>

#include "printer_media/Commands.h"
#include "printer_media/File.h"
#include "printer_media/SavedRecords.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

Exit SaveRecords(Host& host, const Options& options) {
  RequireReplaceable(options.file, options.is_agreed);
  const Printer& printer = host.Find(options.printer);
  const SavedRecords saved = LoadRecords(host, printer);
  ReplaceFile(options.file, FormatRecords(saved));
  if (options.is_json) {
    const nlohmann::ordered_json json{{"file", TextToJson(options.file)},
                                      {"records", saved.records.size()}};
    std::cout << json.dump(2) << '\n';
  } else {
    std::cout << "saved " << Counted(saved.records.size(), "record") << " of "
              << Printable(Quoted(printer.name)) << " to " << Printable(options.file) << '\n';
  }
  return Exit::kDone;
}

}  // namespace PrinterMedia
