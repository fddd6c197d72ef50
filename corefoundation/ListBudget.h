// What reading a property list may cost.
#ifndef COREFOUNDATION_LISTBUDGET_H_
#define COREFOUNDATION_LISTBUDGET_H_

#include <cstdint>

namespace CoreFoundation {

// Counts the memory that the objects of a list take, and the steps of libplist that grow faster
// than the list: it compares a key with any number of those already in its dictionary, and moves
// the rest of a text at every character reference. Each Take is false once more is taken than there
// is: 64 MiB and eight times the list's size, and about half a second.
class ListBudget {
 public:
  // Of a list of so many bytes.
  explicit ListBudget(std::uint64_t size) : memory_((std::uint64_t{64} << 20) + 8 * size) {}

  // An object with content of so many bytes.
  bool TakeObject(std::uint64_t content) {
    constexpr std::uint64_t kObject = 256;  // roughly: its node and what is made of it
    return Take(memory_, kObject) && Take(memory_, content);
  }

  // The keys of a dictionary.
  bool TakeKeys(std::uint64_t count) {
    constexpr std::uint64_t kComparison = 32;  // in bytes moved
    if (count == 0) return true;
    const std::uint64_t others = count - 1;
    return others <= steps_ / kComparison / count && Take(steps_, count * others * kComparison);
  }

  // The character references in a text of so many bytes.
  bool TakeReferences(std::uint64_t count, std::uint64_t text) {
    return count == 0 || (text <= steps_ / count && Take(steps_, count * text));
  }

 private:
  static bool Take(std::uint64_t& left, std::uint64_t amount) {
    if (amount > left) return false;
    left -= amount;
    return true;
  }

  std::uint64_t memory_;                          // bytes
  std::uint64_t steps_ = std::uint64_t{4} << 30;  // bytes moved
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_LISTBUDGET_H_
