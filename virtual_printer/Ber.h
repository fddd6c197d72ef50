// The Basic Encoding Rules (X.690) as far as SNMPv1 needs them: a bounded reader and an encoder.
#ifndef VIRTUAL_PRINTER_BER_H_
#define VIRTUAL_PRINTER_BER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "virtual_printer/Bytes.h"

namespace VirtualPrinter {

// Sub-identifiers of an object identifier, at least two.
using ObjectId = std::vector<std::uint32_t>;

// Tags of X.690 and of RFC 1157.
enum BerTag : std::uint8_t {
  kBerInteger = 0x02,
  kBerOctetString = 0x04,
  kBerNull = 0x05,
  kBerObjectId = 0x06,
  kBerSequence = 0x30,
  kSnmpGetRequest = 0xA0,
  kSnmpGetResponse = 0xA2,
};

// A cursor over encoded elements that never leaves its bounds. It does not own the bytes. Every
// Read… leaves the cursor where it stood when it fails. Lengths are read in the definite forms
// with up to four length octets; the indefinite form fails.
class BerReader {
 public:
  BerReader() = default;
  BerReader(const std::uint8_t* begin, const std::uint8_t* end) : at_(begin), end_(end) {}

  bool AtEnd() const { return at_ == end_; }

  // Reads one element with any low tag and its contents.
  bool ReadAny(std::uint8_t& tag, BerReader& contents);

  // Reads one element that must carry `tag`.
  std::optional<BerReader> Read(std::uint8_t tag);

  // A two's complement INTEGER of one to four octets.
  std::optional<std::int32_t> ReadInteger();
  std::optional<Bytes> ReadOctets();
  // Sub-identifiers must be in their shortest form and fit 32 bits.
  std::optional<ObjectId> ReadObjectId();

 private:
  std::size_t Left() const { return static_cast<std::size_t>(end_ - at_); }
  bool ReadLength(std::size_t& length);
  std::optional<std::uint32_t> ReadSubIdentifier();

  const std::uint8_t* at_ = nullptr;
  const std::uint8_t* end_ = nullptr;
};

// Encodes one element, its length in the shortest form.
Bytes BerElement(std::uint8_t tag, const Bytes& contents);
Bytes BerEncodeInteger(std::int32_t value);
Bytes BerEncodeOctets(const Bytes& octets);
Bytes BerEncodeObjectId(const ObjectId& id);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_BER_H_
