#include "corefoundation/CodePage932.h"

#include <iconv.h>

#include <cstdint>

namespace CoreFoundation {

namespace {

constexpr char kCodePage[] = "CP932";
constexpr char kUnits[] = "UTF-16LE";

// One conversion descriptor.
class Converter {
 public:
  Converter(const char* to, const char* from) : descriptor_(iconv_open(to, from)) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (IsOpen()) iconv_close(descriptor_);
  }

  // The whole of input, every byte of which makes at most two bytes; nullopt when it is not valid.
  std::optional<std::string> Convert(std::string input) {
    if (!IsOpen()) return std::nullopt;
    std::string output(2 * input.size(), '\0');
    char* from = input.data();
    char* to = output.data();
    std::size_t left = input.size();
    std::size_t room = output.size();
    if (iconv(descriptor_, &from, &left, &to, &room) != 0 || left != 0) return std::nullopt;
    output.resize(output.size() - room);
    return output;
  }

 private:
  bool IsOpen() const {
    // iconv_open's failure is (iconv_t)-1.
    return reinterpret_cast<std::intptr_t>(descriptor_) != -1;
  }

  iconv_t descriptor_;
};

char16_t UnitAt(const std::string& bytes, std::size_t index) {
  const auto low = static_cast<unsigned char>(bytes[index]);
  const auto high = static_cast<unsigned char>(bytes[index + 1]);
  return static_cast<char16_t>(low | high << 8);
}

}  // namespace

std::optional<std::u16string> DecodeCodePage932(std::string_view bytes) {
  const auto converted = Converter(kUnits, kCodePage).Convert(std::string(bytes));
  if (!converted) return std::nullopt;
  std::u16string units;
  for (std::size_t i = 0; i + 1 < converted->size(); i += 2) units.push_back(UnitAt(*converted, i));
  return units;
}

bool EncodeCodePage932(char16_t unit, std::string& bytes) {
  const std::string input{static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
  const auto code = Converter(kCodePage, kUnits).Convert(input);
  if (!code || Converter(kUnits, kCodePage).Convert(*code) != input) return false;
  bytes += *code;
  return true;
}

}  // namespace CoreFoundation
