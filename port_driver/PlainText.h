// Texts of printers, made fit to be compared and listed.
#ifndef PORT_DRIVER_PLAINTEXT_H_
#define PORT_DRIVER_PLAINTEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace ZIOP {

// text without blanks around it and with one blank for every run of them; control bytes count as
// blanks. Bytes from 80 on stay as they are, whatever the encoding.
std::string Tidy(std::string_view text);

// Tidy text in UTF-8, of at most maximum bytes, cut between characters: every byte that belongs to
// no character as U+FFFD, control characters and those that end a line (U+2028, U+2029) as blanks.
std::string ListedText(std::string_view text, std::size_t maximum);

// text with the letters A to Z in lower case.
std::string LowerCase(std::string_view text);

// Whether left comes before right for a reader: numbers in them by their value ("M 9", "M 10"),
// everything else byte by byte. A strict order: of two different texts one comes first.
bool ComesBefore(std::string_view left, std::string_view right);

}  // namespace ZIOP

#endif  // PORT_DRIVER_PLAINTEXT_H_
