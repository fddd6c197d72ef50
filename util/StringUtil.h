// Blanks and decimal digits in texts.
#ifndef UTIL_STRINGUTIL_H_
#define UTIL_STRINGUTIL_H_

#include <string>

namespace Ravik {

// Blanks are the space and the horizontal tab; other white space is text.
class StringUtil {
 public:
  // Remove, in place, every blank, the leading blanks and the trailing blanks.
  static void DeleteSpace(std::string& text);
  static void DeleteHeadSpace(std::string& text);
  static void DeleteTailSpace(std::string& text);

  // Whether the text is one or more decimal digits and nothing else.
  static bool IsDigit(const std::string& text);

  // The decimal number of a text for which IsDigit() holds, the largest int if it is too large; 0
  // for every other text, so also for one with a sign.
  static int StringToInteger(const std::string& text);
};

}  // namespace Ravik

#endif  // UTIL_STRINGUTIL_H_
