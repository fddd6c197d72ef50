#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

#include "GantryCore/IPrinterLibrary.h"
#include "corefoundation/Foundation.h"
#include "printer_control/StatusReply.h"
#include "printer_control/TransferTrace.h"
#include "printer_io/CZIOCommon.h"
#include "printer_io/RemoteMode.h"
#include "printer_io/ZIOPlugin.h"
#include "printer_io/ZIOSearchPrinter.h"

namespace Ravik {
namespace {

constexpr int kReplySize = 512;
constexpr char szCrLf[] = {'\r', '\n'};

using ReplyBuffer = std::array<char, kReplySize>;
using StatusBuffer = std::array<char, ZIO_STATUS_BUFFER_SIZE>;

// The port of the stored printer record, not yet open; null without a complete record.
std::unique_ptr<CZIOCommon> MakePort(const std::string& printer_name) {
  const CFRef<CFStringRef> name(
      CFStringCreateWithCString(kCFAllocatorDefault, printer_name.c_str(), kCFStringEncodingUTF8));
  const CFRef<CFDictionaryRef> record = ZIOSearchPrinter::GetPrinterInfo(name.get());
  if (!record) return nullptr;
  const auto type =
      CFCast<CFNumberRef>(CFDictionaryGetValue(record.get(), CFSTR(ZIO_INFO_IOX_TYPE)));
  const auto address =
      CFCast<CFDataRef>(CFDictionaryGetValue(record.get(), CFSTR(ZIO_INFO_ADDRESS)));
  if (type == nullptr || address == nullptr) return nullptr;
  return std::unique_ptr<CZIOCommon>(new (std::nothrow) CZIOCommon(address, type));
}

std::string_view View(const CommandVO& command) {
  return {reinterpret_cast<const char*>(command.bytes().data()), command.bytes().size()};
}

// A copy that the port may be given for writing.
std::vector<char> PortBytes(const CommandVO& command) {
  const std::string_view bytes = View(command);
  return {bytes.begin(), bytes.end()};
}

std::vector<char> InRemoteMode(const CommandVO& command) {
  const std::string_view bytes = View(command);
  std::vector<char> framed(sizeof(CMD_REMOTE_START) + bytes.size() + sizeof(CMD_REMOTE_END));
  auto next = std::copy(std::begin(CMD_REMOTE_START), std::end(CMD_REMOTE_START), framed.begin());
  next = std::copy(bytes.begin(), bytes.end(), next);
  std::copy(std::begin(CMD_REMOTE_END), std::end(CMD_REMOTE_END), next);
  return framed;
}

// Port operations take no bytes as a null pointer.
char* Pointer(std::vector<char>& bytes) {
  return bytes.empty() ? nullptr : bytes.data();
}

long Length(const std::vector<char>& bytes) {
  return static_cast<long>(bytes.size());
}

// Stores what follows CR LF: binary data, which may hold zero bytes, up to the end of the buffer. A
// length word that promises more is cut to what is there.
void StoreStatus(const char* begin, const char* end, StatusReply& status) {
  constexpr long kLengthWord = 2;
  std::array<unsigned char, ZIO_STATUS_BUFFER_SIZE> reply{};
  std::memcpy(reply.data(), begin, static_cast<std::size_t>(end - begin));
  const long available = std::max(end - begin - kLengthWord, 0L);
  const long length = std::min<long>(reply[0] | (reply[1] << 8), available);
  reply[0] = static_cast<unsigned char>(length & 0xFF);
  reply[1] = static_cast<unsigned char>(length >> 8);
  status.SetReply(reply.data());
}

}  // namespace

IPrinterLibrary::~IPrinterLibrary() {
  Terminate();
}

void IPrinterLibrary::Initialize() {
  if (port_ == nullptr) port_ = new (std::nothrow) std::unique_ptr<CZIOCommon>();
}

void IPrinterLibrary::Terminate() {
  delete port_;
  port_ = nullptr;
}

CZIOCommon* IPrinterLibrary::Port() const {
  return port_ == nullptr ? nullptr : port_->get();
}

bool IPrinterLibrary::OpenLibrary(const std::string& printer_name) {
  if (port_ == nullptr) return false;
  try {
    *port_ = MakePort(printer_name);
    if (*port_ == nullptr) TransferTrace::UnknownPrinter(printer_name);
    if (*port_ != nullptr && (*port_)->OpenPrinterPort() == 0) return true;
  } catch (const NSException&) {
    // The stored record is not what it should be: the printer cannot be opened.
  }
  port_->reset();
  return false;
}

bool IPrinterLibrary::CloseLibrary() {
  if (Port() == nullptr) return false;
  Port()->ClosePrinterPort();
  return true;
}

bool IPrinterLibrary::SendCommand(const CommandVO& command, CommandVO* reply) {
  if (Port() == nullptr) return false;
  std::vector<char> bytes = InRemoteMode(command);
  if (reply == nullptr) return Port()->SendWriteCommand(Pointer(bytes), Length(bytes), 1) == 0;
  ReplyBuffer buffer{};
  if (Port()->SendWriteAndReadCommand(Pointer(bytes), Length(bytes), buffer.data(), kReplySize) !=
      0) {
    return false;
  }
  reply->Append(buffer.data(), kReplySize);
  return true;
}

bool IPrinterLibrary::SendCommandD4(const CommandVO& command, CommandVO* reply) {
  if (Port() == nullptr) return false;
  std::vector<char> bytes = PortBytes(command);
  ReplyBuffer buffer{};
  if (Port()->D4_SendWriteAndReadCommand(Pointer(bytes), Length(bytes), buffer.data(),
                                         kReplySize) != 0) {
    return false;
  }
  if (reply != nullptr) reply->Append(buffer.data(), kReplySize);
  return true;
}

bool IPrinterLibrary::SendSpooler(const CommandVO& data) {
  if (Port() == nullptr) return false;
  std::vector<char> bytes = PortBytes(data);
  return Port()->SendWriteCommand(Pointer(bytes), Length(bytes), 0) == 0;
}

bool IPrinterLibrary::IsNetworkAccess() const {
  return Port() != nullptr && Port()->IsTCPIPConnection() == 1;
}

bool IPrinterLibrary::GetStatus(StatusReply& status) {
  if (Port() == nullptr) return false;
  StatusBuffer text{};
  const char* const port = IsNetworkAccess() ? "snmp" : "local";
  TransferTrace::StatusRequest(port);
  if (Port()->GetStatus(text.data()) != 0) return false;
  const std::string_view first_text(text.data(), strnlen(text.data(), text.size()));
  const std::size_t separator = first_text.find({szCrLf, sizeof(szCrLf)});
  if (separator == std::string_view::npos) {
    ProcessTrace::Write({"worker", port, "failed", {}, "the status text has no CR LF"});
    return false;
  }
  StoreStatus(text.data() + separator + sizeof(szCrLf), text.data() + text.size(), status);
  TransferTrace::Status(port, {text.data(), text.size()}, status);
  return true;
}

bool IPrinterLibrary::Write(const unsigned char* /*bytes*/, long* /*length*/) {
  return false;
}

bool IPrinterLibrary::Flush() {
  return false;
}

}  // namespace Ravik
