#include "printer_control/StatusReply.h"

#include <algorithm>
#include <cstddef>

namespace {

enum FieldId : unsigned char {
  kStatus = 0x01,
  kErrorCode = 0x02,
  kWarning = 0x04,
  kMaintTank = 0x0D,
  kInk = 0x0F,
  kSerialNumber = 0x1F,
  kUsb = 0x28,
  kHeater = 0x2E,
};

constexpr unsigned int kLengthWordSize = 2;
constexpr unsigned int kFieldHeadSize = 2;
constexpr std::ptrdiff_t kMaxWarnings = 50;
constexpr int kReady = 4;
constexpr int kError = 0;
constexpr int kInkEntrySize = 4;
constexpr int kUsbStateBit = 6;

// One field of the reply, or none. The data is cut at the end of the stored reply; the declared
// length is not.
struct Field {
  const unsigned char* data = nullptr;
  const unsigned char* end = nullptr;        // of the data inside the reply
  const unsigned char* reply_end = nullptr;  // of the stored reply
  unsigned char length = 0;                  // as declared

  bool HasData() const { return data != end; }
};

// Walks over the fields of a reply. The position never passes the end.
class FieldCursor {
 public:
  FieldCursor(const unsigned char* reply, unsigned int size)
      : next_(size == 0 ? nullptr : reply + kLengthWordSize),
        end_(size == 0 ? nullptr : reply + size) {}

  // Moves to the next field with this id; false if there is none. A field whose length byte would
  // be behind the end has length 0.
  bool Find(FieldId id, Field& found) {
    while (next_ != end_) {
      const unsigned char* const head = next_;
      const bool whole_head = end_ - head >= static_cast<std::ptrdiff_t>(kFieldHeadSize);
      const unsigned char* const data = whole_head ? head + kFieldHeadSize : end_;
      const unsigned char length = whole_head ? head[1] : static_cast<unsigned char>(0);
      next_ = data + std::min<std::ptrdiff_t>(length, end_ - data);
      if (*head == id) {
        found = {data, next_, end_, length};
        return true;
      }
    }
    return false;
  }

 private:
  const unsigned char* next_;
  const unsigned char* end_;
};

// The first field with this id; a field without data if there is none.
Field FindField(const unsigned char* reply, unsigned int size, FieldId id) {
  Field field;
  FieldCursor(reply, size).Find(id, field);
  return field;
}

}  // namespace

bool StatusReply::SetReply(const void* reply) {
  if (reply == nullptr) return false;
  const auto* const bytes = static_cast<const unsigned char*>(reply);
  const unsigned int length = bytes[0] | static_cast<unsigned int>(bytes[1]) << 8;
  reply_.reset();
  size_ = 0;
  if (length == 0) return false;
  const unsigned int size = length + kLengthWordSize;
  reply_ = std::make_unique<unsigned char[]>(size);
  std::copy_n(bytes, size, reply_.get());
  size_ = size;
  return true;
}

int StatusReply::GetStatus() const {
  const Field field = FindField(reply_.get(), size_, kStatus);
  return field.HasData() ? *field.data : -1;
}

int StatusReply::GetErrorCode() const {
  const Field field = FindField(reply_.get(), size_, kErrorCode);
  return field.HasData() ? *field.data : -1;
}

// This scan ends only when a 16-bit count of the remaining length is exactly 0, so that lengths
// which overshoot the field area do not end it. Behind the area nothing is stored, where it ends
// too, and so it finds the same field as the other readers.
bool StatusReply::IsStatusReady() const {
  return GetStatus() == kReady;
}

bool StatusReply::IsStatusError() const {
  return GetStatus() == kError;
}

std::vector<unsigned char> StatusReply::GetWarning() const {
  const Field field = FindField(reply_.get(), size_, kWarning);
  return {field.data, field.data + std::min(field.end - field.data, kMaxWarnings)};
}

std::string StatusReply::GetSerialNumber() const {
  const Field field = FindField(reply_.get(), size_, kSerialNumber);
  return {field.data, field.end};
}

std::vector<int> StatusReply::GetMaintTankRemain() const {
  const Field field = FindField(reply_.get(), size_, kMaintTank);
  return {field.data, field.end};
}

int StatusReply::GetInkColorCount() const {
  const Field field = FindField(reply_.get(), size_, kInk);
  if (!field.HasData()) return 8;
  const int entry_size = *field.data < 0x80 ? *field.data : *field.data - 0x100;  // a signed byte
  return entry_size * 4 + 1 < field.length ? 6 : 4;
}

int StatusReply::GetInkRemain(int* third_bytes, int* first_bytes, int* fourth_bytes) const {
  if (size_ == 0 || third_bytes == nullptr || first_bytes == nullptr || fourth_bytes == nullptr) {
    return -1;
  }
  const Field field = FindField(reply_.get(), size_, kInk);
  // Without the size byte in front of them, the last entry may end one byte behind the field.
  const auto byte_at = [&field](int offset) {
    return offset < field.reply_end - field.data ? field.data[offset] : 0;
  };
  const int entries = field.length / kInkEntrySize;
  for (int i = 0; i < entries; ++i) {
    const int entry = 1 + i * kInkEntrySize;
    first_bytes[i] = byte_at(entry);
    third_bytes[i] = byte_at(entry + 2);
    fourth_bytes[i] = byte_at(entry + 3);
  }
  return entries;
}

int StatusReply::GetUSBStatus() const {
  if (size_ == 0) return -1;
  const Field field = FindField(reply_.get(), size_, kUsb);
  return field.HasData() ? *field.data >> kUsbStateBit & 1 : 0;
}

std::vector<unsigned char> StatusReply::GetHeater() const {
  std::vector<unsigned char> heater;
  FieldCursor fields(reply_.get(), size_);
  Field field;
  while (fields.Find(kHeater, field)) heater.insert(heater.end(), field.data, field.end);
  return heater;
}
