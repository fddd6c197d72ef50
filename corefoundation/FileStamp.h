// What tells that a file is still the one that was read, without reading it again.
#ifndef COREFOUNDATION_FILESTAMP_H_
#define COREFOUNDATION_FILESTAMP_H_

#include <sys/stat.h>
#include <time.h>

#include <string>

namespace CoreFoundation {

class FileStamp {
 public:
  // Of no file.
  FileStamp() = default;

  // Of the file at path, links followed; of no file when there is none or it may not be looked at.
  // Taken before the file is read, it is that of the version read or of one before.
  explicit FileStamp(const std::string& path);

  // False for no file.
  explicit operator bool() const { return taken_.tv_sec != 0; }

  // Same file, of the same size and times. Of no file nothing is the same.
  bool operator==(const FileStamp& other) const;

  // Whether no later version of the file at path, also one that replaces it under the same number,
  // can have the same stamp. Every change sets the time of the last one (st_ctime), which nothing
  // else does; but that moves with the clock's ticks, so it has to be older than one, and the file
  // system has to give it by this machine's clock and to show it as it is now, which one of the
  // network does not.
  bool IsUnique(const std::string& path) const;

 private:
  timespec taken_{};  // the moment, by the clock that gives files their times
  struct stat status_ {};
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_FILESTAMP_H_
