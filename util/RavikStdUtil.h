// Path, file, text and time-stamp utilities.
#ifndef UTIL_RAVIKSTDUTIL_H_
#define UTIL_RAVIKSTDUTIL_H_

#include <string>

namespace Ravik {

// Static functions without state. A path separator is a backslash or a slash: the last backslash
// counts, and the last slash only in a path without any backslash. Nothing here throws, except on
// memory exhaustion.
class StdUtil {
 public:
  // What follows the last separator; the whole path when it has none.
  static std::string GetFileName(const std::string& path);

  // Everything up to and including the last separator; the whole path when it has none.
  static std::string GetCurrentPath(const std::string& path);

  // The executable's directory with its trailing "/". Empty when the platform does not tell the
  // path, when the path is not valid UTF-8, or when it is longer than 254 bytes and not plain
  // ASCII.
  static std::string GetModuleDir();

  // The path without its last character if that is a separator; only one is removed.
  static std::string NormalizationPath(const std::string& path);

  // The path with everything from its last "." replaced by extension, which brings its own dot;
  // without a ".", the path followed by extension. Directory names are not told apart.
  static std::string RenameExt(const std::string& extension, const std::string& path);

  // From the last "." to the end, dot included; empty without a ".".
  static std::string GetExtension(const std::string& path);

  // Formats as printf does. The result is cut at 4,999 bytes; a null or invalid format gives an
  // empty text.
  static std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

  // Whether tag occurs anywhere in text; an empty tag does.
  static bool IsTag(const std::string& text, const std::string& tag);

  // Whether the file opens for reading.
  static bool IsFile(const std::string& path);

  // Replaces every occurrence of from, left to right, and returns text itself. What was inserted is
  // not searched again. A null pointer or an empty from changes nothing.
  static std::string& StringReplace(std::string& text, const char* from, const char* to);

  // Copies the bytes of source into destination, which is created or truncated. False when one of
  // them does not open or the bytes do not all arrive; destination may then be cut short.
  static bool FileCopy(const std::string& source, const std::string& destination);

  // Local date as YYYYMMDD, local time as HHMMSS, and both joined. Empty when the system clock
  // cannot be told as local time.
  static std::string DateStr();
  static std::string TimeStr();
  static std::string DateTimeStr();

  // Fills table with the decimal numbers of a text file, one a line, each cut to its low 8 bits; a
  // line that holds no number gives 0. Stops after count entries or with the line that the end of
  // the file cuts off, which still gives an entry. A file that does not open gives count zeros; a
  // count below 1 or a null table stores nothing. Always true.
  static bool GetLUT(const std::string& path, unsigned char* table, int count);
};

}  // namespace Ravik

#endif  // UTIL_RAVIKSTDUTIL_H_
