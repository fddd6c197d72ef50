// Shift-JIS as code page 932 has it, through iconv.
#ifndef COREFOUNDATION_CODEPAGE932_H_
#define COREFOUNDATION_CODEPAGE932_H_

#include <optional>
#include <string>
#include <string_view>

namespace CoreFoundation {

// The units of bytes; nullopt when they hold a code that stands for nothing.
std::optional<std::u16string> DecodeCodePage932(std::string_view bytes);

// Appends the code of unit. False, with nothing appended, when none decodes back to it: iconv knows
// codes of characters that only look alike.
bool EncodeCodePage932(char16_t unit, std::string& bytes);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_CODEPAGE932_H_
