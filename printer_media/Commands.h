// The commands of the command line.
#ifndef PRINTER_MEDIA_COMMANDS_H_
#define PRINTER_MEDIA_COMMANDS_H_

#include <string>
#include <vector>

#include "printer_media/Failure.h"
#include "printer_media/Host.h"

namespace PrinterMedia {

// What the command line says; each command reads what is for it.
struct Options {
  bool is_json = false;
  bool is_agreed = false;  // --yes
  double answer_time_s = 4;
  std::string printer;
  std::string record;  // a number or a name
  int layout = 0;
  std::vector<std::string> assignments;  // NAME=VALUE
  std::string file;
  std::string first;  // what is compared: printers or files
  std::string second;
};

// All print to standard output, and throw Failure and Interrupted.
Exit ListPrinters(Host& host, const Options& options);
Exit ShowStatus(Host& host, const Options& options);
Exit ShowFirmware(Host& host, const Options& options);
Exit ListNames(Host& host, const Options& options);
Exit GetRecord(Host& host, const Options& options);
Exit SetRecord(Host& host, const Options& options);
Exit InitialiseRecords(Host& host, const Options& options);
Exit SaveRecords(Host& host, const Options& options);
Exit RestoreRecords(Host& host, const Options& options);
Exit CompareRecords(Host& host, const Options& options);
Exit Diagnose(Host& host, const Options& options);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_COMMANDS_H_
