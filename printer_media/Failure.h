// What ends a command early, and the exit statuses.
#ifndef PRINTER_MEDIA_FAILURE_H_
#define PRINTER_MEDIA_FAILURE_H_

#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace PrinterMedia {

// Documented in docs/printer-media.md and the manual page: scripts go by them.
enum class Exit {
  kDone = 0,
  kRefused = 1,       // the printer or the worker refused, did not answer or is not known
  kUsage = 2,         // the command line, a name or a value; nothing was sent
  kWorker = 3,        // the worker is missing, ended, or did not answer in time
  kFile = 4,          // a file could not be read or written, or does not fit
  kDiffers = 5,       // what was compared differs
  kNotConfirmed = 6,  // nobody agreed to the change
};

class Failure : public std::exception {
 public:
  // The advice, which may be empty and have several lines, says what to do about it.
  Failure(Exit status, std::string message, std::string advice = "")
      : status_(status), message_(std::move(message)), advice_(std::move(advice)) {}

  // A result code of the worker's other than 0.
  static Failure OfCode(int code, const std::string& message, const std::string& advice);

  // The same, said of what was done before.
  Failure Behind(const std::string& done) const;

  const char* what() const noexcept override { return message_.c_str(); }
  const std::string& message() const { return message_; }
  const std::string& advice() const { return advice_; }
  Exit status() const { return status_; }
  std::optional<int> code() const { return code_; }

  // Whether the printer answered, and refused.
  bool IsRefusal() const { return status_ == Exit::kRefused && code_.value_or(-1) == -1; }

  // As an object that --json prints.
  std::string Json() const;

 private:
  Exit status_;
  std::string message_;
  std::string advice_;
  std::optional<int> code_;
};

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_FAILURE_H_
