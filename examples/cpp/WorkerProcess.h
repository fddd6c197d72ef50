// One running worker: started, spoken to through pipes, ended and waited for.
#ifndef EXAMPLES_CPP_WORKERPROCESS_H_
#define EXAMPLES_CPP_WORKERPROCESS_H_

#include <sys/types.h>

#include <chrono>
#include <string>

#include "AnswerSplitter.h"

// A descriptor that is closed with its owner.
class Descriptor {
 public:
  Descriptor() = default;
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void Set(int number) {
    Close();
    number_ = number;
  }
  void Close();
  int number() const { return number_; }

 private:
  int number_ = -1;
};

class WorkerProcess {
 public:
  using Clock = std::chrono::steady_clock;

  // Starts the program; its standard error is the host's. Throws std::system_error.
  explicit WorkerProcess(const std::string& program);

  // Ends the worker as Stop does.
  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  // False once it has ended, or written what nobody asked for: the next answer might then belong to
  // another request.
  bool IsReady() const;

  // Sends a line and waits for its answer. Throws a WorkerError, after which the worker is no
  // longer in step, or std::system_error.
  std::string Exchange(const std::string& line, Clock::time_point end);

  // Lets the worker end in order, and ends it when it does not. Blocks for some seconds at most.
  void Close();

  // Ends the worker, by force if need be. Blocks for some seconds at most.
  void Stop();

 private:
  void Send(const std::string& line, Clock::time_point end);
  [[noreturn]] void ThrowEnded();
  void Signal(int signal) const;
  // Waits for the end for a while; true once there was one.
  bool HasEnded();

  Descriptor input_;
  Descriptor output_;
  pid_t pid_ = -1;  // -1 once it was waited for
  int status_ = 0;
  AnswerSplitter answers_;
};

#endif  // EXAMPLES_CPP_WORKERPROCESS_H_
