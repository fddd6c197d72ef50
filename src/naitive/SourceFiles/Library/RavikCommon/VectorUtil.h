// Searches and copies on sequences.
#ifndef RAVIKCOMMON_VECTORUTIL_H_
#define RAVIKCOMMON_VECTORUTIL_H_

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Ravik {

class VectorUtil {
 public:
  template <typename T>
  static std::vector<T> ReverseVector(const std::vector<T>& elements) {
    return {elements.rbegin(), elements.rend()};
  }

  // Just past the first occurrence of needle. The haystack's end if there is none, as it is for an
  // occurrence that ends there; an empty needle does not occur.
  template <typename T>
  static typename std::vector<T>::const_iterator FindFirst(const std::vector<T>& haystack,
                                                           const std::vector<T>& needle) {
    if (needle.empty()) return haystack.end();
    const auto start = std::search(haystack.begin(), haystack.end(), needle.begin(), needle.end());
    if (start == haystack.end()) return start;
    return start + static_cast<std::ptrdiff_t>(needle.size());
  }

  // The last element of the last occurrence of needle, so that base() is just past it. The
  // haystack's reverse end if there is none; an empty needle does not occur.
  template <typename T>
  static typename std::vector<T>::const_reverse_iterator FindLast(const std::vector<T>& haystack,
                                                                  const std::vector<T>& needle) {
    if (needle.empty()) return haystack.rend();
    return std::search(haystack.rbegin(), haystack.rend(), needle.rbegin(), needle.rend());
  }

  // A copy of count elements from index start on, cut at the end of the sequence.
  template <typename T>
  static std::vector<T> GetSubVector(const std::vector<T>& elements, unsigned int start,
                                     unsigned int count) {
    if (start >= elements.size()) return {};
    const auto first = elements.begin() + static_cast<std::ptrdiff_t>(start);
    const auto copied = std::min<std::size_t>(count, elements.size() - start);
    return {first, first + static_cast<std::ptrdiff_t>(copied)};
  }
};

}  // namespace Ravik

#endif  // RAVIKCOMMON_VECTORUTIL_H_
