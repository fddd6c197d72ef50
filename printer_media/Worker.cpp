#include "printer_media/Worker.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iostream>
#include <string_view>
#include <system_error>
#include <utility>

#include "printer_media/Failure.h"
#include "printer_media/Request.h"

namespace PrinterMedia {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestErrors = 256UL * 1024;
constexpr char kDoctor[] = "printer-media doctor tells which worker is used and what it lacks.";

// A pipe that programs which this one starts do not get but by name.
struct Pipe {
  Pipe() {
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
      throw std::system_error(errno, std::generic_category(), "pipe");
    }
    // The sets that are waited for hold no higher ones.
    if (std::max(ends[0], ends[1]) >= FD_SETSIZE) {
      CloseAll();
      throw std::system_error(EMFILE, std::generic_category(), "pipe");
    }
  }
  ~Pipe() { CloseAll(); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void CloseAll() {
    for (const int end : ends) {
      if (end >= 0) close(end);
    }
  }

  // Our end, which waits for nothing.
  int Take(std::size_t end) {
    fcntl(ends[end], F_SETFL, O_NONBLOCK);
    return std::exchange(ends[end], -1);
  }

  std::array<int, 2> ends{-1, -1};
};

class SpawnSetup {
 public:
  SpawnSetup(const Pipe& input, const Pipe& output, const Pipe& errors) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.ends[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors.ends[1], STDERR_FILENO);
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  }
  ~SpawnSetup() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;

  posix_spawn_file_actions_t actions{};
  posix_spawnattr_t attributes{};
};

void Close(int& descriptor) {
  if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

// Appends what is there; false at the end.
bool ReadSome(int descriptor, std::string& text) {
  std::array<char, 16384> buffer;
  const ssize_t count = read(descriptor, buffer.data(), buffer.size());
  if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

// Removes what was taken; all of it when nobody reads any more.
void WriteSome(int descriptor, std::string& text) {
  const ssize_t count = write(descriptor, text.data(), text.size());
  if (count > 0) {
    text.erase(0, static_cast<std::size_t>(count));
  } else if (errno != EAGAIN && errno != EINTR) {
    text.clear();
  }
}

// Whether a line begins as those of a trace: with its time in UTC, and the program.
bool IsOfTrace(const std::string& line) {
  constexpr std::string_view kTime = "0000-00-00T00:00:00.000000Z ";
  const auto is_like = [](char form, char c) {
    return form == '0' ? c >= '0' && c <= '9' : form == c;
  };
  return line.size() > kTime.size() &&
         std::equal(kTime.begin(), kTime.end(), line.begin(), is_like);
}

std::string LastLines(const std::string& text) {
  constexpr std::size_t kMost = 1000;
  return text.size() <= kMost ? text : "..." + text.substr(text.size() - kMost);
}

}  // namespace

fs::path WorkerPath() {
  constexpr char kName[] = "PrinterNativeProcess";
  const char* const set = std::getenv("PRINTER_NATIVE_PROCESS");
  if (set != nullptr && *set != '\0') return set;
  std::error_code failure;
  const fs::path folder = fs::read_symlink("/proc/self/exe", failure).parent_path();
  const fs::path beside = folder / kName;
  const fs::path installed = (folder / PRINTER_MEDIA_WORKER).lexically_normal();
  const bool is_installed = !fs::exists(beside, failure) && fs::exists(installed, failure);
  return is_installed ? installed : beside;
}

Worker::Worker(const fs::path& path) {
  Pipe input;
  Pipe output;
  Pipe errors;
  SpawnSetup setup(input, output, errors);
  std::string program = path.string();
  std::array<char*, 2> arguments{program.data(), nullptr};
  const int failure = posix_spawn(&pid_, program.c_str(), &setup.actions, &setup.attributes,
                                  arguments.data(), environ);
  if (failure != 0) {
    throw Failure(
        Exit::kWorker,
        "the worker " + program + " cannot be started: " + std::generic_category().message(failure),
        "Set PRINTER_NATIVE_PROCESS to the worker's path, or install it beside "
        "printer-media.");
  }
  input_ = input.Take(1);
  output_ = output.Take(0);
  error_output_ = errors.Take(0);
}

Worker::~Worker() {
  Stop();
  for (int* const descriptor : {&input_, &output_, &error_output_}) Close(*descriptor);
}

Answer Worker::Ask(const nlohmann::json& request, std::chrono::milliseconds limit) {
  const auto command = request.at("Command").get<std::string>();
  const Clock::time_point end = Clock::now() + limit;
  std::string line = RequestLine(request);
  std::string text;
  while (Clock::now() < end) {
    Transfer(line, text, end);
    std::optional<Answer> answer = ReadAnswer(text, command);
    if (answer) {
      ReadErrors();
      return std::move(*answer);
    }
    if (is_output_over_) ThrowEnded(command);
  }
  ThrowSilent(command, limit);
}

// Waits for the pipes once, and carries what they take and give.
void Worker::Transfer(std::string& request, std::string& answer, Clock::time_point end) {
  fd_set read;
  fd_set write;
  FD_ZERO(&read);
  FD_ZERO(&write);
  FD_SET(output_, &read);
  if (error_output_ >= 0) FD_SET(error_output_, &read);
  if (!request.empty()) FD_SET(input_, &write);
  Wait(std::max({output_, error_output_, input_}), &read, &write, end);
  if (FD_ISSET(input_, &write)) WriteSome(input_, request);
  if (error_output_ >= 0 && FD_ISSET(error_output_, &read)) ReadErrors();
  if (FD_ISSET(output_, &read)) is_output_over_ = !ReadSome(output_, answer);
}

void Worker::ReadErrors() {
  while (error_output_ >= 0) {
    const std::size_t before = unsorted_.size();
    if (!ReadSome(error_output_, unsorted_)) Close(error_output_);
    if (unsorted_.size() == before) return;
    SortErrors();
  }
}

// The lines of a trace are for whoever asked for it; all else is what the worker complains of.
void Worker::SortErrors() {
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = unsorted_.find('\n', begin)) != std::string::npos;) {
    const std::string line = unsorted_.substr(begin, end + 1 - begin);
    if (IsOfTrace(line)) {
      std::cerr << line;
    } else {
      errors_ += line;
    }
    begin = end + 1;
  }
  unsorted_.erase(0, begin);
  if (errors_.size() > kLongestErrors) errors_.erase(0, errors_.size() - kLongestErrors);
}

