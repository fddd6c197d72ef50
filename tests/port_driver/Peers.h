// Printers for the tests: a UDP and a TCP side on the loopback interface that follow a script in a
// thread of their own.
#ifndef TESTS_PORT_DRIVER_PEERS_H_
#define TESTS_PORT_DRIVER_PEERS_H_

#include <sys/socket.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "port_driver/FileDescriptor.h"

namespace ZIOP {

// Options of device URIs for tests in which the printer does what is waited for, so that the wait
// never decides the result, and for tests in which it does not.
constexpr const char* kPatient = "timeout=20000&retries=0";
constexpr const char* kBrief = "timeout=20&retries=2";

// A socket bound to the loopback address of family (AF_INET or AF_INET6); port 0 takes a free one.
FileDescriptor BindLoopback(int family, int type, uint16_t port = 0);
uint16_t PortOf(const FileDescriptor& socket);

// A port of the loopback interface that nobody listens on.
uint16_t RefusingPort(int type);

// Answers datagrams. The script gets each request with its number, from 1, and gives the datagrams
// that go back.
class UdpPeer {
 public:
  using Script = std::function<std::vector<std::string>(const std::string& request, int number)>;

  explicit UdpPeer(Script script, uint16_t port = 0, int family = AF_INET);
  ~UdpPeer();

  uint16_t port() const { return PortOf(socket_); }
  int count() const { return count_; }

 private:
  void Run();

  Script script_;
  FileDescriptor socket_;
  FileDescriptor stop_;
  std::atomic<int> count_{0};
  std::thread thread_;
};

// Takes connections, one after the other, and hands each to the script, which may read to the end
// and write. The connection is closed when the script returns.
class TcpPeer {
 public:
  // stop becomes readable when the peer is to end.
  using Script = std::function<void(int connection, int stop)>;

  explicit TcpPeer(Script script);
  ~TcpPeer();

  uint16_t port() const { return PortOf(socket_); }

 private:
  void Run();

  Script script_;
  FileDescriptor socket_;
  FileDescriptor stop_;
  std::thread thread_;
};

// Blocking helpers for scripts.
std::string ReadExactly(int connection, std::size_t length);
std::string ReadToEnd(int connection);
void SendAll(int connection, std::string_view bytes);
void WaitFor(int descriptor);
void ResetConnection(int connection);

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_PEERS_H_
