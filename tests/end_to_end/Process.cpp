#include "tests/end_to_end/Process.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace {

[[noreturn]] void Execute(std::vector<std::string>& command, int socket,
                          const std::string& errorFile) {
  alarm(120);
  for (const int ends : {SIGHUP, SIGINT, SIGTERM, SIGPIPE}) signal(ends, SIG_DFL);
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (std::string& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  dup2(socket, STDIN_FILENO);
  dup2(socket, STDOUT_FILENO);
  dup2(open(errorFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600), STDERR_FILENO);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

Process::Process(std::vector<std::string> command, const std::string& errorFile) {
  int ends[2];
  const int result = socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends);
  if (result == 0) pid_ = fork();
  if (result != 0 || pid_ < 0) throw std::system_error(errno, std::generic_category(), command[0]);
  if (pid_ == 0) Execute(command, ends[1], errorFile);
  close(ends[1]);
  socket_ = ends[0];
}

Process::~Process() {
  Wait(SIGKILL);
  close(socket_);
}

void Process::Write(const std::string& text) const {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = send(socket_, text.data() + done, text.size() - done, MSG_NOSIGNAL);
    if (count < 0) return;
    done += static_cast<std::size_t>(count);
  }
}

std::string Process::ReadUntil(const std::string& end) const {
  std::string text;
  std::array<char, 4096> buffer;
  do {
    const ssize_t count = read(socket_, buffer.data(), buffer.size());
    if (count <= 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  } while (end.empty() || text.size() < end.size() ||
           text.compare(text.size() - end.size(), end.size(), end) != 0);
  return text;
}

std::string Process::ReadAll() const {
  shutdown(socket_, SHUT_WR);
  return ReadUntil("");
}

void Process::CloseOutput() const {
  shutdown(socket_, SHUT_RD);
}

void Process::Signal(int signal) const {
  kill(pid_, signal);
}

int Process::Wait(int signal) {
  int status = 0;
  if (pid_ > 0) {
    kill(pid_, signal);
    waitpid(pid_, &status, 0);
  }
  pid_ = -1;
  return status;
}
