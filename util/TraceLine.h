// One line of a trace.
//
//   2026-01-01T00:00:00.000000Z driver[4711] snmp send 3082... try=1/4
//   2026-01-01T00:00:00.000000Z worker[4711] snmp reply 45583A... PlatenGap=2.5 ...
//
// Columns are separated by one blank: UTC time, program with its process number, port, event, bytes
// in upper-case hexadecimal digits ("-" for none), and behind them text. Equal events have equal
// names whichever program tells of them, so that traces of several, sorted together, read in the
// order in which things happened.
#ifndef UTIL_TRACELINE_H_
#define UTIL_TRACELINE_H_

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace Ravik {

struct TraceEvent {
  std::string_view program;     // worker, driver, printer
  std::string_view port;        // host, network, snmp, raw, local
  std::string_view event;       // a word: send, recv, command, reply
  std::string_view bytes = {};  // any
  std::string_view text = {};   // printable
};

// A line is no longer than this, its line feed included: what a pipe takes in one piece.
constexpr std::size_t kTraceLineLimit = 4096;

// The line, with its line feed. Of the bytes, the first 1024 are there; "+" and how many more there
// are follows them. Of the text, what the line has room for is, and " ..." behind it.
std::string TraceLine(const TraceEvent& event);

// bytes that are text, in double quotes: what is not printable, a double quote or a backslash is
// "\x" and two hexadecimal digits. Of more than limit bytes the first are there, and behind the
// quotes "+" and how many more there are.
std::string TraceQuoted(std::string_view bytes, std::size_t limit = 64);

// Milliseconds since start, with three decimals: "ms=0.412".
std::string TraceDuration(std::chrono::steady_clock::time_point start);

}  // namespace Ravik

#endif  // UTIL_TRACELINE_H_
