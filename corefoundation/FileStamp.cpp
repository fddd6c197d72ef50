#include "corefoundation/FileStamp.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace CoreFoundation {

namespace {

constexpr std::int64_t kSecond = 1000000000;   // nanoseconds
constexpr std::int64_t kTicks = kSecond / 50;  // two of the slowest clock
constexpr std::int64_t kCoarse = 3 * kSecond;  // more than any file system rounds times to

// File systems of this machine alone, whose times are those of its clock.
constexpr std::uint32_t kLocal[] = {BTRFS_SUPER_MAGIC,     EXT4_SUPER_MAGIC, F2FS_SUPER_MAGIC,
                                    OVERLAYFS_SUPER_MAGIC, TMPFS_MAGIC,      XFS_SUPER_MAGIC};

bool IsLocal(const std::string& path) {
  struct statfs system;
  if (statfs(path.c_str(), &system) != 0) return false;
  const auto type = static_cast<std::uint32_t>(system.f_type);
  return std::find(std::begin(kLocal), std::end(kLocal), type) != std::end(kLocal);
}

bool IsSame(const timespec& left, const timespec& right) {
  return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

// Whether every change from now on is given another time. One of whole seconds may be rounded.
bool IsPast(const timespec& time, const timespec& now) {
  const std::int64_t seconds = std::clamp<std::int64_t>(now.tv_sec - time.tv_sec, -10, 10);
  const std::int64_t age = seconds * kSecond + (now.tv_nsec - time.tv_nsec);
  return age > (time.tv_nsec == 0 ? kCoarse : kTicks);
}

}  // namespace

FileStamp::FileStamp(const std::string& path) {
  timespec now;
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  if (stat(path.c_str(), &status_) == 0) taken_ = now;
}

bool FileStamp::operator==(const FileStamp& other) const {
  return *this && other && status_.st_dev == other.status_.st_dev &&
         status_.st_ino == other.status_.st_ino && status_.st_size == other.status_.st_size &&
         IsSame(status_.st_mtim, other.status_.st_mtim) &&
         IsSame(status_.st_ctim, other.status_.st_ctim);
}

bool FileStamp::IsUnique(const std::string& path) const {
  return *this && IsPast(status_.st_ctim, taken_) && IsLocal(path);
}

}  // namespace CoreFoundation
