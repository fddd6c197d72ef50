// The shipped programs, set up for one test: virtual printers, and a worker in a folder of its own.
#ifndef TESTS_END_TO_END_RIG_H_
#define TESTS_END_TO_END_RIG_H_

#include <picojson.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/end_to_end/Process.h"

// A folder that goes with its owner.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// A running virtual printer on free loopback ports.
class VirtualPrinter {
 public:
  explicit VirtualPrinter(const std::string& model, const std::vector<std::string>& options = {});

  // socket://127.0.0.1:RAW?snmp=PORT and further options of the device URI.
  std::string Uri(const std::string& furtherOptions = "") const;

  const std::string& model() const { return model_; }

  // Ends the printer in order, with its state saved; true when it ended well.
  bool Stop();

  // What the printer has written to standard error so far.
  std::string Trace() const;

 private:
  TemporaryFolder folder_;
  std::string model_;
  std::unique_ptr<Process> process_;
  int snmp_ = 0;
  int raw_ = 0;
};

// One entry of the supported-printer list.
struct ListedPrinter {
  std::string name;
  std::string device;
  std::string uri;
};

// What a run of the worker gave.
struct Outcome {
  std::string output;
  std::string errors;
  int status;  // as waitpid gives it
};

// A copy of the shipped folder with a supported-printer list of its own and its own defaults.
class WorkerFolder {
 public:
  explicit WorkerFolder(const std::vector<ListedPrinter>& printers);

  // Replaces the list; what a search has stored stays until the next one.
  void List(const std::vector<ListedPrinter>& printers) const;

  // Runs the worker over the lines of JSON, one after the other, each encoded as its host does.
  Outcome Run(const std::vector<std::string>& requests) const;

  // Runs the worker over raw bytes.
  Outcome RunRaw(const std::string& input) const;

  std::unique_ptr<Process> Start() const;

  const std::filesystem::path& path() const { return folder_.path(); }
  std::filesystem::path ErrorFile() const { return folder_.path() / "errors"; }

 private:
  TemporaryFolder folder_;
};

// A worker that is kept running.
class KeptWorker {
 public:
  explicit KeptWorker(const WorkerFolder& folder) : process_(folder.Start()) {}

  // Sends one request and returns its whole answer.
  std::string Ask(const std::string& json);

  Process& process() { return *process_; }

 private:
  std::unique_ptr<Process> process_;
};

// Builds the text of a request. parameter is JSON; empty leaves the member out.
std::string Request(const std::string& command, const std::string& printer,
                    const std::string& device, const std::string& parameter = "");

std::string ReadFile(const std::filesystem::path& path);

#endif  // TESTS_END_TO_END_RIG_H_
