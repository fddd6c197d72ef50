// What a request to the worker can fail with.
#ifndef EXAMPLES_CPP_WORKERERROR_H_
#define EXAMPLES_CPP_WORKERERROR_H_

#include <stdexcept>
#include <string>

// What the worker answers to a request that it cannot read.
inline constexpr char kSyntaxError[] = "syntax error";

// Any failure of a request.
class WorkerError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The worker answered with a result code other than 0.
class PrinterError : public WorkerError {
 public:
  PrinterError(const std::string& command, long code);
  long code() const { return code_; }

  // What the code means; a text for any code.
  static const char* Meaning(long code);

 private:
  long code_;
};

// The worker could not read the request and answered "syntax error".
class RequestError : public WorkerError {
  using WorkerError::WorkerError;
};

// What came is no answer to the request.
class ProtocolError : public WorkerError {
  using WorkerError::WorkerError;
};

// No whole answer within the time limit. Whether a write was done is not known.
class WorkerTimeout : public WorkerError {
 public:
  WorkerTimeout() : WorkerError("the worker did not answer in time") {}
};

// The worker ended without a whole answer. Its standard error may say why.
class WorkerEnded : public WorkerError {
 public:
  explicit WorkerEnded(int status);
  // As waitpid gives it.
  int status() const { return status_; }

 private:
  int status_;
};

#endif  // EXAMPLES_CPP_WORKERERROR_H_
