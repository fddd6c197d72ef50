// Times programs from their start to their end.
//
//     time_starts ROUNDS INPUT -- PROGRAM [ARGUMENT]... [-- PROGRAM [ARGUMENT]...]...
//
// Each round starts every program once, with the file INPUT as its standard input, reads what it
// writes and waits for its end; in an order of its own, since a program finds the caches as the one
// before has left them. Prints one line a run: number of the program, time in nanoseconds,
// processor time in microseconds, peak memory in KiB, page faults that took no input. A program
// that fails, or does not write the same each time, ends the measuring.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>

#include "Child.h"

namespace {

using Bench::Fail;

long Microseconds(const timeval& time) {
  return time.tv_sec * 1'000'000L + time.tv_usec;
}

struct Contender {
  char** command;
  std::string output;  // of its first run
};

void Run(Contender& contender, std::size_t number, const char* input_path) {
  const int input = open(input_path, O_RDONLY | O_CLOEXEC);
  if (input < 0) Fail(input_path);
  const Bench::Pipe output = Bench::OpenPipe();

  const long begin = Bench::Now();
  const pid_t child = Bench::Start(contender.command, input, output.write_end);
  close(output.write_end);
  std::string text;
  for (std::string more; !(more = Bench::ReadSome(output.read_end)).empty();) text += more;
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) < 0) Fail("wait4");
  const long time = Bench::Now() - begin;

  close(output.read_end);
  close(input);
  if (contender.output.empty()) contender.output = text;
  if (status != 0 || text.empty() || text != contender.output) {
    std::fprintf(stderr, "%s: status %d, output: %s\n", *contender.command, status, text.c_str());
    std::exit(EXIT_FAILURE);
  }
  std::printf("%zu %ld %ld %ld %ld\n", number, time,
              Microseconds(usage.ru_utime) + Microseconds(usage.ru_stime), usage.ru_maxrss,
              usage.ru_minflt);
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 4) return 2;
  const long rounds = std::strtol(arguments[1], nullptr, 10);
  std::vector<Contender> contenders;
  for (char** command : Bench::Commands(arguments)) contenders.push_back({command, {}});
  std::vector<std::size_t> order(contenders.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::minstd_rand random;  // NOLINT(cert-msc51-cpp): the same orders in every run
  for (long round = 0; round < rounds; ++round) {
    std::shuffle(order.begin(), order.end(), random);
    for (const std::size_t i : order) Run(contenders[i], i, arguments[2]);
  }
}
