#include "printer_media/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "printer_media/Failure.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestFile = 16UL * 1024 * 1024;

[[noreturn]] void Fail(const std::string& path, const std::string& what, int error) {
  throw Failure(Exit::kFile, path + ": " + what + ": " + std::generic_category().message(error));
}

struct Descriptor {
  explicit Descriptor(int descriptor) : number(descriptor) {}
  ~Descriptor() {
    if (number >= 0) close(number);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number;
};

// A file beside the one whose place it takes; removed unless it does.
class NewFile {
 public:
  explicit NewFile(std::string target)
      : target_(std::move(target)), path_(target_ + ".new-XXXXXX"), file_(mkstemp(path_.data())) {
    if (file_.number < 0) Fail(target_, "not written", errno);
    fcntl(file_.number, F_SETFD, FD_CLOEXEC);
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(file_.number, 0666 & ~mask);
  }
  ~NewFile() {
    if (!path_.empty()) unlink(path_.c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void Write(const std::string& text) const {
    for (std::size_t done = 0; done < text.size();) {
      const ssize_t count = write(file_.number, text.data() + done, text.size() - done);
      if (count < 0 && errno != EINTR) Fail(target_, "not written", errno);
      if (count > 0) done += static_cast<std::size_t>(count);
    }
    if (fsync(file_.number) != 0) Fail(target_, "not written", errno);
  }

  void TakePlace() {
    if (std::rename(path_.c_str(), target_.c_str()) != 0) Fail(target_, "not replaced", errno);
    path_.clear();
  }

 private:
  std::string target_;
  std::string path_;
  Descriptor file_;
};

// Of what a symbolic link names, which stays one.
std::string RealPath(const std::string& path) {
  std::error_code failure;
  const fs::path real = fs::canonical(path, failure);
  return failure ? path : real.string();
}

}  // namespace

std::string ReadFile(const std::string& path) {
  // A pipe or terminal that nobody writes to is not waited for.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file.number < 0) Fail(path, "not read", errno);
  struct stat status {};
  if (fstat(file.number, &status) != 0) Fail(path, "not read", errno);
  if (!S_ISREG(status.st_mode)) throw Failure(Exit::kFile, path + ": this is no regular file");
  std::string text;
  std::array<char, 65536> buffer;
  for (;;) {
    const ssize_t count = read(file.number, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Fail(path, "not read", errno);
    if (count == 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
    if (text.size() > kLongestFile) throw Failure(Exit::kFile, path + ": the file is too long");
  }
}

void RequireReplaceable(const std::string& path, bool is_agreed) {
  std::error_code failure;
  const fs::file_status status = fs::status(path, failure);
  const bool is_there = fs::exists(status);
  if (is_there && !fs::is_regular_file(status)) {
    throw Failure(Exit::kFile, path + ": this is no regular file");
  }
  const fs::path folder = fs::absolute(RealPath(path), failure).parent_path();
  if (access(folder.c_str(), W_OK | X_OK) != 0) Fail(path, "not written", errno);
  if (is_there) Confirm("Replace the file " + path + "?", is_agreed);
}

void ReplaceFile(const std::string& path, const std::string& text) {
  NewFile file(RealPath(path));
  file.Write(text);
  file.TakePlace();
}

}  // namespace PrinterMedia
