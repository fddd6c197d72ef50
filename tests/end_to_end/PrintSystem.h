// A printing system of the test's own: cupsd with its own configuration, socket and queues.
#ifndef TESTS_END_TO_END_PRINTSYSTEM_H_
#define TESTS_END_TO_END_PRINTSYSTEM_H_

#include <filesystem>
#include <string>
#include <vector>

#include "tests/end_to_end/Process.h"

// The folder of a cupsd, where its configuration and everything that it writes is. It goes with its
// owner. CUPS_SERVER names its socket to the programs that the test starts.
class PrintSystemFolder {
 public:
  PrintSystemFolder();
  ~PrintSystemFolder();
  PrintSystemFolder(const PrintSystemFolder&) = delete;
  PrintSystemFolder& operator=(const PrintSystemFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string socket() const { return path_ / "socket"; }

 private:
  std::filesystem::path path_;
};

struct PrintQueue {
  std::string name;
  std::string driver;  // a driver's model name; empty for a queue without a driver
  std::string info;
  std::string deviceUri;
};

class PrintSystem {
 public:
  // Starts cupsd as the user who runs the test. A class "all" holds every queue. Throws
  // std::runtime_error when it does not serve within a minute.
  explicit PrintSystem(const std::vector<PrintQueue>& queues);

 private:
  PrintSystemFolder folder_;
  Process process_;
};

#endif  // TESTS_END_TO_END_PRINTSYSTEM_H_
