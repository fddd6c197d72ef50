#include "util/TraceWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include "util/Diagnostics.h"
#include "util/WriteOnce.h"

namespace Ravik {

namespace {

constexpr std::chrono::milliseconds kPatience{1000};

[[noreturn]] void Fail(const std::string& what, int error) {
  throw std::system_error(error, std::generic_category(), Printable(what));
}

void CheckKind(const struct stat& node, const std::string& path) {
  if (S_ISLNK(node.st_mode)) Fail("open " + path, ELOOP);
  if (!S_ISREG(node.st_mode)) Fail(path + " is no regular file", EINVAL);
}

// Looks before it opens, since opening may have effects on what is no file, and again at what it
// has opened.
FileDescriptor OpenFile(const std::string& path) {
  struct stat node {};
  if (::lstat(path.c_str(), &node) == 0) CheckKind(node, path);
  constexpr int kFlags =
      O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  FileDescriptor file(::open(path.c_str(), kFlags, S_IRUSR | S_IWUSR));
  if (!file) Fail("open " + path, errno);
  if (::fstat(file.get(), &node) != 0) Fail("stat " + path, errno);
  CheckKind(node, path);
  if (node.st_uid != ::geteuid()) Fail(path + " belongs to another user", EPERM);
  return file;
}

}  // namespace

TraceWriter::TraceWriter(std::string reporter, const std::string& target)
    : reporter_(std::move(reporter)), file_(target == "-" ? FileDescriptor() : OpenFile(target)) {}

bool TraceWriter::Write(const TraceEvent& event) {
  if (has_failed_) return false;
  const int error = WriteOnce(file_ ? file_.get() : STDERR_FILENO, TraceLine(event), kPatience);
  if (error == 0) return true;
  if (!has_failed_.exchange(true)) {
    ReportLine(reporter_, "trace ended: write: " + std::generic_category().message(error) +
                              " (error " + std::to_string(error) + ")");
  }
  return false;
}

}  // namespace Ravik
