#include "Child.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace Bench {

void Fail(const std::string& what) {
  std::fprintf(stderr, "%s: %s\n", what.c_str(), std::strerror(errno));
  std::exit(EXIT_FAILURE);
}

Pipe OpenPipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) < 0) Fail("pipe2");
  return {ends[0], ends[1]};
}

pid_t Start(char* const* command, int input, int output) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  pid_t child = -1;
  errno = posix_spawn(&child, command[0], &actions, nullptr, command, environ);
  if (errno != 0) Fail(command[0]);
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

std::vector<char**> Commands(char** arguments) {
  std::vector<char**> commands;
  for (; *arguments != nullptr; ++arguments) {
    if (std::strcmp(*arguments, "--") != 0) continue;
    *arguments = nullptr;
    commands.push_back(arguments + 1);
  }
  return commands;
}

long Now(clockid_t clock) {
  timespec time{};
  if (clock_gettime(clock, &time) < 0) Fail("clock_gettime");
  return time.tv_sec * 1'000'000'000L + time.tv_nsec;
}

std::string ReadSome(int from) {
  static char buffer[65536];
  ssize_t size = 0;
  do {
    size = read(from, buffer, sizeof buffer);
  } while (size < 0 && errno == EINTR);
  if (size < 0) Fail("read");
  return {buffer, static_cast<std::size_t>(size)};
}

std::string ReadFile(const char* path) {
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) Fail(path);
  std::string text;
  for (std::string more; !(more = ReadSome(file)).empty();) text += more;
  close(file);
  return text;
}

}  // namespace Bench
