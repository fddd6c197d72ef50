// Named values and user scales of the printers' settings.
#ifndef GANTRYCORE_COMMANDCONVERTTABLE_H_
#define GANTRYCORE_COMMANDCONVERTTABLE_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace Ravik {

// A named value of a parameter and the byte that printers use for it.
struct CTableElement {
  constexpr CTableElement(std::string_view parameter, std::string_view value_name,
                          unsigned int byte)
      : name(parameter), text(value_name), byteValue(byte) {}

  std::string_view name;
  std::string_view text;
  unsigned int byteValue;
};

// What is added to a printer's number of a parameter to get the user's.
struct CCorrectElement {
  int offset;
  std::string_view name;
};

// Look-ups take the first row that matches.
extern const CTableElement kConvertTable[49];
extern const CCorrectElement kCorrectTable[8];

// A printer's number as the user sees it.
struct CUserValue {
  std::string_view name;  // the named value that the number stands for; empty if there is none
  int number;             // without a name: the number in the user's scale
};

// What the two tables hold for one parameter.
struct CConversion {
  std::string_view name;
  const CTableElement* rows = nullptr;  // the first of its rows, which follow each other
  std::size_t row_count = 0;
  unsigned int offset = 0;  // the sum of those of its scale; unsigned, so that it wraps around

  const CTableElement* begin() const { return rows; }
  const CTableElement* end() const { return rows + row_count; }

  // The number's name, or the number in the user's scale.
  CUserValue ToUser(unsigned int value) const {
    for (const CTableElement& row : *this) {
      if (row.byteValue == value) return {row.text, 0};
    }
    return {{}, static_cast<int>(value + offset)};
  }
};

// Translates between the two forms of a setting; the same for every printer family. Names and texts
// are compared whole and in case.
class CCommandConvertTable {
 public:
  // False, with the out-parameter left alone, if the parameter has no such text or number.
  static bool StringToBinary(const std::string& name, const std::string& text, unsigned int& value);
  static bool BinaryToString(const std::string& name, unsigned int value, std::string& text);

  // What there is for a parameter, if only its scale of 1 to 1; never changed.
  static const CConversion& Of(std::string_view name);

  // From the printer's number to the user's, and back; unchanged for a parameter without a scale of
  // its own. 32-bit arithmetic that wraps around.
  static int CorrectValue(const std::string& name, unsigned int value);
  static int InverseCorrectValue(const std::string& name, unsigned int value);
};

}  // namespace Ravik

#endif  // GANTRYCORE_COMMANDCONVERTTABLE_H_
