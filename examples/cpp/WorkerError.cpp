#include "WorkerError.h"

#include <sys/wait.h>

namespace {

std::string HowItEnded(int status) {
  if (WIFSIGNALED(status)) return "by signal " + std::to_string(WTERMSIG(status));
  return "with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

PrinterError::PrinterError(const std::string& command, long code)
    : WorkerError(command + ": " + Meaning(code) + " (" + std::to_string(code) + ')'),
      code_(code) {}

const char* PrinterError::Meaning(long code) {
  switch (code) {
    case -1:
      return "unknown command or device name, a parameter is missing, or the printer refused the "
             "write";
    case -4:
      return "the printer could not be opened: it is not in the last list of printers, or is gone";
    case -5:
      return "the printer could not be closed";
    case -6:
      return "the printer did not answer, or reading back did not confirm what was written";
    case -7:
      return "the printer's answer does not belong to the request";
    case -8:
      return "the printer's answer ends in the auxiliary marker";
    default:
      return "failed";
  }
}

WorkerEnded::WorkerEnded(int status)
    : WorkerError("the worker ended " + HowItEnded(status) + " before it had answered"),
      status_(status) {}
