// Walks the objects of a binary property list as a reader expands them.
//
// The list is: "bplist00"; objects, each a marker byte (kind in the high half, size in the low
// half, F for a size in an integer object that follows) and its content, where containers hold
// references, that is object numbers; the offset table, one offset an object; and a trailer of 32
// bytes: 6 unused, the size of an offset, the size of a reference, and in 8 bytes each the number
// of objects, the root's number and the table's offset. Everything is big-endian.
#include <cstdint>
#include <optional>
#include <vector>

#include "corefoundation/ListBudget.h"
#include "corefoundation/PropertyListCheck.h"

namespace CoreFoundation {

namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr std::size_t kTrailerSize = 32;

enum Kind : unsigned { kData = 4, kString = 5, kUnicode = 6, kArray = 10, kSet = 12, kDict = 13 };

class Walk {
 public:
  explicit Walk(std::string_view bytes) : bytes_(bytes), budget_(bytes.size()) {}

  bool Whole() {
    if (!ReadTrailer() || !Visit(root_)) return false;
    while (!open_.empty()) {
      Container& container = open_.back();
      if (container.left == 0) {
        open_.pop_back();
        continue;
      }
      --container.left;
      const std::uint64_t reference = Integer(container.next, reference_size_);
      container.next += reference_size_;
      if (!Visit(reference)) return false;
    }
    return true;
  }

 private:
  struct Container {
    std::size_t next;  // offset of the next reference
    std::uint64_t left;
  };

  std::uint64_t Integer(std::size_t offset, std::size_t size) const {
    std::uint64_t value = 0;
    for (const char byte : bytes_.substr(offset, size)) {
      value = value << 8 | static_cast<unsigned char>(byte);
    }
    return value;
  }

  bool ReadTrailer() {
    if (bytes_.size() < kMagic.size() + kTrailerSize) return false;
    const std::size_t trailer = bytes_.size() - kTrailerSize;
    offset_size_ = static_cast<std::size_t>(Integer(trailer + 6, 1));
    reference_size_ = static_cast<std::size_t>(Integer(trailer + 7, 1));
    count_ = Integer(trailer + 8, 8);
    root_ = Integer(trailer + 16, 8);
    const std::uint64_t table = Integer(trailer + 24, 8);
    if (offset_size_ == 0 || offset_size_ > 8) return false;
    if (reference_size_ == 0 || reference_size_ > 8) return false;
    if (table < kMagic.size() || table > trailer) return false;
    table_ = static_cast<std::size_t>(table);
    return count_ <= (trailer - table_) / offset_size_;
  }

  // A size, and where the content of that size begins.
  struct Extent {
    std::uint64_t size;
    std::size_t begin;
  };

  std::optional<Extent> ReadExtent(std::size_t offset, unsigned size) const {
    if (size != 15) return Extent{size, offset};
    if (offset >= table_) return std::nullopt;
    const auto marker = static_cast<unsigned char>(bytes_[offset]);
    if (marker < 0x10 || marker > 0x13) return std::nullopt;
    const std::size_t width = std::size_t{1} << (marker - 0x10);
    ++offset;
    if (table_ - offset < width) return std::nullopt;
    return Extent{Integer(offset, width), offset + width};
  }

  bool Visit(std::uint64_t index) {
    if (index >= count_) return false;
    const std::uint64_t offset =
        Integer(table_ + static_cast<std::size_t>(index) * offset_size_, offset_size_);
    if (offset < kMagic.size() || offset >= table_) return false;
    const auto begin = static_cast<std::size_t>(offset);
    const auto marker = static_cast<unsigned char>(bytes_[begin]);
    const unsigned kind = marker >> 4;
    if (kind != kArray && kind != kSet && kind != kDict && kind != kData && kind != kString &&
        kind != kUnicode) {
      return budget_.TakeObject(0);
    }
    const auto extent = ReadExtent(begin + 1, marker & 0xF);
    return extent && TakeObject(kind, *extent);
  }

  bool TakeObject(unsigned kind, const Extent& extent) {
    const bool container = kind == kArray || kind == kSet || kind == kDict;
    const std::uint64_t unit = container ? reference_size_ : kind == kUnicode ? 2 : 1;
    const std::uint64_t units = kind == kDict ? 2 : 1;
    if (extent.size > (table_ - extent.begin) / (unit * units)) return false;
    if (!budget_.TakeObject(extent.size)) return false;
    if (kind == kDict && !budget_.TakeKeys(extent.size)) return false;
    if (!container) return kind == kData || !HasZero(extent, static_cast<std::size_t>(unit));
    open_.push_back({extent.begin, units * extent.size});
    return open_.size() <= kMaximumListDepth;
  }

  // Whether a text of units of this width has a zero among them.
  bool HasZero(const Extent& extent, std::size_t width) const {
    for (std::size_t i = 0; i < extent.size; ++i) {
      if (Integer(extent.begin + i * width, width) == 0) return true;
    }
    return false;
  }

  std::string_view bytes_;
  ListBudget budget_;
  std::size_t offset_size_ = 0;
  std::size_t reference_size_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t root_ = 0;
  std::size_t table_ = 0;
  std::vector<Container> open_;
};

}  // namespace

bool IsSoundBinaryList(std::string_view bytes) {
  return Walk(bytes).Whole();
}

}  // namespace CoreFoundation
