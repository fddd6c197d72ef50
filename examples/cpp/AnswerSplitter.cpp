#include "AnswerSplitter.h"

#include "WorkerError.h"

namespace {
constexpr std::size_t kMaxAnswerBytes = std::size_t{64} << 20;
}

void AnswerSplitter::Feed(const char* bytes, std::size_t size) {
  bytes_.append(bytes, size);
  if (bytes_.size() > kMaxAnswerBytes) throw ProtocolError("the worker's answer does not end");
}

std::optional<std::string> AnswerSplitter::Take() {
  if (bytes_.empty() || !FindEnd()) return std::nullopt;
  std::string answer = bytes_.substr(0, next_);
  bytes_.erase(0, next_);
  next_ = 0;
  return answer;
}

bool AnswerSplitter::FindEnd() {
  if (bytes_[0] != '{') return FindEndOfText();
  while (next_ < bytes_.size()) {
    if (Ends(bytes_[next_++])) return true;
  }
  return false;
}

bool AnswerSplitter::FindEndOfText() {
  const std::string text = kSyntaxError;
  const std::string start = bytes_.substr(0, text.size());
  if (text.compare(0, start.size(), start) != 0) {
    throw ProtocolError("the worker wrote \"" + start + '"');
  }
  next_ = text.size();
  return start.size() == text.size();
}

bool AnswerSplitter::Ends(char byte) {
  if (is_escaped_) {
    is_escaped_ = false;
  } else if (in_string_ && byte == '\\') {
    is_escaped_ = true;
  } else if (byte == '"') {
    in_string_ = !in_string_;
  } else if (!in_string_ && byte == '{') {
    ++depth_;
  } else if (!in_string_ && byte == '}') {
    return --depth_ == 0;
  }
  return false;
}
