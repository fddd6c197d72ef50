// A child process with pipes, every wait on it bounded.
#ifndef TESTS_END_TO_END_PROCESS_H_
#define TESTS_END_TO_END_PROCESS_H_

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// Throws std::runtime_error when a wait takes longer than a minute, or a system call fails.
class Process {
 public:
  using Environment = std::vector<std::pair<std::string, std::string>>;

  // Starts the program; environment is added to this process's own. Standard error goes to a file.
  Process(const std::vector<std::string>& command, const Environment& environment,
          const std::string& errorFile);

  // Kills the process if it still runs.
  ~Process();

  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Writes text to standard input; what the process no longer reads is dropped.
  void Write(const std::string& text);
  void CloseInput();

  // Reads standard output until complete says that the text read by this call is enough.
  std::string ReadUntil(const std::function<bool(const std::string&)>& complete);

  // Closes standard input and reads standard output to its end.
  std::string ReadAll();

  void Signal(int number) const;

  // Waits for the end; returns the status as waitpid gives it.
  int Wait();

 private:
  using Clock = std::chrono::steady_clock;

  // Appends what there is; false at the end of the output.
  bool ReadSome(std::string& text, Clock::time_point deadline);

  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
};

#endif  // TESTS_END_TO_END_PROCESS_H_
