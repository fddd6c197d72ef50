// A child process that is talked to over its standard input and output.
#ifndef TESTS_END_TO_END_PROCESS_H_
#define TESTS_END_TO_END_PROCESS_H_

#include <sys/types.h>

#include <string>
#include <vector>

// An alarm ends the process two minutes after its start, which bounds every wait on it. Whatever
// signals the test ignores, the process does not.
class Process {
 public:
  // Starts the program, which is looked for on the path; standard error is appended to a file.
  // Throws std::system_error when a system call fails.
  Process(std::vector<std::string> command, const std::string& errorFile);

  // Kills the process if it still runs.
  ~Process();

  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Writes text to standard input; what the process no longer reads is dropped.
  void Write(const std::string& text) const;

  // Reads standard output up to and including end, or to its end.
  std::string ReadUntil(const std::string& end) const;

  // Closes standard input and reads standard output to its end.
  std::string ReadAll() const;

  // No longer takes what the process writes to standard output.
  void CloseOutput() const;

  void Signal(int signal) const;

  // Sends a signal, 0 for none, and waits for the end; returns the status as waitpid gives it.
  int Wait(int signal = 0);

 private:
  pid_t pid_ = -1;
  int socket_ = -1;  // the other end of standard input and output
};

#endif  // TESTS_END_TO_END_PROCESS_H_
