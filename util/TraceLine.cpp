#include "util/TraceLine.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <ctime>

#include "util/Diagnostics.h"

namespace Ravik {

namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;

constexpr std::size_t kByteLimit = 1024;
constexpr std::string_view kCut = " ...";

std::string UtcNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const std::time_t seconds = duration_cast<std::chrono::seconds>(now).count();
  const auto fraction = duration_cast<microseconds>(now - std::chrono::seconds(seconds)).count();
  std::tm fields{};
  gmtime_r(&seconds, &fields);
  std::array<char, 64> text{};
  const std::size_t date = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &fields);
  std::snprintf(text.data() + date, text.size() - date, ".%06dZ", static_cast<int>(fraction));
  return text.data();
}

void AppendMore(std::size_t size, std::size_t limit, std::string& line) {
  if (size > limit) line += '+' + std::to_string(size - limit);
}

void AppendBytes(std::string_view bytes, std::string& line) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  if (bytes.empty()) line += '-';
  for (const char c : bytes.substr(0, kByteLimit)) {
    const auto byte = static_cast<unsigned char>(c);
    line += {kDigits[byte >> 4U], kDigits[byte & 0xFU]};
  }
  AppendMore(bytes.size(), kByteLimit, line);
}

void AppendText(std::string_view text, std::string& line) {
  const std::size_t room = kTraceLineLimit - line.size() - 2;  // a blank and the line feed
  line += ' ';
  if (text.size() <= room) {
    line += text;
  } else {
    line.append(text.substr(0, room - kCut.size())).append(kCut);
  }
}

}  // namespace

std::string TraceLine(const TraceEvent& event) {
  std::string line = UtcNow() + ' ';
  line.append(event.program).append("[" + std::to_string(::getpid()) + "] ");
  line.append(event.port).append(" ").append(event.event).append(" ");
  AppendBytes(event.bytes, line);
  if (!event.text.empty()) AppendText(event.text, line);
  return line + '\n';
}

std::string TraceQuoted(std::string_view bytes, std::size_t limit) {
  std::string text = "\"";
  for (const char c : Printable(bytes.substr(0, limit))) {
    if (c == '"') {
      text += "\\x22";
    } else {
      text += c;
    }
  }
  text += '"';
  AppendMore(bytes.size(), limit, text);
  return text;
}

std::string TraceDuration(std::chrono::steady_clock::time_point start) {
  const auto taken = duration_cast<microseconds>(std::chrono::steady_clock::now() - start).count();
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "ms=%.3f", static_cast<double>(taken) / 1000);
  return text.data();
}

}  // namespace Ravik
