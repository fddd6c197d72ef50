// The shipped programs, set up for one test: virtual printers, and a worker in a folder of its own.
#ifndef TESTS_END_TO_END_RIG_H_
#define TESTS_END_TO_END_RIG_H_

#include <filesystem>
#include <string>
#include <vector>

#include "tests/end_to_end/Process.h"

constexpr char kList[] = R"({"Command":"GetPrinterList"})";

// What a worker reaches its printer over.
enum class Link { kNetwork, kLocal };

// A running virtual printer on free loopback ports, or at a local port alone.
class VirtualPrinter {
 public:
  explicit VirtualPrinter(const std::string& model, const std::vector<std::string>& options = {},
                          Link link = Link::kNetwork, const std::string& errorFile = "/dev/stderr");
  ~VirtualPrinter();
  VirtualPrinter(const VirtualPrinter&) = delete;
  VirtualPrinter& operator=(const VirtualPrinter&) = delete;

  // The device URI, with further options.
  std::string Uri(const std::string& furtherOptions = "") const;

  // Ends the printer in order, with its state saved; true when it ended well.
  bool Stop();

 private:
  std::filesystem::path local_;  // the local port, if there is one
  Process process_;
  std::string uri_;
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

// A copy of the shipped folder with a supported-printer list of its own and its own defaults, which
// goes with its owner.
class WorkerFolder {
 public:
  explicit WorkerFolder(const std::vector<ListedPrinter>& printers);
  ~WorkerFolder();
  WorkerFolder(const WorkerFolder&) = delete;
  WorkerFolder& operator=(const WorkerFolder&) = delete;

  // Replaces the list; what a search has stored stays until the next one.
  void List(const std::vector<ListedPrinter>& printers) const;

  // Starts the worker with a shell's command, whose $0 is the worker.
  Process Start(const std::string& shell = "exec \"$0\"") const;

  // Runs the worker over input.
  Outcome Run(const std::string& input) const;

  // What the worker has written to standard error since the last Run began.
  std::string Errors() const;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// The line on which a host sends JSON.
std::string Line(const std::string& json);

// Sends one well-formed request to a running worker and returns its whole answer.
std::string Ask(const Process& worker, const std::string& json);

// A printer named "Studio" and a worker that has listed it.
class Studio {
 public:
  Studio(const std::string& device, const std::vector<std::string>& printerOptions,
         const std::string& uriOptions = "", Link link = Link::kNetwork);

  std::string Ask(const std::string& command, const std::string& parameter) const;

 private:
  std::string device_;
  VirtualPrinter printer_;
  WorkerFolder folder_;
  Process worker_;
};

// Builds the text of a request. parameter is JSON; empty leaves the member out.
std::string Request(const std::string& command, const std::string& printer,
                    const std::string& device, const std::string& parameter = "");

// The text of a page of docs/.
std::string Document(const std::string& page);

#endif  // TESTS_END_TO_END_RIG_H_
