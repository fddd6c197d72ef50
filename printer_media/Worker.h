// The worker process.
#ifndef PRINTER_MEDIA_WORKER_H_
#define PRINTER_MEDIA_WORKER_H_

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "printer_media/Answer.h"
#include "printer_media/Interruption.h"

namespace PrinterMedia {

// Where the worker is: where PRINTER_NATIVE_PROCESS says, else beside this program, else where it
// is installed. The file need not exist.
std::filesystem::path WorkerPath();

// One worker, asked one request after another. It has a process group of its own, so that Ctrl-C
// reaches this program alone, which then ends it in order.
class Worker {
 public:
  // Starts the worker. Throws Failure if it cannot be started.
  explicit Worker(const std::filesystem::path& path);

  // Ends the worker, by force where it does not end within two seconds.
  ~Worker();

  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // Sends a request, whose texts are widened bytes, and waits for its answer. Throws Failure when
  // the worker ends, answers with something else or not in time, and is of no more use then; and
  // Interrupted.
  Answer Ask(const nlohmann::json& request, std::chrono::milliseconds limit);

  // What the worker has written to standard error so far, but for the lines of a trace, which go to
  // this program's own.
  const std::string& errors() const { return errors_; }

 private:
  void Transfer(std::string& request, std::string& answer, Clock::time_point end);
  void ReadErrors();
  void SortErrors();
  bool HasEnded(std::chrono::milliseconds limit);
  void Stop();
  [[noreturn]] void ThrowEnded(const std::string& command);
  [[noreturn]] void ThrowSilent(const std::string& command, std::chrono::milliseconds limit);

  pid_t pid_ = -1;  // -1 when there is none to wait for
  int input_ = -1;
  int output_ = -1;
  int error_output_ = -1;
  int status_ = 0;  // as waitpid gives it
  bool is_output_over_ = false;
  std::string unsorted_;  // of standard error, without the end of its line
  std::string errors_;
};

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_WORKER_H_
