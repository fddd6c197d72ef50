// Times requests to programs that are kept running, one request at a time over pipes, and bare UDP
// exchanges of the same datagram.
//
//     time_requests ROUNDS REQUEST ANSWER [DATAGRAM PORT] -- PROGRAM [ARGUMENT]... [-- ...]...
//
// Each round sends the content of the file REQUEST to every program some times, and each time waits
// until as many bytes have come back as the file ANSWER holds; they must be these. Then it sends
// the file DATAGRAM as often to PORT on 127.0.0.1, each time over a socket of its own, and waits
// for the answer. Prints one line each: number of the program, time and processor time of the
// program in nanoseconds. The exchanges have the number behind the last program's. At the end comes
// one line for each program, "#", its number, and its peak and anonymous memory in KiB.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Child.h"

namespace {

using Bench::Fail;

// Before another program's turn: what one request leaves in the caches is there for the next one.
constexpr int kRequestsInARow = 10;

void Print(std::size_t number, long time, long processor_time) {
  std::printf("%zu %ld %ld\n", number, time, processor_time);
}

class Program {
 public:
  explicit Program(char** command) : name_(command[0]) {
    const Bench::Pipe input = Bench::OpenPipe();
    const Bench::Pipe output = Bench::OpenPipe();
    process_ = Bench::Start(command, input.read_end, output.write_end);
    close(input.read_end);
    close(output.write_end);
    input_ = input.write_end;
    output_ = output.read_end;
    if (clock_getcpuclockid(process_, &clock_) != 0) Fail("clock_getcpuclockid");
  }

  void Ask(const std::string& request, const std::string& answer, std::size_t number) const {
    const long processor_begin = Bench::Now(clock_);
    const long begin = Bench::Now();
    for (std::size_t sent = 0; sent < request.size();) {
      const ssize_t size = write(input_, request.data() + sent, request.size() - sent);
      if (size < 0) Fail(name_);
      sent += static_cast<std::size_t>(size);
    }
    std::string text = Bench::ReadSome(output_);
    while (text.size() < answer.size()) {
      const std::string more = Bench::ReadSome(output_);
      if (more.empty()) break;
      text += more;
    }
    const long time = Bench::Now() - begin;
    if (text != answer) {
      std::fprintf(stderr, "%s: another answer: %s\n", name_, text.c_str());
      std::exit(EXIT_FAILURE);
    }
    Print(number, time, Bench::Now(clock_) - processor_begin);
  }

  void PrintMemory(std::size_t number) const {
    const std::string path = "/proc/" + std::to_string(process_) + "/status";
    const std::string status = Bench::ReadFile(path.c_str());
    std::printf("# %zu %ld %ld\n", number, Field(status, "VmHWM:"), Field(status, "RssAnon:"));
  }

  void End() const {
    close(input_);
    int status = 0;
    if (waitpid(process_, &status, 0) < 0) Fail("waitpid");
    if (status != 0) Fail(name_);
  }

 private:
  static long Field(const std::string& status, const char* name) {
    const std::size_t place = status.find(name);
    if (place == std::string::npos) Fail(name);
    return std::strtol(status.c_str() + place + std::strlen(name), nullptr, 10);
  }

  const char* name_;
  pid_t process_;
  int input_, output_;
  clockid_t clock_;
};

void Exchange(const std::string& datagram, in_port_t port, std::size_t number) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  char buffer[65536];

  const long processor_begin = Bench::Now(CLOCK_PROCESS_CPUTIME_ID);
  const long begin = Bench::Now();
  const int connection = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) < 0 ||
      send(connection, datagram.data(), datagram.size(), 0) < 0 ||
      recv(connection, buffer, sizeof buffer, 0) <= 0) {
    Fail("exchange");
  }
  close(connection);
  const long time = Bench::Now() - begin;
  Print(number, time, Bench::Now(CLOCK_PROCESS_CPUTIME_ID) - processor_begin);
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<Program> programs;
  for (char** command : Bench::Commands(arguments)) programs.emplace_back(command);
  if (count < 5 || programs.empty()) return 2;
  const long rounds = std::strtol(arguments[1], nullptr, 10);
  const std::string request = Bench::ReadFile(arguments[2]);
  const std::string answer = Bench::ReadFile(arguments[3]);
  const bool has_exchange = arguments[4] != nullptr;
  const std::string datagram = has_exchange ? Bench::ReadFile(arguments[4]) : "";
  const auto port =
      static_cast<in_port_t>(has_exchange ? std::strtol(arguments[5], nullptr, 10) : 0);

  for (long round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < programs.size(); ++i) {
      for (int j = 0; j < kRequestsInARow; ++j) programs[i].Ask(request, answer, i);
    }
    for (int j = 0; j < kRequestsInARow && has_exchange; ++j) {
      Exchange(datagram, port, programs.size());
    }
  }
  for (std::size_t i = 0; i < programs.size(); ++i) {
    programs[i].PrintMemory(i);
    programs[i].End();
  }
}