// Signals wait meanwhile: what ends a worker is not to be interrupted.
bool Worker::HasEnded(std::chrono::milliseconds limit) {
  const Clock::time_point end = Clock::now() + limit;
  for (;;) {
    if (waitpid(pid_, &status_, WNOHANG) != 0) {
      pid_ = -1;
      return true;
    }
    if (Clock::now() >= end) return false;
    const timespec pause{0, 2000000};
    nanosleep(&pause, nullptr);
  }
}

// The end of its input ends a worker that waits for requests; SIGTERM one that waits for a printer,
// within a second.
void Worker::Stop() {
  using std::chrono::milliseconds;
  if (pid_ < 0) return;
  Close(input_);
  if (HasEnded(milliseconds(300))) return;
  kill(pid_, SIGTERM);
  if (HasEnded(milliseconds(1700))) return;
  kill(pid_, SIGKILL);
  HasEnded(milliseconds(2000));
}

void Worker::ThrowEnded(const std::string& command) {
  Close(input_);
  if (!HasEnded(std::chrono::milliseconds(500))) Stop();
  ReadErrors();
  errors_ += unsorted_;
  const std::string how = WIFSIGNALED(status_)
                              ? "by signal " + std::to_string(WTERMSIG(status_)) + " (" +
                                    strsignal(WTERMSIG(status_)) + ")"
                              : "with status " + std::to_string(WEXITSTATUS(status_));
  std::string message = "the worker ended " + how + " instead of answering " + command;
  if (!errors_.empty()) message += "; it wrote:\n" + LastLines(errors_);
  throw Failure(Exit::kWorker, message, kDoctor);
}

void Worker::ThrowSilent(const std::string& command, std::chrono::milliseconds limit) {
  Stop();
  throw Failure(Exit::kWorker,
                "the worker did not answer " + command + " in " +
                    std::to_string(limit.count() / 1000) + " seconds",
                "Where the printer's device URI sets timeout or retries, give --answer-time with "
                "timeout x (1 + retries).");
}

}  // namespace PrinterMedia
