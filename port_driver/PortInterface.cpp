// Slots of the port I/O interface.
#include "port_driver/PortInterface.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "corefoundation/Foundation.h"
#include "port_driver/DriverTrace.h"
#include "port_driver/FunctionTable.h"
#include "port_driver/LocalPort.h"
#include "port_driver/NetworkPort.h"

namespace ZIOP {
namespace {

std::string_view Bytes(const char* bytes, int64_t length) {
  Require(length >= 0 && (bytes != nullptr || length == 0), "bytes are missing or of no length");
  return {bytes, static_cast<std::size_t>(length)};
}

// A port is opened for every operation, mostly the same: the latest text is not read again.
std::shared_ptr<const DeviceURI> ReadURI(std::string_view text) {
  struct Latest {
    std::string text;
    std::shared_ptr<const DeviceURI> uri;
  };
  thread_local Latest latest;
  if (latest.uri == nullptr || text != latest.text) {
    latest = {std::string(text), std::make_shared<DeviceURI>(DeviceURI::Parse(text))};
  }
  return latest.uri;
}

std::unique_ptr<Port> MakePort(std::shared_ptr<const DeviceURI> uri) {
  if (uri->isLocal()) {
    return std::make_unique<LocalPort>(std::move(uri));
  }
  return std::make_unique<NetworkPort>(std::move(uri));
}

class PortInterface : public ZIOPortInterface {
 public:
  PortInterface();

  void Initialise(int version, const ZIOOpenParameter* parameter);
  void Terminate();
  void Open() { port().Open(); }
  void Close();
  void Control(long selector, void* block);
  void Cancel() { port().Cancel(); }
  void Write(char* bytes, long* length);
  void Flush(unsigned char) { port().Flush(); }
  void Tab() { port().Flush(); }
  void Status(char* buffer);
  void Read(char* buffer, long* length);
  void WriteAndRead(ControlElement* block);
  void GetInfo(ZIOXInfo* info);

  void Report(DriverCode code, const char* message) noexcept;

 private:
  Port& port();
  void ExchangeSnmp(ZIOSnmpExchange& block);

  ZIOErrorCallback callback_ = nullptr;
  void* context_ = nullptr;
  std::unique_ptr<Port> port_;         // from initialise to terminate
  const char* port_name_ = "network";  // in a trace
};

PortInterface& Self(ZIOPortInterface* interface) {
  return *static_cast<PortInterface*>(interface);
}

template <auto Operation, typename... Arguments>
int Slot(ZIOPortInterface* interface, Arguments... arguments) noexcept {
  PortInterface& self = Self(interface);
  return Guard([&] { (self.*Operation)(arguments...); },
               [&](DriverCode code, const char* message) { self.Report(code, message); });
}

// Tells the error callback nothing: it may come from there, from another thread or from a signal
// handler. On an initialised interface it does not throw.
int Cancel(ZIOPortInterface* interface) noexcept {
  return Guard([&] { Self(interface).Cancel(); }, [](DriverCode, const char*) {});
}

int Release(ZIOPortInterface* interface) noexcept {
  delete &Self(interface);
  return 0;
}

constexpr ZIOPortTable kTable = {
    nullptr,
    Release,
    Slot<&PortInterface::Initialise>,
    Slot<&PortInterface::Terminate>,
    Slot<&PortInterface::Open>,
    Slot<&PortInterface::Close>,
    Slot<&PortInterface::Control>,
    Cancel,
    Slot<&PortInterface::Write>,
    Slot<&PortInterface::Flush>,
    Slot<&PortInterface::Tab>,
    Slot<&PortInterface::Status>,
    Slot<&PortInterface::Read>,
    Slot<&PortInterface::WriteAndRead>,
    Slot<&PortInterface::GetInfo>,
};

PortInterface::PortInterface() : ZIOPortInterface{&kTable} {}

Port& PortInterface::port() {
  Require(port_ != nullptr, "the interface is not initialised");
  return *port_;
}

void PortInterface::Initialise(int version, const ZIOOpenParameter* parameter) {
  Require(parameter != nullptr, "no open parameters");
  callback_ = parameter->errorCallback;
  context_ = parameter->context;
  Require(port_ == nullptr, "the interface is initialised already");
  if (version != ZIO_INTERFACE_VERSION) {
    throw DriverError(DriverCode::kUnsupported, "unknown version of the interface");
  }
  const CFDataRef address = CFCast<CFDataRef>(parameter->portInformation);
  Require(address != nullptr, "the port information is no data");
  const auto* bytes = reinterpret_cast<const char*>(CFDataGetBytePtr(address));
  const std::string_view text = Bytes(bytes, CFDataGetLength(address));
  auto uri = ReadURI(text);
  port_name_ = uri->isLocal() ? "local" : "network";
  if (IsTraced()) Trace(port_name_, "open", {}, Ravik::TraceQuoted(text, kMaximumURILength));
  port_ = MakePort(std::move(uri));
}

void PortInterface::Terminate() {
  Require(port_ != nullptr, "the interface is not initialised");
  port_.reset();
}

void PortInterface::Close() {
  port().Close();
  Trace(port_name_, "close", {});
}

void PortInterface::Control(long selector, void* block) {
  if (selector != ZIO_IOCTL_SNMP_EXCHANGE) {
    throw DriverError(DriverCode::kUnsupported, "unknown selector of the ioctl slot");
  }
  Require(block != nullptr, "no block");
  ExchangeSnmp(*static_cast<ZIOSnmpExchange*>(block));
}

void PortInterface::ExchangeSnmp(ZIOSnmpExchange& block) {
  const std::size_t capacity = Bytes(block.answer, block.answerLength).size();
  const std::string_view answer = port().ExchangeSnmp(Bytes(block.request, block.requestLength));
  if (answer.size() <= capacity) {
    std::copy(answer.begin(), answer.end(), block.answer);
  } else {
    // The port's own buffer; the block only ever has it read.
    block.answer = const_cast<char*>(answer.data());
  }
  block.answerLength = static_cast<int64_t>(answer.size());
}

void PortInterface::Write(char* bytes, long* length) {
  Require(length != nullptr, "no length");
  port().Write(Bytes(bytes, *length));
}

void PortInterface::Status(char* buffer) {
  Require(buffer != nullptr, "no buffer");
  const std::string status = port().Status();
  const std::size_t length = std::min<std::size_t>(status.size(), ZIO_STATUS_BUFFER_SIZE - 1);
  std::memcpy(buffer, status.data(), length);
  buffer[length] = 0;
}

void PortInterface::Read(char* buffer, long* length) {
  Require(length != nullptr, "no length");
  const std::size_t capacity = Bytes(buffer, *length).size();
  *length = static_cast<long>(port().Read(buffer, capacity));
}

void PortInterface::WriteAndRead(ControlElement* block) {
  Require(block != nullptr, "no block");
  const std::size_t capacity = Bytes(block->reply, block->replyLength).size();
  port().Control(Bytes(block->command, block->commandLength), block->reply, capacity);
}

void PortInterface::GetInfo(ZIOXInfo*) {
  throw DriverError(DriverCode::kUnsupported, "the driver has no information record");
}

void PortInterface::Report(DriverCode code, const char* message) noexcept {
  TraceFailure(port_name_, code, message);
  if (callback_ == nullptr) {
    return;
  }
  char text[512] = {};  // the callback may write into it
  std::strncpy(text, message, sizeof text - 1);
  callback_(context_, static_cast<int>(code), text);
}

}  // namespace

ZIOPortInterface* MakePortInterface() {
  return new PortInterface;
}

}  // namespace ZIOP
