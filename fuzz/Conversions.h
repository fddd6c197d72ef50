// The worker's conversions between bytes, hexadecimal text and integers, done by other means.
#ifndef FUZZ_CONVERSIONS_H_
#define FUZZ_CONVERSIONS_H_

#include <string>
#include <vector>

namespace fuzz {

// The number at the start of hexadecimal text, as a stream extracts it.
unsigned int HexNumber(const std::string& ascii);

// The characters that pairs of hexadecimal digits stand for; the text has an even length.
std::string HexCharacters(const std::string& ascii);

// Compares every conversion of the bytes with another one's result, or with its own way back.
void CheckConversions(const std::vector<unsigned char>& bytes);

}  // namespace fuzz

#endif  // FUZZ_CONVERSIONS_H_
