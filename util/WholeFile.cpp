#include "util/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "util/FileDescriptor.h"

namespace Ravik {

namespace {

constexpr off_t kMaximumSize = off_t{64} << 20;

// What a new file has behind the name of the one that it is to replace: this, and letters.
constexpr char kNewSuffix[] = ".new-";
constexpr char kLetters[] = "XXXXXX";

std::error_code LastError() {
  return {errno, std::generic_category()};
}

std::error_code CheckKind(const FileDescriptor& file, struct stat& status) {
  if (fstat(file.get(), &status) != 0) return LastError();
  if (!S_ISREG(status.st_mode)) return std::make_error_code(std::errc::invalid_argument);
  if (status.st_size > kMaximumSize) return std::make_error_code(std::errc::file_too_large);
  return {};
}

[[noreturn]] void ThrowLastError(const char* call) {
  throw std::system_error(LastError(), call);
}

void WriteDurably(const FileDescriptor& file, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    errno = ENOSPC;  // stands when nothing is taken
    const ssize_t written = write(file.get(), bytes.data() + done, bytes.size() - done);
    if (written <= 0 && errno != EINTR) ThrowLastError("write");
    if (written > 0) done += static_cast<std::size_t>(written);
  }
  if (fsync(file.get()) != 0) ThrowLastError("fsync");
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// Makes a rename in the folder outlive a crash of the system; not every file system can.
void SyncFolder(const std::string& folder) {
  const FileDescriptor file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (file) fsync(file.get());
}

}  // namespace

std::string ReadWholeFile(const std::string& path, std::error_code& error) {
  // O_NONBLOCK: opening a pipe would wait for its writer.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  error = file ? CheckKind(file, status) : LastError();
  // Sockets, and devices that are not there, are other kinds of file that do not open.
  if (error == std::errc::no_such_device_or_address) {
    error = std::make_error_code(std::errc::invalid_argument);
  }
  std::string bytes;
  std::size_t done = 0;
  const auto size = static_cast<std::size_t>(status.st_size);
  while (!error) {
    // Room for the end too: it is found by reading, since the file may be growing.
    if (done == bytes.size()) bytes.resize(std::max(size, 2 * done) + 1);
    const ssize_t length = read(file.get(), bytes.data() + done, bytes.size() - done);
    if (length == 0) {
      bytes.resize(done);
      return bytes;
    }
    if (length > 0) done += static_cast<std::size_t>(length);
    if (length < 0 && errno != EINTR) error = LastError();
    if (done > kMaximumSize) error = std::make_error_code(std::errc::file_too_large);
  }
  return {};
}

void ReplaceWholeFile(const std::string& path, const std::string& bytes) {
  if (bytes.size() > kMaximumSize) {
    throw std::system_error(std::make_error_code(std::errc::file_too_large), "write");
  }
  std::string temporary = path + kNewSuffix + kLetters;
  const FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file) ThrowLastError("mkostemp");
  try {
    if (fchmod(file.get(), S_IRUSR | S_IWUSR) != 0) ThrowLastError("fchmod");
    WriteDurably(file, bytes);
    if (std::rename(temporary.c_str(), path.c_str()) != 0) ThrowLastError("rename");
  } catch (const std::system_error&) {
    unlink(temporary.c_str());
    throw;
  }
  SyncFolder(FolderOf(path));
}

void RemoveLeftovers(const std::string& path) {
  const std::string prefix = path.substr(path.rfind('/') + 1) + kNewSuffix;
  const std::size_t length = prefix.size() + sizeof(kLetters) - 1;
  std::error_code error;
  std::filesystem::directory_iterator entry(FolderOf(path), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename();
    if (name.size() == length && name.rfind(prefix, 0) == 0) unlink(entry->path().c_str());
  }
}

}  // namespace Ravik
