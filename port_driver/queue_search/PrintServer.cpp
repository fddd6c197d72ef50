// One exchange with the printing system's server, over libcups.
#include "port_driver/queue_search/PrintServer.h"

#include <cups/cups.h>
#include <signal.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "port_driver/DriverError.h"
#include "port_driver/queue_search/QueueMessage.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

[[noreturn]] void Fail(const std::string& reason) {
  throw DriverError(DriverCode::kSystem, "printing system: " + reason);
}

// The library's set-up ignores SIGPIPE in the whole process, which is for the program to decide
// that has loaded the driver. It goes on to write to sockets that may be closed at the other end;
// the signal then waits in the thread that writes, until that ends.
void SetUpLibrary() {
  struct sigaction before {};
  ::sigaction(SIGPIPE, nullptr, &before);
  httpInitialize();
  ::sigaction(SIGPIPE, &before, nullptr);
}

void BlockSigpipe() {
  sigset_t set;
  ::sigemptyset(&set);
  ::sigaddset(&set, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

// A search that has not ended must not be joined by ever more of them.
class Turn {
 public:
  Turn() {
    if (taken_.exchange(true)) {
      Fail("an earlier search still waits for the server");
    }
  }
  ~Turn() { taken_ = false; }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  static std::atomic<bool> taken_;
};

std::atomic<bool> Turn::taken_{false};

// Shared by the thread that asks and the one that waits, whichever lives longer.
class Exchange {
 public:
  // The server's answer.
  std::string Run(const Deadline& deadline);

  // Ends the exchange, from another thread.
  void Cancel();

 private:
  class Opened;

  std::mutex mutex_;
  bool cancelled_ = false;
  int socket_ = -1;  // while the connection is open
};

// Lets the connection be shut down while it is there.
class Exchange::Opened {
 public:
  Opened(Exchange& exchange, http_t* http) : exchange_(exchange) { Set(httpGetFd(http)); }
  ~Opened() { Set(-1); }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

 private:
  void Set(int socket) {
    const std::lock_guard<std::mutex> lock(exchange_.mutex_);
    exchange_.socket_ = socket;
    if (exchange_.cancelled_ && socket >= 0) {
      ::shutdown(socket, SHUT_RDWR);
    }
  }

  Exchange& exchange_;
};

void Exchange::Cancel() {
  const std::lock_guard<std::mutex> lock(mutex_);
  cancelled_ = true;
  if (socket_ >= 0) {
    ::shutdown(socket_, SHUT_RDWR);
  }
}

// Not cupsDoRequest, which asks for passwords, tries again for as long as it sees fit, and sets no
// limit to the answer.
void Send(http_t* http, ipp_t* request) {
  httpClearFields(http);
  httpSetField(http, HTTP_FIELD_CONTENT_TYPE, "application/ipp");
  httpSetLength(http, ippLength(request));
  if (httpPost(http, "/") != 0 || ippWrite(http, request) != IPP_STATE_DATA ||
      httpFlushWrite(http) < 0) {
    Fail("the server took no request");
  }
}

std::string Receive(http_t* http) {
  http_status_t status = HTTP_STATUS_CONTINUE;
  while (status == HTTP_STATUS_CONTINUE) {
    status = httpUpdate(http);
  }
  if (status != HTTP_STATUS_OK) {
    Fail("the server answered " + Ravik::Printable(httpStatus(status)));
  }
  std::string answer;
  std::vector<char> buffer(std::size_t{1} << 16);
  ssize_t count = 0;
  while ((count = httpRead2(http, buffer.data(), buffer.size())) > 0) {
    answer.append(buffer.data(), static_cast<std::size_t>(count));
    if (answer.size() > kMaximumAnswerLength) {
      Fail("the server's answer is longer than " + std::to_string(kMaximumAnswerLength) + " bytes");
    }
  }
  return answer;  // one that is cut off cannot be read
}

std::string Exchange::Run(const Deadline& deadline) {
  const Turn turn;
  const int timeout = std::max(deadline.PollTimeout(), 1);  // 0 stands for no time-out
  const std::unique_ptr<http_t, void (*)(http_t*)> http(
      httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, timeout,
                   nullptr),
      httpClose);
  if (!http) {
    Fail(std::string("no server: ") + Ravik::Printable(cupsLastErrorString()));
  }
  const Opened opened(*this, http.get());
  const IppMessage request = MakeQueueRequest();
  Send(http.get(), request.get());
  return Receive(http.get());
}

}  // namespace

std::vector<Queue> AskForQueues(const Deadline& deadline) {
  const auto exchange = std::make_shared<Exchange>();
  SetUpLibrary();
  std::packaged_task<std::string()> task([exchange, deadline] {
    BlockSigpipe();
    return exchange->Run(deadline);
  });
  std::future<std::string> answer = task.get_future();
  std::thread(std::move(task)).detach();
  if (answer.wait_for(std::chrono::milliseconds(deadline.PollTimeout())) !=
      std::future_status::ready) {
    exchange->Cancel();
    throw DriverError(DriverCode::kTimeout, "printing system: the server did not answer in time");
  }
  return ReadQueueAnswer(answer.get());
}

}  // namespace ZIOP
