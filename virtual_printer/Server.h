// The printer's ports, served by one thread.
#ifndef VIRTUAL_PRINTER_SERVER_H_
#define VIRTUAL_PRINTER_SERVER_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "virtual_printer/Connection.h"
#include "virtual_printer/Faults.h"
#include "virtual_printer/FileDescriptor.h"
#include "virtual_printer/Printer.h"
#include "virtual_printer/SnmpAgent.h"
#include "virtual_printer/Terminal.h"
#include "virtual_printer/Trace.h"

struct pollfd;

namespace VirtualPrinter {

class Server {
 public:
  // Binds the network ports on a numeric address; port 0 is any free one. Printer, faults and
  // trace must outlive the server. Throws std::system_error.
  Server(const std::string& address, std::uint16_t snmp_port, std::uint16_t raw_port,
         Printer& printer, Faults& faults, Trace& trace);

  std::uint16_t SnmpPort() const;
  std::uint16_t RawPort() const;

  // Adds a local port, linked at `path`. Throws std::system_error.
  void OfferLocalPort(const std::string& path);

  // Serves until `stop_fd` becomes readable.
  void Run(int stop_fd);

 private:
  using Clock = std::chrono::steady_clock;
  using Id = std::uint64_t;
  struct Delayed {
    Clock::time_point due;
    std::function<void()> send;
  };

  std::vector<pollfd> Polled(int stop_fd) const;
  int TimeoutMs() const;
  void Handle(const std::vector<pollfd>& polled);

  void ReceiveDatagram();
  void Accept();
  void AcceptLocal();
  void Serve(Id id, Connection& connection);
  void Answer(Id id, Connection& connection, const Bytes& command);
  void RemoveEnded();

  // Calls `send` once the delay has passed, twice if a fault asks for that.
  void SendLater(const std::function<void()>& send);
  void SendDue();

  Printer& printer_;
  Faults& faults_;
  Trace& trace_;
  SnmpAgent agent_;
  FileDescriptor snmp_;
  FileDescriptor listener_;
  std::map<Id, Connection> connections_;
  Id next_id_ = 0;
  std::unique_ptr<Terminal> terminal_;  // null without a local port
  std::optional<Id> local_;             // its connection while a host has it open
  std::deque<Delayed> delayed_;         // all with the same delay, so in order
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_SERVER_H_
