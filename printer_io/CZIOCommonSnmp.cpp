// The SNMPv1 request in which a printer command travels to a network printer.
#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>

#include "printer_io/CZIOCommon.h"
#include "printer_io/RemoteMode.h"

namespace {

constexpr long kCommandLimit = 512;  // a command this long is refused
constexpr long kPayloadLimit = 511;  // the longest payload, bytes
constexpr long kRequestLimit = 512;  // room in the caller's request buffer, bytes
constexpr std::size_t kTagAndLengthLimit = 6;

constexpr unsigned char kTagObjectIdentifier = 0x06;
constexpr unsigned char kTagSequence = 0x30;
constexpr unsigned char kTagGetRequest = 0xA0;

// 1.3.6.1.4.1.2718.1.2.2.40.1.1.2
constexpr std::initializer_list<unsigned char> kObjectPrefix = {
    0x2B, 0x06, 0x01, 0x04, 0x01, 0x95, 0x1E, 0x01, 0x02, 0x02, 0x28, 0x01, 0x01, 0x02};
constexpr std::initializer_list<unsigned char> kNull = {0x05, 0x00};
// Request-id 2, error-status 0, error-index 0.
constexpr std::initializer_list<unsigned char> kRequestFields = {0x02, 0x01, 0x02, 0x02, 0x01,
                                                                 0x00, 0x02, 0x01, 0x00};
// Version 0 (SNMPv1), community.
constexpr std::initializer_list<unsigned char> kMessageFields = {0x02, 0x01, 0x00, 0x04, 0x06, 'o',
                                                                 'r',  'c',  'h',  'i',  'd'};

// A message that grows from the middle of a fixed area: elements are appended behind what is there
// or put in front of it, so that each length is known when it is written. A step that does not fit
// fails and writes nothing.
class WorkArea {
 public:
  bool Append(std::initializer_list<unsigned char> bytes) {
    if (Room(end_, area_.data() + area_.size()) < bytes.size()) return false;
    end_ = std::copy(bytes.begin(), bytes.end(), end_);
    return true;
  }

  // Appends each byte as a sub-identifier (X.690, 8.19: seven bits a byte, most significant first).
  bool AppendSubIdentifiers(const unsigned char* bytes, std::size_t count) {
    const auto is_long = [](unsigned char byte) { return byte >= 0x80; };
    const auto longer = static_cast<std::size_t>(std::count_if(bytes, bytes + count, is_long));
    if (Room(end_, area_.data() + area_.size()) < count + longer) return false;
    unsigned char* end = end_;
    for (std::size_t i = 0; i < count; ++i) {
      if (is_long(bytes[i])) *end++ = 0x81;
      *end++ = bytes[i] & 0x7F;
    }
    end_ = end;
    return true;
  }

  bool Prepend(std::initializer_list<unsigned char> bytes) {
    if (Room(area_.data(), begin_) < bytes.size()) return false;
    begin_ -= bytes.size();
    std::copy(bytes.begin(), bytes.end(), begin_);
    return true;
  }

  // Makes everything that is there the content of one element.
  bool Wrap(unsigned char tag) {
    if (Room(area_.data(), begin_) < kTagAndLengthLimit) return false;
    CZIOCommon::WriteASN1Size(&begin_, tag, static_cast<unsigned int>(size()));
    return true;
  }

  const char* data() const { return reinterpret_cast<const char*>(begin_); }
  long size() const { return end_ - begin_; }

 private:
  static std::size_t Room(const unsigned char* from, const unsigned char* to) {
    return static_cast<std::size_t>(to - from);
  }

  std::array<unsigned char, 1024> area_;  // what is read of it was written before
  unsigned char* begin_ = area_.data() + area_.size() / 2;
  unsigned char* end_ = begin_;
};

unsigned char LowByte(long value) {
  return static_cast<unsigned char>(value & 0xFF);
}

// Both framings are recognised by what stands in front of the constant's first zero byte and by
// that byte; the bytes behind it are free.
bool StartsRemoteMode(const char* command, long length) {
  constexpr long kCompared = 7;
  return length >= kCompared && std::memcmp(command, Ravik::CMD_REMOTE_START, kCompared) == 0;
}

bool EndsRemoteMode(const char* command, long length) {
  constexpr std::size_t kCompared = 2;
  constexpr long kEndLength = sizeof(Ravik::CMD_REMOTE_END);
  return length >= kEndLength &&
         std::memcmp(command + length - kEndLength, Ravik::CMD_REMOTE_END, kCompared) == 0;
}

// The payload is a length-prefixed frame: length of the rest, the byte 8, the command's length
// big-endian, the command; one sub-identifier a byte.
bool AppendPayload(WorkArea& area, const char* command, long length) {
  const unsigned char header[] = {LowByte(length + 3), 0x08, LowByte(length >> 8), LowByte(length)};
  if (length + static_cast<long>(sizeof(header)) > kPayloadLimit) return false;
  return area.AppendSubIdentifiers(header, sizeof(header)) &&
         area.AppendSubIdentifiers(reinterpret_cast<const unsigned char*>(command),
                                   static_cast<std::size_t>(length));
}

bool BuildRequest(WorkArea& area, const char* command, long length) {
  return AppendPayload(area, command, length) && area.Prepend(kObjectPrefix) &&
         area.Wrap(kTagObjectIdentifier) && area.Append(kNull) &&
         area.Wrap(kTagSequence) &&  // variable binding
         area.Wrap(kTagSequence) &&  // variable-bindings list
         area.Prepend(kRequestFields) && area.Wrap(kTagGetRequest) &&
         area.Prepend(kMessageFields) && area.Wrap(kTagSequence);
}

}  // namespace

int CZIOCommon::CreateSNMPCommand(const char* command, long length, char* request,
                                  long* request_length) {
  if (request == nullptr || request_length == nullptr) return -1;
  if (length < 0 || length >= kCommandLimit || (command == nullptr && length > 0)) return -1;
  const long start = StartsRemoteMode(command, length) ? sizeof(Ravik::CMD_REMOTE_START) : 0;
  const long end = EndsRemoteMode(command, length) ? sizeof(Ravik::CMD_REMOTE_END) : 0;
  const long remaining = length - start - end;
  if (remaining < 0) return -1;

  WorkArea area;
  if (!BuildRequest(area, command + start, remaining) || area.size() > kRequestLimit) return -1;
  std::copy_n(area.data(), area.size(), request);
  *request_length = area.size();
  return 0;
}

int CZIOCommon::WriteASN1Size(unsigned char** cursor, unsigned char tag, unsigned int length) {
  unsigned char* const start = *cursor;
  unsigned int rest = length;
  do {
    *--*cursor = static_cast<unsigned char>(rest & 0xFF);
    rest >>= 8;
  } while (rest != 0);
  const auto lengthBytes = static_cast<unsigned char>(start - *cursor);
  if (length >= 0x80) *--*cursor = static_cast<unsigned char>(0x80 | lengthBytes);
  *--*cursor = tag;
  return static_cast<int>(start - *cursor);
}
