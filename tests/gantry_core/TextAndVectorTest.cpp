// Searches on byte sequences, blanks and decimal digits.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "Library/RavikCommon/VectorUtil.h"
#include "util/StringUtil.h"

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;

TEST(VectorUtil, FindsTheFirstAndTheLastOccurrence) {
  // The indices just past the first and the last occurrence, the latter 0 for none.
  const std::tuple<std::string, std::string, int, int> kCases[] = {
      {"ABCABC", "BC", 3, 6}, {"ABCABCA", "ABCA", 4, 7}, {"AAAA", "AA", 2, 4}, {"ABC", "", 3, 0},
      {"", "A", 0, 0},        {"ABC", "ABCD", 3, 0},     {"ABC", "X", 3, 0},   {"ABC", "ABC", 3, 3},
  };
  for (const auto& [text, part, first_end, last_base] : kCases) {
    const Bytes haystack(text.begin(), text.end());
    const Bytes needle(part.begin(), part.end());
    EXPECT_EQ(VectorUtil::FindFirst(haystack, needle) - haystack.begin(), first_end) << part;
    EXPECT_EQ(VectorUtil::FindLast(haystack, needle).base() - haystack.begin(), last_base) << part;
  }
}

TEST(VectorUtil, SubVectorEndsWithTheSequence) {
  const Bytes four = {0, 1, 2, 3};
  EXPECT_EQ(VectorUtil::GetSubVector(four, 1, 2), (Bytes{1, 2}));
  EXPECT_EQ(VectorUtil::GetSubVector(four, 1, ~0U), (Bytes{1, 2, 3}));
  EXPECT_EQ(VectorUtil::GetSubVector(four, 4, 1), Bytes{});
  EXPECT_EQ(VectorUtil::GetSubVector(four, ~0U, ~0U), Bytes{});
  EXPECT_EQ(VectorUtil::ReverseVector(four), (Bytes{3, 2, 1, 0}));
}

TEST(StringUtil, RemovesSpacesAndTabsOnly) {
  using Texts = std::array<std::string, 4>;  // the text, without any, leading, trailing blanks
  for (const auto& [text, none, no_leading, no_trailing] :
       {Texts{"", "", "", ""}, Texts{" \t ", "", "", ""},
        Texts{" \ta b\t ", "ab", "a b\t ", " \ta b"}, Texts{"\n \r", "\n\r", "\n \r", "\n \r"}}) {
    Texts edited = {text, text, text, text};
    StringUtil::DeleteSpace(edited[1]);
    StringUtil::DeleteHeadSpace(edited[2]);
    StringUtil::DeleteTailSpace(edited[3]);
    EXPECT_EQ(edited, (Texts{text, none, no_leading, no_trailing}));
  }
}

TEST(StringUtil, ReadsDigitsOnly) {
  for (const char* text : {"", "-5", "+5", " 5", "5a", "\xB2"}) {
    EXPECT_FALSE(StringUtil::IsDigit(text)) << text;
    EXPECT_EQ(StringUtil::StringToInteger(text), 0) << text;
  }
  EXPECT_EQ(StringUtil::StringToInteger("0012"), 12);
  EXPECT_EQ(StringUtil::StringToInteger("2147483648"), 2147483647);
}

}  // namespace
}  // namespace Ravik
