#include "WorkerProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

#include "WorkerError.h"

namespace {

using Clock = WorkerProcess::Clock;
using std::chrono::milliseconds;

constexpr std::chrono::seconds kStopLimit{2};  // a worker closes its port within a second
constexpr milliseconds kStopStep{5};

void Check(int error, const char* call) {
  if (error != 0) throw std::system_error(error, std::generic_category(), call);
}

void CheckErrno(int result, const char* call) {
  if (result < 0) Check(errno, call);
}

// What the child is started with. The host's signals stay its own: a worker that is born with
// SIGTERM blocked or ignored could only be killed.
class SpawnSetup {
 public:
  SpawnSetup(int input, int output) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_adddup2(&actions_, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGPIPE}) sigaddset(&signals, signal);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSetup() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;

  pid_t Start(const std::string& program) const {
    pid_t pid = -1;
    char* arguments[] = {const_cast<char*>(program.c_str()), nullptr};
    Check(posix_spawn(&pid, program.c_str(), &actions_, &attributes_, arguments, environ),
          program.c_str());
    return pid;
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

// Whether the descriptor can be read from, or written to, before the end.
bool IsPossible(int descriptor, short event, Clock::time_point end) {
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
    pollfd waited{descriptor, event, 0};
    const int found = poll(&waited, 1, static_cast<int>(std::clamp<long long>(left, 0, 1 << 30)));
    if (found >= 0) return found > 0;
    if (errno != EINTR) CheckErrno(found, "poll");
  }
}

void Wait(int descriptor, short event, Clock::time_point end) {
  if (!IsPossible(descriptor, event, end)) throw WorkerTimeout();
}

}  // namespace

void Descriptor::Close() {
  if (number_ >= 0) close(number_);
  number_ = -1;
}

WorkerProcess::WorkerProcess(const std::string& program) {
  // A pipe for the answers; requests go through a socket, where a worker that has ended gives an
  // error and not SIGPIPE.
  int requests[2];
  int answers[2];
  CheckErrno(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, requests), "socketpair");
  Descriptor childs_input;
  Descriptor childs_output;
  input_.Set(requests[0]);
  childs_input.Set(requests[1]);
  CheckErrno(pipe2(answers, O_CLOEXEC), "pipe2");
  output_.Set(answers[0]);
  childs_output.Set(answers[1]);
  pid_ = SpawnSetup(childs_input.number(), childs_output.number()).Start(program);
}

WorkerProcess::~WorkerProcess() {
  Stop();
}

bool WorkerProcess::IsReady() const {
  return answers_.IsEmpty() && !IsPossible(output_.number(), POLLIN, Clock::now());
}

std::string WorkerProcess::Exchange(const std::string& line, Clock::time_point end) {
  Send(line, end);
  for (;;) {
    if (auto answer = answers_.Take()) return *std::move(answer);
    Wait(output_.number(), POLLIN, end);
    char chunk[65536];
    const ssize_t size = read(output_.number(), chunk, sizeof chunk);
    if (size < 0 && errno == EINTR) continue;
    CheckErrno(static_cast<int>(size), "read");
    if (size == 0) ThrowEnded();
    answers_.Feed(chunk, static_cast<std::size_t>(size));
  }
}

void WorkerProcess::Send(const std::string& line, Clock::time_point end) {
  for (std::size_t sent = 0; sent < line.size();) {
    Wait(input_.number(), POLLOUT, end);
    const ssize_t size =
        send(input_.number(), line.data() + sent, line.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (size >= 0) {
      sent += static_cast<std::size_t>(size);
    } else if (errno == EPIPE || errno == ECONNRESET) {
      ThrowEnded();
    } else if (errno != EINTR && errno != EAGAIN) {
      CheckErrno(-1, "send");
    }
  }
}

void WorkerProcess::Close() {
  input_.Close();
  if (!HasEnded()) Stop();
}

void WorkerProcess::Stop() {
  Signal(SIGTERM);
  if (!HasEnded()) {
    Signal(SIGKILL);
    HasEnded();
  }
}

void WorkerProcess::ThrowEnded() {
  if (!HasEnded()) Stop();
  throw WorkerEnded(status_);
}

void WorkerProcess::Signal(int signal) const {
  if (pid_ > 0) kill(pid_, signal);
}

bool WorkerProcess::HasEnded() {
  const auto end = Clock::now() + kStopLimit;
  while (pid_ > 0) {
    const pid_t ended = waitpid(pid_, &status_, WNOHANG);
    if (ended == pid_ || (ended < 0 && errno != EINTR)) {
      pid_ = -1;
    } else if (Clock::now() >= end) {
      return false;
    } else {
      std::this_thread::sleep_for(kStopStep);
    }
  }
  return true;
}
