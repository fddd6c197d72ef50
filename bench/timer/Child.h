// Programs that are measured: starting them, and the clocks.
#ifndef BENCH_TIMER_CHILD_H_
#define BENCH_TIMER_CHILD_H_

#include <sys/types.h>
#include <time.h>

#include <string>
#include <vector>

namespace Bench {

// Ends the measuring with a line on standard error: what failed, and the text of errno.
[[noreturn]] void Fail(const std::string& what);

// Both ends of a pipe, not inherited; the caller closes them.
struct Pipe {
  int read_end, write_end;
};
Pipe OpenPipe();

// Starts a program with these two descriptors as its standard input and output. The last element
// of command is null. The caller reaps the child.
pid_t Start(char* const* command, int input, int output);

// Splits arguments at each "--" into commands for Start. They stay the caller's.
std::vector<char**> Commands(char** arguments);

// Nanoseconds on a clock of clock_gettime.
long Now(clockid_t clock = CLOCK_MONOTONIC);

// Reads what is there of a pipe. Empty at its end.
std::string ReadSome(int from);

std::string ReadFile(const char* path);

}  // namespace Bench

#endif  // BENCH_TIMER_CHILD_H_
