// A client of the worker PrinterNativeProcess, for hosts to copy. Stands on POSIX, Linux's pipe2
// and picojson.
//
//   PrinterWorker worker("/opt/printer/PrinterNativeProcess");
//   for (const Printer& printer : worker.Printers()) {
//     std::cout << worker.Status(printer, {"StatusCode"}).serialize();
//   }
#ifndef EXAMPLES_CPP_PRINTERWORKER_H_
#define EXAMPLES_CPP_PRINTERWORKER_H_

#include <picojson.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "WorkerError.h"
#include "WorkerProcess.h"

struct Printer {
  std::string name;
  std::string device;  // selects the family of records
};

// How long a request may take, from its turn to its answer: a little longer than it takes the
// worker to give up, where the printer's device URI says nothing of timeouts.
inline constexpr std::chrono::seconds kListLimit{10};
inline constexpr std::chrono::seconds kReadLimit{15};
inline constexpr std::chrono::seconds kWriteLimit{40};

// A client with one worker, which is started with the first request and kept for the next ones.
// Several threads may share it: the worker does one request at a time, and the others wait for
// their turn. Requests throw a WorkerError when they fail, and std::system_error when the worker
// cannot be started; the next request then starts a worker afresh. Texts are the bytes that the
// printer holds, UTF-8 or not.
class PrinterWorker {
 public:
  using Milliseconds = std::chrono::milliseconds;

  explicit PrinterWorker(std::string program) : program_(std::move(program)) {}

  // Lets the worker end in order.
  ~PrinterWorker() { Close(); }
  PrinterWorker(const PrinterWorker&) = delete;
  PrinterWorker& operator=(const PrinterWorker&) = delete;

  // Ends the worker after the requests that are waiting.
  void Close();

  // Searches. Every other request takes a printer that the last search has found.
  std::vector<Printer> Printers();

  // Of StatusCode, ErrorCode, WarningCode and SerialNumber, those that the printer tells.
  picojson::value Status(const Printer& printer, const std::vector<std::string>& figures);

  // Number, name and registration flag of three records.
  picojson::value Names(const Printer& printer, int first);

  picojson::object ReadRecord(const Printer& printer, int number, int layout = 0);

  // Writes settings. The others stay, but for ReferenceMediaType, which becomes 0.
  void WriteRecord(const Printer& printer, int number, picojson::object settings, int layout = 0);

  // Resets one record, or all.
  void Initialize(const Printer& printer, int number);
  void InitializeAll(const Printer& printer);

  // Only for the series QM-V5 and QM-V7: asked for another one, the worker ends.
  std::string Firmware(const Printer& printer);

  // Any request. Returns what the answer has as Reply, or null. Takes no printer as nullptr and no
  // parameter as null; throws std::invalid_argument for a command that is none, and for a parameter
  // that the worker would ignore.
  picojson::value Request(const std::string& command, const Printer* printer = nullptr,
                          const picojson::value& parameter = {},
                          Milliseconds time_limit = kReadLimit);

 private:
  picojson::value Exchange(const std::string& command, const std::string& line,
                           Milliseconds time_limit);

  std::string program_;
  std::mutex turn_;
  std::unique_ptr<WorkerProcess> process_;
};

#endif  // EXAMPLES_CPP_PRINTERWORKER_H_
