#include "tests/end_to_end/Process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace {

constexpr std::chrono::seconds kPatience(60);

[[noreturn]] void Fail(const char* call) {
  throw std::runtime_error(std::string(call) + ": error " + std::to_string(errno));
}

void CloseOnce(int& descriptor) {
  if (descriptor >= 0) close(descriptor);
  descriptor = -1;
}

[[noreturn]] void Execute(const std::vector<std::string>& command,
                          const Process::Environment& environment, const std::string& errorFile,
                          int input, int output) {
  const int errors = open(errorFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  for (const auto& [name, text] : environment) setenv(name.c_str(), text.c_str(), 1);
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

Process::Process(const std::vector<std::string>& command, const Environment& environment,
                 const std::string& errorFile) {
  std::signal(SIGPIPE, SIG_IGN);
  int input[2];
  int output[2];
  if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) Fail("pipe2");
  pid_ = fork();
  if (pid_ < 0) Fail("fork");
  if (pid_ == 0) {
    std::signal(SIGPIPE, SIG_DFL);
    Execute(command, environment, errorFile, input[0], output[1]);
  }
  close(input[0]);
  close(output[1]);
  input_ = input[1];
  output_ = output[0];
}

Process::~Process() {
  CloseOnce(input_);
  CloseOnce(output_);
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

void Process::Write(const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = write(input_, text.data() + done, text.size() - done);
    if (count < 0 && errno == EPIPE) return;
    if (count < 0 && errno != EINTR) Fail("write");
    if (count > 0) done += static_cast<std::size_t>(count);
  }
}

void Process::CloseInput() {
  CloseOnce(input_);
}

bool Process::ReadSome(std::string& text, Clock::time_point deadline) {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  pollfd ready{output_, POLLIN, 0};
  if (left <= 0 || poll(&ready, 1, static_cast<int>(left)) == 0) {
    throw std::runtime_error("no answer within a minute; so far: " + text);
  }
  char buffer[65536];
  const ssize_t count = read(output_, buffer, sizeof buffer);
  if (count < 0 && errno != EINTR) Fail("read");
  if (count > 0) text.append(buffer, static_cast<std::size_t>(count));
  return count != 0;
}

std::string Process::ReadUntil(const std::function<bool(const std::string&)>& complete) {
  const auto deadline = Clock::now() + kPatience;
  std::string text;
  while (!complete(text) && ReadSome(text, deadline)) {
  }
  return text;
}

std::string Process::ReadAll() {
  CloseInput();
  return ReadUntil([](const std::string&) { return false; });
}

void Process::Signal(int number) const {
  kill(pid_, number);
}

int Process::Wait() {
  const auto deadline = Clock::now() + kPatience;
  int status = 0;
  while (waitpid(pid_, &status, WNOHANG) == 0) {
    if (Clock::now() > deadline) throw std::runtime_error("the process does not end");
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  pid_ = -1;
  return status;
}
