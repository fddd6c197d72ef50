// The printer's ports, served by one thread.
#include "virtual_printer/Server.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "virtual_printer/Sockets.h"

namespace VirtualPrinter {
namespace {

constexpr std::size_t kConnectionsMax = 64;
constexpr std::size_t kDatagramMax = 65536;
// With so many answers under way no more requests are read.
constexpr std::size_t kDelayedMax = 4096;
// Nothing tells when a host opens the local port, so it is looked at that often.
constexpr std::chrono::milliseconds kLocalPortInterval(10);

short Events(const Connection& connection, bool is_busy) {
  const bool reads = !is_busy && !connection.HasEnded() && !connection.IsChoked();
  return static_cast<short>((reads ? POLLIN : 0) | (connection.HasOutput() ? POLLOUT : 0));
}

}  // namespace

Server::Server(const std::string& address, std::uint16_t snmp_port, std::uint16_t raw_port,
               Printer& printer, Faults& faults, Trace& trace)
    : printer_(printer),
      faults_(faults),
      trace_(trace),
      agent_(printer, faults, trace),
      snmp_(BindDatagramSocket(address, snmp_port)),
      listener_(ListenOnStreamSocket(address, raw_port)) {}

std::uint16_t Server::SnmpPort() const {
  return BoundPort(snmp_);
}
std::uint16_t Server::RawPort() const {
  return BoundPort(listener_);
}

void Server::OfferLocalPort(const std::string& path) {
  terminal_ = std::make_unique<Terminal>(path);
}

void Server::Run(int stop_fd) {
  for (;;) {
    AcceptLocal();
    std::vector<pollfd> polled = Polled(stop_fd);
    const int ready = poll(polled.data(), static_cast<nfds_t>(polled.size()), TimeoutMs());
    if (ready < 0 && errno != EINTR) ThrowSystemError("poll");
    if (ready > 0 && polled.front().revents != 0) return;
    SendDue();
    if (ready > 0) Handle(polled);
    RemoveEnded();
  }
}

std::vector<pollfd> Server::Polled(int stop_fd) const {
  const bool is_busy = delayed_.size() >= kDelayedMax;
  const bool accepts = connections_.size() < kConnectionsMax;
  std::vector<pollfd> polled = {{stop_fd, POLLIN, 0},
                                {is_busy ? -1 : snmp_.get(), POLLIN, 0},
                                {accepts ? listener_.get() : -1, POLLIN, 0}};
  for (const auto& [id, connection] : connections_) {
    // A host that is gone is noticed when its answers leave.
    const short events = Events(connection, is_busy);
    polled.push_back({events != 0 ? connection.Fd() : -1, events, 0});
  }
  return polled;
}

int Server::TimeoutMs() const {
  using std::chrono::milliseconds;
  const bool looks = terminal_ != nullptr && !local_;
  if (delayed_.empty()) return looks ? static_cast<int>(kLocalPortInterval.count()) : -1;
  auto left = std::chrono::ceil<milliseconds>(delayed_.front().due - Clock::now());
  if (looks) left = std::min(left, kLocalPortInterval);
  return static_cast<int>(std::max(left, milliseconds(0)).count());
}

void Server::Handle(const std::vector<pollfd>& polled) {
  auto at = polled.begin() + 3;
  for (auto& [id, connection] : connections_) {
    const short events = (at++)->revents;
    if ((events & POLLOUT) != 0) connection.Flush();
    if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) Serve(id, connection);
  }
  if (polled[1].revents != 0) ReceiveDatagram();
  if (polled[2].revents != 0) Accept();
}

void Server::ReceiveDatagram() {
  std::array<std::uint8_t, kDatagramMax> buffer;
  sockaddr_storage host{};
  socklen_t host_size = sizeof host;
  const ssize_t size = recvfrom(snmp_.get(), buffer.data(), buffer.size(), 0,
                                reinterpret_cast<sockaddr*>(&host), &host_size);
  if (size < 0) return;
  const Bytes datagram(buffer.data(), buffer.data() + size);
  trace_.Write(Port::kSnmp, "recv", datagram);
  const auto answer = agent_.Answer(datagram);
  if (!answer) return;
  SendLater([this, answer = *answer, host, host_size] {
    trace_.Write(Port::kSnmp, "send", answer);
    // An answer that cannot leave is lost, as datagrams may be.
    (void)sendto(snmp_.get(), answer.data(), answer.size(), 0,
                 reinterpret_cast<const sockaddr*>(&host), host_size);
  });
}

void Server::Accept() {
  FileDescriptor socket(accept(listener_.get(), nullptr, nullptr));
  if (!socket) return;
  fcntl(socket.get(), F_SETFD, FD_CLOEXEC);
  SetNonBlocking(socket);
  connections_.emplace(next_id_++, Connection(std::move(socket), Port::kRaw));
}

void Server::AcceptLocal() {
  if (terminal_ == nullptr || local_ || !terminal_->HasHost()) return;
  local_ = next_id_++;
  connections_.emplace(*local_, Connection(terminal_->Connect(), Port::kLocal));
}

void Server::Serve(Id id, Connection& connection) {
  const bool may_reset = connection.Kind() == Port::kRaw && !connection.HasReceived();
  const Bytes received = connection.Receive();
  if (received.empty()) return;
  trace_.Write(connection.Kind(), "recv", received);
  if (may_reset && faults_.Strikes(FaultKind::kReset)) {
    trace_.Write(connection.Kind(), "reset", {});
    connection.Reset();
    return;
  }
  for (const auto& command : connection.Commands(received)) Answer(id, connection, command);
}

void Server::Answer(Id id, Connection& connection, const Bytes& command) {
  if (faults_.LosesRequest()) {
    trace_.Write(connection.Kind(), "lost", command);
    return;
  }
  Bytes reply = printer_.Execute(connection.Kind(), command);
  faults_.Spoil(reply);
  SendLater([this, id, reply = std::move(reply)] {
    const auto found = connections_.find(id);
    if (found == connections_.end()) return;
    trace_.Write(found->second.Kind(), "send", reply);
    found->second.Send(reply);
  });
}

void Server::RemoveEnded() {
  if (local_ && connections_.at(*local_).HasEnded()) {
    connections_.erase(*local_);
    local_.reset();
    terminal_->DropUnread();
  }
  for (auto at = connections_.begin(); at != connections_.end();) {
    const Connection& connection = at->second;
    const bool owes = connection.HasOutput() || !delayed_.empty();
    at = connection.HasEnded() && !owes ? connections_.erase(at) : std::next(at);
  }
}

void Server::SendLater(const std::function<void()>& send) {
  const int times = faults_.Strikes(FaultKind::kDuplicate) ? 2 : 1;
  for (int i = 0; i < times; ++i) delayed_.push_back({Clock::now() + faults_.Delay(), send});
  SendDue();
}

void Server::SendDue() {
  while (!delayed_.empty() && delayed_.front().due <= Clock::now()) {
    const auto send = std::move(delayed_.front().send);
    delayed_.pop_front();
    send();
  }
}

}  // namespace VirtualPrinter
