// Conversions between raw bytes, hexadecimal text and integers.
#ifndef GANTRYCORE_DATACONVERTER_H_
#define GANTRYCORE_DATACONVERTER_H_

#include <string>
#include <string_view>
#include <vector>

namespace Ravik {

// Hexadecimal text ("ascii") is two digits a byte, most significant first; it is written in upper
// case and read in either. The flag of the integer conversions selects the byte order: true is
// big-endian, false is little-endian.
class CDataConverter {
 public:
  // Eight entries a byte, every one equal to the byte's lowest bit; the other bits do not count.
  static std::vector<bool> Byte2Binary(unsigned char byte);
  static std::vector<bool> Byte2Binary(const std::vector<unsigned char>& bytes);

  // The digit's value; 0 for a character that is not a hexadecimal digit.
  static unsigned char Ascii2Byte(char digit);

  // The low byte of Ascii2Integer of every pair of characters. Text of odd length ends the process.
  static std::vector<unsigned char> Ascii2Byte(std::string_view ascii);
  static std::string Ascii2String(std::string_view ascii);

  static std::string Byte2Ascii(unsigned char byte);
  static std::string Byte2Ascii(const std::vector<unsigned char>& bytes);
  static std::string Byte2Ascii(std::string_view bytes);

  // What a stream's extraction of a hexadecimal unsigned int gives: leading white space is skipped,
  // a sign and a prefix 0x are accepted ("-1" is 0xFFFFFFFF), reading stops at the first character
  // that is not a digit. 0 if nothing can be read, 0xFFFFFFFF if the number is too large.
  static unsigned int Ascii2Integer(std::string_view ascii);

  // 32-bit arithmetic: of more than four bytes the four least significant ones count.
  static unsigned int Byte2Integer(const std::vector<unsigned char>& bytes, bool big_endian);

  // size bytes; those beyond the fourth are 0.
  static std::vector<unsigned char> Integer2Byte(unsigned int value, unsigned int size,
                                                 bool big_endian);

  // One character a byte, unchanged.
  static std::string Byte2String(const std::vector<unsigned char>& bytes);
  static std::vector<unsigned char> String2Byte(const std::string& text);
};

}  // namespace Ravik

#endif  // GANTRYCORE_DATACONVERTER_H_
