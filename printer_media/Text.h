// Texts that are bytes, as printers hold them, and texts that people read.
#ifndef PRINTER_MEDIA_TEXT_H_
#define PRINTER_MEDIA_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace PrinterMedia {

// Each byte as the character of its number, in UTF-8, and back. JSON wants characters where
// printers have bytes of an encoding that nobody tells; a character past the last byte becomes "?".
std::string Widened(std::string_view bytes);
std::string Narrowed(std::string_view characters);

bool IsUtf8(std::string_view bytes);

// For a terminal: line feeds stay; other control characters, and bytes that are no UTF-8, as \xNN.
std::string Printable(std::string_view bytes);

// Columns of a terminal that a printable text takes: two for an ideograph, none for a combining
// mark.
std::size_t Width(std::string_view printable);

std::string ToHex(std::string_view bytes);

// False, with bytes left alone, when the text is not pairs of hexadecimal digits.
bool FromHex(std::string_view text, std::string& bytes);

// Compares letters of ASCII without regard to case.
bool SameButCase(std::string_view one, std::string_view other);

// "1 record", "2 records".
std::string Counted(std::size_t count, const std::string& thing);

// For a place that has one line, line feeds as \x0A.
std::string OnOneLine(std::string_view text);

// A printer's or record's name between quotation marks, on one line.
std::string Quoted(std::string_view name);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_TEXT_H_
