// The Basic Encoding Rules (X.690) as far as SNMPv1 needs them.
#include "virtual_printer/Ber.h"

#include <algorithm>
#include <limits>

namespace VirtualPrinter {
namespace {

constexpr std::uint8_t kLongForm = 0x80;
constexpr std::uint8_t kHighTagNumber = 0x1F;
constexpr std::size_t kLengthOctetsMax = 4;
constexpr std::uint8_t kMoreOctets = 0x80;

void AppendLength(Bytes& to, std::size_t length) {
  if (length < kLongForm) {
    to.push_back(static_cast<std::uint8_t>(length));
    return;
  }
  Bytes octets;
  for (; length != 0; length >>= 8) octets.push_back(static_cast<std::uint8_t>(length & 0xFF));
  to.push_back(static_cast<std::uint8_t>(kLongForm | octets.size()));
  to.insert(to.end(), octets.rbegin(), octets.rend());
}

void AppendSubIdentifier(Bytes& to, std::uint32_t value) {
  Bytes octets = {static_cast<std::uint8_t>(value & 0x7F)};
  for (value >>= 7; value != 0; value >>= 7) {
    octets.push_back(static_cast<std::uint8_t>(kMoreOctets | (value & 0x7F)));
  }
  to.insert(to.end(), octets.rbegin(), octets.rend());
}

}  // namespace

bool BerReader::ReadLength(std::size_t& length) {
  if (AtEnd()) return false;
  const std::uint8_t first = *at_++;
  if (first < kLongForm) {
    length = first;
    return true;
  }
  const std::size_t octets = first & 0x7F;
  if (octets == 0 || octets > kLengthOctetsMax || Left() < octets) return false;
  length = 0;
  for (std::size_t i = 0; i < octets; ++i) length = (length << 8) | *at_++;
  return true;
}

bool BerReader::ReadAny(std::uint8_t& tag, BerReader& contents) {
  BerReader next = *this;
  if (next.AtEnd()) return false;
  const std::uint8_t first = *next.at_++;
  std::size_t length = 0;
  if ((first & kHighTagNumber) == kHighTagNumber || !next.ReadLength(length)) return false;
  if (next.Left() < length) return false;
  tag = first;
  contents = BerReader(next.at_, next.at_ + length);
  at_ = next.at_ + length;
  return true;
}

std::optional<BerReader> BerReader::Read(std::uint8_t tag) {
  BerReader next = *this;
  std::uint8_t found = 0;
  BerReader contents;
  if (!next.ReadAny(found, contents) || found != tag) return std::nullopt;
  *this = next;
  return contents;
}

std::optional<std::int32_t> BerReader::ReadInteger() {
  BerReader next = *this;
  const auto contents = next.Read(kBerInteger);
  if (!contents || contents->Left() < 1 || contents->Left() > 4) return std::nullopt;
  std::uint32_t value = (*contents->at_ & 0x80) != 0 ? 0xFFFFFFFF : 0;
  for (const auto* p = contents->at_; p != contents->end_; ++p) value = (value << 8) | *p;
  *this = next;
  return static_cast<std::int32_t>(value);
}

std::optional<Bytes> BerReader::ReadOctets() {
  const auto contents = Read(kBerOctetString);
  if (!contents) return std::nullopt;
  return Bytes(contents->at_, contents->end_);
}

std::optional<std::uint32_t> BerReader::ReadSubIdentifier() {
  if (AtEnd() || *at_ == kMoreOctets) return std::nullopt;
  std::uint32_t value = 0;
  while (!AtEnd()) {
    const std::uint8_t octet = *at_++;
    if (value > (std::numeric_limits<std::uint32_t>::max() >> 7)) return std::nullopt;
    value = (value << 7) | (octet & 0x7F);
    if ((octet & kMoreOctets) == 0) return value;
  }
  return std::nullopt;
}

std::optional<ObjectId> BerReader::ReadObjectId() {
  BerReader next = *this;
  auto contents = next.Read(kBerObjectId);
  if (!contents) return std::nullopt;
  const auto first = contents->ReadSubIdentifier();
  if (!first) return std::nullopt;
  const std::uint32_t root = std::min<std::uint32_t>(*first / 40, 2);
  ObjectId id = {root, *first - root * 40};
  while (!contents->AtEnd()) {
    const auto sub_identifier = contents->ReadSubIdentifier();
    if (!sub_identifier) return std::nullopt;
    id.push_back(*sub_identifier);
  }
  *this = next;
  return id;
}

Bytes BerElement(std::uint8_t tag, const Bytes& contents) {
  Bytes element = {tag};
  AppendLength(element, contents.size());
  Append(element, contents);
  return element;
}

Bytes BerEncodeInteger(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  Bytes octets;
  for (int shift = 24; shift >= 0; shift -= 8) {
    octets.push_back(static_cast<std::uint8_t>(bits >> shift));
  }
  // The first nine bits are neither all ones nor all zeros in the shortest form.
  const std::uint8_t sign = value < 0 ? 0xFF : 0x00;
  while (octets.size() > 1 && octets[0] == sign && (octets[1] & 0x80) == (sign & 0x80)) {
    octets.erase(octets.begin());
  }
  return BerElement(kBerInteger, octets);
}

Bytes BerEncodeOctets(const Bytes& octets) {
  return BerElement(kBerOctetString, octets);
}

Bytes BerEncodeObjectId(const ObjectId& id) {
  Bytes octets;
  AppendSubIdentifier(octets, id.at(0) * 40 + id.at(1));
  for (std::size_t i = 2; i < id.size(); ++i) AppendSubIdentifier(octets, id[i]);
  return BerElement(kBerObjectId, octets);
}

}  // namespace VirtualPrinter
