// The trace: one line an event.
#include "virtual_printer/Trace.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

namespace VirtualPrinter {
namespace {

std::string UtcNow() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::system_clock::now();
  const auto since_epoch = std::chrono::duration_cast<milliseconds>(now.time_since_epoch());
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  std::tm fields{};
  gmtime_r(&seconds, &fields);
  std::array<char, 32> date{};
  std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &fields);
  std::array<char, 8> fraction{};
  std::snprintf(fraction.data(), fraction.size(), ".%03dZ",
                static_cast<int>(since_epoch.count() % 1000));
  return std::string(date.data()) + fraction.data();
}

const char* PortName(Port port) {
  switch (port) {
    case Port::kSnmp:
      return "snmp";
    case Port::kRaw:
      return "raw";
    case Port::kLocal:
      return "local";
  }
  return "";
}

}  // namespace

void Trace::Write(Port port, std::string_view event, const Bytes& bytes, std::string_view text) {
  if (out_ == nullptr) return;
  std::string line = UtcNow() + ' ' + PortName(port) + ' ';
  line += event;
  line += ' ' + (bytes.empty() ? "-" : ToHex(bytes));
  if (!text.empty()) line += ' ' + std::string(text);
  *out_ << line + '\n' << std::flush;
}

}  // namespace VirtualPrinter
