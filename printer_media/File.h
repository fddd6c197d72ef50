// Files, read and written whole.
#ifndef PRINTER_MEDIA_FILE_H_
#define PRINTER_MEDIA_FILE_H_

#include <string>

namespace PrinterMedia {

// Reads a file of up to 16 MiB. Throws Failure.
std::string ReadFile(const std::string& path);

// Throws Failure when a file may not be put there: nothing can be written in its folder, it is
// there already and nobody agrees to that it is replaced, or it is no regular file.
void RequireReplaceable(const std::string& path, bool is_agreed);

// Puts a file with the text in its place in one step, so that there is never a part of one. Throws
// Failure, and leaves what was there.
void ReplaceFile(const std::string& path, const std::string& text);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_FILE_H_
