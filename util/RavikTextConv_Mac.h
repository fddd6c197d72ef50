// Text conversion between Shift-JIS, UTF-8 and UTF-16.
#ifndef UTIL_RAVIKTEXTCONV_MAC_H_
#define UTIL_RAVIKTEXTCONV_MAC_H_

#include <string>

namespace Ravik {

// Converts the zero-terminated text between two CFStringEncoding values.
//
// The result has as many bytes as text has UTF-16 units in front of the first that "to" lacks,
// whatever the converted text takes. One of them is kept for a terminating zero; converted text
// that does not fit is cut, or missing altogether, and its first byte is 0. Bytes that nothing was
// written to are 0. Empty for a null pointer and for text that is ill-formed in "from".
std::string ConvertEncoding(const char* text, unsigned int from, unsigned int to);

// Shift-JIS is code page 932; UTF-16 is little-endian, without a byte-order mark. Results are those
// of ConvertEncoding, so that a conversion never yields more bytes than its source has UTF-16
// units. A wide text is handed over as its bytes up to the first that is 0; one that is returned
// holds the result's bytes taken as wide characters, up to the first that is 0 or incomplete.
class TextConv {
 public:
  static std::string SJISToUTF8(const std::string& text);
  static std::string UTF8ToSJIS(const std::string& text);
  static std::wstring SJISToUTF16(const std::string& text);
  static std::wstring UTF8ToUTF16(const std::string& text);
  static std::string UTF16ToSJIS(const std::wstring& text);
  static std::string UTF16ToUTF8(const std::wstring& text);
};

}  // namespace Ravik

#endif  // UTIL_RAVIKTEXTCONV_MAC_H_
