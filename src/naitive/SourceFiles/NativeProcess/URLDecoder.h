// Undoes the encoding in which the host sends a request line.
#ifndef NATIVEPROCESS_URLDECODER_H_
#define NATIVEPROCESS_URLDECODER_H_

#include <string>

// Decoding of the form application/x-www-form-urlencoded: "+" is a space, "%" and two hexadecimal
// digits a byte, everything else itself.
//
// An escape is read as the scanf conversion %x reads its two characters, so blanks, a sign and a
// single digit count; one that holds no number repeats the value of the last one that did, and one
// without a character gives nothing. The text ends at a NUL, raw or decoded; also at an escape
// without a number that comes before any other, so that a damaged line is not taken for a whole
// one. Without memory for it the text is empty.
class URLDecoder {
 public:
  static std::string decode(const std::string& text);

  // The text ends at its NUL; a null pointer gives the empty text.
  static std::string decode(const char* text);
};

#endif  // NATIVEPROCESS_URLDECODER_H_
