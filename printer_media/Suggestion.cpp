#include "printer_media/Suggestion.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <numeric>

#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char character) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  });
  return lower;
}

// Letters to insert, remove, change or swap with their neighbour (optimal string alignment).
std::size_t Distance(const std::string& one, const std::string& other) {
  std::vector<std::vector<std::size_t>> costs(one.size() + 1,
                                              std::vector<std::size_t>(other.size() + 1));
  std::iota(costs[0].begin(), costs[0].end(), 0);
  for (std::size_t i = 1; i <= one.size(); ++i) {
    costs[i][0] = i;
    for (std::size_t j = 1; j <= other.size(); ++j) {
      const std::size_t change = one[i - 1] == other[j - 1] ? 0 : 1;
      costs[i][j] =
          std::min({costs[i - 1][j] + 1, costs[i][j - 1] + 1, costs[i - 1][j - 1] + change});
      const bool is_swap =
          i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1];
      if (is_swap) costs[i][j] = std::min(costs[i][j], costs[i - 2][j - 2] + 1);
    }
  }
  return costs[one.size()][other.size()];
}

bool IsNear(const std::string& word, const std::string& name) {
  constexpr std::size_t kLongest = 200;
  if (word.size() > kLongest || name.size() > kLongest) return false;
  const bool is_part = word.size() >= 3 && name.find(word) != std::string::npos;
  return is_part || Distance(word, name) <= std::max<std::size_t>(1, word.size() / 4);
}

}  // namespace

std::vector<std::string> Matches(std::string_view word, const std::vector<std::string>& names) {
  const bool is_exact = std::find(names.begin(), names.end(), word) != names.end();
  if (is_exact) return {std::string(word)};
  std::vector<std::string> found;
  for (const std::string& name : names) {
    const bool is_new = std::find(found.begin(), found.end(), name) == found.end();
    if (is_new && SameButCase(word, name)) found.push_back(name);
  }
  return found;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 4;
  const std::string lower = Lower(word);
  std::vector<std::string> near;
  std::copy_if(names.begin(), names.end(), std::back_inserter(near),
               [&](const std::string& name) { return IsNear(lower, Lower(name)); });
  if (near.empty()) return "";
  std::stable_sort(near.begin(), near.end(), [&](const std::string& one, const std::string& other) {
    return Distance(lower, Lower(one)) < Distance(lower, Lower(other));
  });
  if (near.size() > kMost) near.resize(kMost);
  return "; did you mean " + Listed(near, "or") + "?";
}

std::string Listed(const std::vector<std::string>& names, std::string_view last) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i != 0) text += i + 1 == names.size() ? " " + std::string(last) + " " : ", ";
    text += names[i];
  }
  return text;
}

}  // namespace PrinterMedia
