#include "util/StringUtil.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace Ravik {

namespace {

constexpr char kBlanks[] = " \t";

// Not a function, which searches would call for every character.
constexpr auto IsBlank = [](char c) { return c == ' ' || c == '\t'; };

}  // namespace

void StringUtil::DeleteSpace(std::string& text) {
  text.erase(std::remove_if(text.begin(), text.end(), IsBlank), text.end());
}

void StringUtil::DeleteHeadSpace(std::string& text) {
  text.erase(0, text.find_first_not_of(kBlanks));
}

void StringUtil::DeleteTailSpace(std::string& text) {
  text.erase(std::find_if_not(text.rbegin(), text.rend(), IsBlank).base(), text.end());
}

bool StringUtil::IsDigit(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

int StringUtil::StringToInteger(const std::string& text) {
  if (!IsDigit(text)) return 0;
  int number = std::numeric_limits<int>::max();  // stays when the digits are out of range
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace Ravik
