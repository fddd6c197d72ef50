// The worker's commands, each as one call.
#ifndef PRINTER_MEDIA_HOST_H_
#define PRINTER_MEDIA_HOST_H_

#include <chrono>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "printer_media/ResultCode.h"
#include "printer_media/Tables.h"
#include "printer_media/Value.h"
#include "printer_media/Worker.h"

namespace PrinterMedia {

struct Printer {
  std::string name;
  std::string device;
  const Family* family;  // null for a device name that selects none
};

struct RecordName {
  int number;
  std::string name;
  bool is_registered;
};

// Every call throws Failure when the printer or the worker does not do it, and Interrupted.
class Host {
 public:
  // The answer time is the port's own time for one answer, timeout x (1 + retries) of the printer's
  // device URI. The worker is started by the first call that needs it.
  explicit Host(std::chrono::milliseconds answer_time) : answer_time_(answer_time) {}

  // The printers that there are; asked for once.
  const std::vector<Printer>& Printers();

  // The printer that somebody calls by name, without regard to case, or the failure that says which
  // printers there are.
  const Printer& Find(const std::string& name);

  // The figures that the printer tells, by their names.
  nlohmann::json Status(const Printer& printer);

  // The family must tell it.
  std::string Firmware(const Printer& printer);

  // All records of the printer, registered or not. Tells the progress by a number of the last.
  using Step = std::function<void(int)>;
  std::vector<RecordName> Names(const Printer& printer, const Step& step = nullptr);

  // A record's settings without its head. Fails also when the printer answers with another record,
  // which is how a refusal shows in some answers.
  Settings Read(const Printer& printer, int number, int layout);

  // Writes settings of a record. An interruption names the record as half written.
  void Write(const Printer& printer, int number, int layout, const Settings& settings);

  // Resets a record, or all, to factory state.
  void Initialise(const Printer& printer, std::optional<int> number);

  // What the worker has written to standard error so far.
  std::string errors() const { return worker_ ? worker_->errors() : ""; }

 private:
  Answer Ask(nlohmann::json request, const Printer* printer, std::chrono::milliseconds limit);
  void Change(nlohmann::json request, const Printer& printer, const std::string& what,
              std::chrono::milliseconds limit);

  std::chrono::milliseconds answer_time_;
  std::unique_ptr<Worker> worker_;
  std::optional<std::vector<Printer>> printers_;
};

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_HOST_H_
