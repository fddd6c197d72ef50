// Searches on byte sequences, blanks and decimal digits.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Library/RavikCommon/VectorUtil.h"
#include "util/StringUtil.h"

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes ToBytes(const std::string& text) {
  return {text.begin(), text.end()};
}

TEST(VectorUtil, FindsTheFirstAndTheLastOccurrence) {
  const struct {
    const char* haystack;
    const char* needle;
    int first_end;  // index just past the first occurrence
    int last_base;  // index just past the last occurrence, 0 for none
  } kCases[] = {
      {"ABCABC", "BC", 3, 6},   {"ABCABCA", "ABCA", 4, 7}, {"AAAA", "AA", 2, 4},
      {"ABC", "", 3, 0},        {"", "A", 0, 0},           {"", "", 0, 0},
      {"ABC", "ABCD", 3, 0},    {"ABC", "X", 3, 0},        {"ABC", "ABC", 3, 3},
      {"ABABAC", "ABAC", 6, 6},
  };
  for (const auto& c : kCases) {
    const Bytes haystack = ToBytes(c.haystack);
    const Bytes needle = ToBytes(c.needle);
    EXPECT_EQ(VectorUtil::FindFirst(haystack, needle) - haystack.begin(), c.first_end)
        << c.haystack << ' ' << c.needle;
    EXPECT_EQ(VectorUtil::FindLast(haystack, needle).base() - haystack.begin(), c.last_base)
        << c.haystack << ' ' << c.needle;
  }
}

TEST(VectorUtil, SubVectorEndsWithTheSequence) {
  const Bytes four = {0, 1, 2, 3};
  EXPECT_EQ(VectorUtil::GetSubVector(four, 1, 2), (Bytes{1, 2}));
  EXPECT_EQ(VectorUtil::GetSubVector(four, 2, 5), (Bytes{2, 3}));
  EXPECT_EQ(VectorUtil::GetSubVector(four, 1, ~0U), (Bytes{1, 2, 3}));
  EXPECT_EQ(VectorUtil::GetSubVector(four, 4, 1), Bytes{});
  EXPECT_EQ(VectorUtil::GetSubVector(four, ~0U, ~0U), Bytes{});
  EXPECT_EQ(VectorUtil::GetSubVector(four, 0, 0), Bytes{});
  EXPECT_EQ(VectorUtil::ReverseVector(four), (Bytes{3, 2, 1, 0}));
}

TEST(StringUtil, RemovesSpacesAndTabsOnly) {
  const struct {
    const char* text;
    const char* all;
    const char* head;
    const char* tail;
  } kCases[] = {
      {"", "", "", ""},
      {" \t ", "", "", ""},
      {"ab", "ab", "ab", "ab"},
      {" \ta b\t", "ab", "a b\t", " \ta b"},
      {" \r\n", "\r\n", "\r\n", " \r\n"},
      {"\n ", "\n", "\n ", "\n"},
  };
  for (const auto& c : kCases) {
    std::string all = c.text;
    std::string head = c.text;
    std::string tail = c.text;
    StringUtil::DeleteSpace(all);
    StringUtil::DeleteHeadSpace(head);
    StringUtil::DeleteTailSpace(tail);
    EXPECT_EQ(all, c.all) << c.text;
    EXPECT_EQ(head, c.head) << c.text;
    EXPECT_EQ(tail, c.tail) << c.text;
  }
}

TEST(StringUtil, ReadsDigitsOnly) {
  const struct {
    const char* text;
    bool digits;
    int number;
  } kCases[] = {
      {"", false, 0},
      {"0012", true, 12},
      {"-5", false, 0},
      {"+5", false, 0},
      {" 5", false, 0},
      {"5a", false, 0},
      {"\xB2", false, 0},
      {"2147483647", true, 2147483647},
      {"2147483648", true, 2147483647},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(StringUtil::IsDigit(c.text), c.digits) << c.text;
    EXPECT_EQ(StringUtil::StringToInteger(c.text), c.number) << c.text;
  }
}

}  // namespace
}  // namespace Ravik
