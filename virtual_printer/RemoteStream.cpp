// Cuts the commands out of a byte stream.
#include "virtual_printer/RemoteStream.h"

#include <algorithm>
#include <iterator>

#include "virtual_printer/Command.h"

namespace VirtualPrinter {
namespace {

constexpr std::uint8_t kEscape = 0x1B;
constexpr std::uint8_t kEnter[] = {kEscape, '@', kEscape, '(', 'R', 8,   0,  0,
                                   'R',     'E', 'M',     'O', 'T', 'E', '1'};
constexpr std::uint8_t kLeave[] = {kEscape, 0, 0, 0};

}  // namespace

std::vector<Bytes> RemoteStream::Feed(const std::uint8_t* bytes, std::size_t size) {
  pending_.insert(pending_.end(), bytes, bytes + size);
  std::vector<Bytes> commands;
  while (remote_ ? TakeCommand(commands) : SkipToRemoteMode()) {
  }
  pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(at_));
  at_ = 0;
  return commands;
}

bool RemoteStream::SkipToRemoteMode() {
  const auto from = pending_.begin() + static_cast<std::ptrdiff_t>(at_);
  const auto found = std::search(from, pending_.end(), std::begin(kEnter), std::end(kEnter));
  remote_ = found != pending_.end();
  if (remote_) {
    at_ = static_cast<std::size_t>(found - pending_.begin()) + std::size(kEnter);
  } else {
    // The end may be the start of the sequence.
    at_ += Left() - std::min(Left(), std::size(kEnter) - 1);
  }
  return remote_;
}

bool RemoteStream::TakeCommand(std::vector<Bytes>& commands) {
  if (Left() < kCommandHeadSize) return false;
  const auto from = pending_.begin() + static_cast<std::ptrdiff_t>(at_);
  if (*from == kEscape) {
    remote_ = false;
    if (std::equal(std::begin(kLeave), std::end(kLeave), from)) at_ += std::size(kLeave);
    return true;
  }
  const std::size_t size = kCommandHeadSize + from[2] + from[3] * std::size_t{256};
  if (Left() < size) return false;
  commands.emplace_back(from, from + static_cast<std::ptrdiff_t>(size));
  at_ += size;
  return true;
}

}  // namespace VirtualPrinter
