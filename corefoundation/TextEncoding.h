// Conversion between UTF-16 units and byte encodings.
#ifndef COREFOUNDATION_TEXTENCODING_H_
#define COREFOUNDATION_TEXTENCODING_H_

#include <CoreFoundation/CFString.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace CoreFoundation {

// The units of bytes; nullopt when they are not valid in encoding.
std::optional<std::u16string> DecodeText(std::string_view bytes, CFStringEncoding encoding);

// Appends the bytes of the character that text, which is not empty, begins with. Returns how many
// units it took; 0, with nothing appended, when encoding cannot express the character.
std::size_t EncodeCharacter(std::u16string_view text, CFStringEncoding encoding,
                            std::string& bytes);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_TEXTENCODING_H_
