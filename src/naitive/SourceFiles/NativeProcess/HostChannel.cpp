#include "NativeProcess/HostChannel.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

namespace Ravik {

namespace {

constexpr std::size_t kBlockSize = 16384;

}  // namespace

bool HostChannel::Fill() {
  if (has_ended_) return false;
  if (!block_) block_.reset(new char[kBlockSize]);
  ssize_t size = 0;
  do {
    size = read(input_, block_.get(), kBlockSize);
  } while (size < 0 && errno == EINTR);
  has_ended_ = size <= 0;
  has_failed_ = size < 0;
  begin_ = block_.get();
  end_ = begin_ + (has_ended_ ? 0 : size);
  return !has_ended_;
}

bool HostChannel::ReadLine(std::string& line) {
  try {
    return TakeLine(line);
  } catch (const std::bad_alloc&) {
    begin_ = end_;
    has_ended_ = true;
    return false;
  }
}

bool HostChannel::TakeLine(std::string& line) {
  line.clear();
  while (begin_ != end_ || Fill()) {
    const auto size = static_cast<std::size_t>(end_ - begin_);
    const auto* const feed = static_cast<const char*>(std::memchr(begin_, '\n', size));
    line.append(begin_, feed == nullptr ? end_ : feed);
    begin_ = feed == nullptr ? end_ : feed + 1;
    if (feed != nullptr) return true;
  }
  return !has_failed_ && !line.empty();
}

bool HostChannel::Write(const std::string& text) const {
  for (std::size_t written = 0; written < text.size();) {
    const ssize_t size = write(output_, text.data() + written, text.size() - written);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) return false;
    written += static_cast<std::size_t>(size);
  }
  return true;
}

}  // namespace Ravik
