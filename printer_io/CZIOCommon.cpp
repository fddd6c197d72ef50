#include "printer_io/CZIOCommon.h"

#include <algorithm>
#include <array>
#include <functional>

#include "util/ProcessTrace.h"
#include "util/ZIOLibrary.h"

namespace {

constexpr int kFailure = -1;
constexpr int kAnswerTooLong = -50;
constexpr std::size_t kSnmpBufferSize = 512;
constexpr std::size_t kScratchSize = 4096;

bool IsRange(const char* bytes, long length) {
  return length >= 0 && (bytes != nullptr || length == 0);
}

// Whether length bytes at answer can be read, as far as the worker can tell: not when they run out
// of its own buffer.
bool IsReadable(const char* answer, long length,
                const std::array<char, kSnmpBufferSize>& own_buffer) {
  if (!IsRange(answer, length)) return false;
  const char* const begin = own_buffer.data();
  const char* const end = begin + own_buffer.size();
  const bool in_own_buffer = !std::less<>()(answer, begin) && std::less<>()(answer, end);
  return !in_own_buffer || end - answer >= length;
}

// A failure that the port driver cannot know of.
int Refused(const char* why, int code) {
  Ravik::ProcessTrace::Write({"worker", "snmp", "failed", {}, why});
  return code;
}

}  // namespace

CZIOCommon::CZIOCommon(const __CFData* port_information, const __CFNumber* port_type) {
  if (port_information != nullptr) {
    port_information_ = CFRef<CFDataRef>(CFDataCreateCopy(kCFAllocatorDefault, port_information));
  }
  SInt32 type = 0;
  if (port_type != nullptr) CFNumberGetValue(port_type, kCFNumberSInt32Type, &type);
  is_tcpip_ = type == ZIO_PORT_TYPE_TCPIP ? 1 : 0;
  if (!port_information_ || port_type == nullptr) return;
  handler_.emplace(port_information_.get(), CZIOCommonErrorHandler, this,
                   ZIOLibrary::GetLibraryPath().get());
}

CZIOCommon::~CZIOCommon() {
  ClosePrinterPort();
}

int CZIOCommon::OpenPrinterPort() {
  if (!handler_) return kFailure;
  opened_ = handler_->Open() == 0 ? 1 : 0;
  return opened_ == 1 ? 0 : kFailure;
}

void CZIOCommon::ClosePrinterPort() {
  if (opened_ == 0 || !handler_) return;
  handler_->Close();
  opened_ = 0;
}

int CZIOCommon::GetStatus(char* buffer) {
  if (!handler_ || buffer == nullptr) return kFailure;
  return handler_->Status(buffer);
}

int CZIOCommon::SendWriteCommand(char* bytes, long length, unsigned char snmp) {
  if (snmp != 0 && is_tcpip_ != 0) {
    std::array<char, kScratchSize> dropped{};
    return SendWriteAndReadCommand(bytes, length, dropped.data(), kSnmpBufferSize);
  }
  if (!handler_ || !IsRange(bytes, length)) return kFailure;
  if (handler_->Write(bytes, &length) != 0) return kFailure;
  return handler_->Flush(0) == 0 ? 0 : kFailure;
}

int CZIOCommon::SendWriteAndReadCommand(char* bytes, long length, char* reply, long capacity) {
  if (!IsRange(reply, capacity)) return kFailure;
  if (is_tcpip_ != 0) return ExchangeSNMP(bytes, length, reply, capacity);
  const int result = SendWriteCommand(bytes, length, 0);
  return result != 0 ? result : SendReadCommand(reply, capacity);
}

int CZIOCommon::ExchangeSNMP(const char* bytes, long length, char* reply, long capacity) {
  if (!handler_) return kFailure;
  std::array<char, kSnmpBufferSize> request{};
  std::array<char, kSnmpBufferSize> answer{};
  long request_length = 0;
  const int built = CreateSNMPCommand(bytes, length, request.data(), &request_length);
  if (built != 0) return Refused("the command does not fit an SNMP request", built);

  ZIOSnmpExchange block = {request.data(), request_length, answer.data(), kSnmpBufferSize};
  const int sent = handler_->IOCTL(ZIO_IOCTL_SNMP_EXCHANGE, &block);
  if (sent != 0) return sent;
  if (block.answerLength > capacity) {
    return Refused("the answer is longer than the worker takes", kAnswerTooLong);
  }
  // The plug-in may have put its own buffer in place of ours.
  if (!IsReadable(block.answer, block.answerLength, answer)) return kFailure;
  std::copy_n(block.answer, block.answerLength, reply);
  return 0;
}

int CZIOCommon::SendReadCommand(char* buffer, long capacity) {
  if (!handler_ || !IsRange(buffer, capacity)) return kFailure;
  return handler_->Read(buffer, &capacity) == 0 ? 0 : kFailure;
}

int CZIOCommon::D4_SendWriteAndReadCommand(char* bytes, long length, char* reply, long capacity) {
  if (!handler_ || !IsRange(bytes, length) || !IsRange(reply, capacity)) return kFailure;
  ControlElement block = {bytes, length, reply, capacity};
  return handler_->Control(&block);
}

int CZIOCommonErrorHandler(void* /*context*/, int /*code*/, char* /*message*/) {
  return -1;
}
