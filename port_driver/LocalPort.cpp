// Operations of a local port.
#include "port_driver/LocalPort.h"

#include <iterator>

#include "port_driver/DriverError.h"
#include "printer_io/RemoteMode.h"
#include "printer_io/ZIOPlugin.h"

namespace ZIOP {
namespace {

constexpr std::string_view kStatusCommand("ST\x01\x00\x01", 5);  // name, length, what to send

}  // namespace

void LocalPort::Open() {
  StartToOpen(device_ != nullptr);
  device_ = std::make_unique<LocalDevice>(uri(), waiter_);
}

void LocalPort::Close() {
  Stream();
  const auto device = std::move(device_);
  device->Close();
}

std::string_view LocalPort::ExchangeSnmp(std::string_view /*request*/) {
  StartOnOpen(device_ != nullptr);
  throw DriverError(DriverCode::kUnsupported, "a local port carries no SNMP");
}

std::string LocalPort::Status() {
  std::string command(std::begin(Ravik::CMD_REMOTE_START), std::end(Ravik::CMD_REMOTE_START));
  command += kStatusCommand;
  command.append(std::begin(Ravik::CMD_REMOTE_END), std::end(Ravik::CMD_REMOTE_END));
  std::string text(ZIO_STATUS_BUFFER_SIZE - 1, '\0');
  text.resize(Stream().Control(command, text.data(), text.size()));
  return text;
}

ByteStream& LocalPort::Stream() {
  StartOnOpen(device_ != nullptr);
  return *device_;
}

}  // namespace ZIOP
