// The encoding of request lines.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

#include "NativeProcess/URLDecoder.h"
#include "NativeProcess/URLEncoder.h"

namespace {

TEST(UrlDecoder, DecodesAsItsHostsEncode) {
  const std::pair<std::string, std::string> kCases[] = {
      {"a+b%2Bc", "a b+c"},
      {"%7b%7B", "{{"},
      {"%e7%B4%99", "\xe7\xb4\x99"},
      // Blanks, a sign and a single digit count in an escape.
      {"% 5|", "\x05|"},
      {"%-1|", "\xff|"},
      {"%+7|", "\x07|"},
      {"%4g|", "\x04|"},
      // An escape without a number repeats the last one that held one.
      {"%41%zz%zz|", "AAA|"},
      {"%41%g4|", "AA|"},
      // Without one before it, it ends the text, as a NUL does.
      {"a%zzb", "a"},
      {"x%0xy", "x"},
      {std::string("x\0y", 3), "x"},
      // Escapes that the end of the line cuts short.
      {"100%", "100"},
      {"a%4", "a\x04"},
      {"%41%", "A"},
      {"%41%z", "AA"},
      // Blanks alone are no number and no byte.
      {"a%\t\tb", "ab"},
  };
  for (const auto& [line, text] : kCases) EXPECT_EQ(URLDecoder::decode(line), text) << line;
  EXPECT_EQ(URLDecoder::decode(nullptr), "");
  // Each escape is read in the same time, however much of the line is still to come.
  std::string line;
  for (int i = 0; i < 3000000; ++i) line += "%41";
  EXPECT_TRUE(URLDecoder::decode(line) == std::string(3000000, 'A'));
}

TEST(UrlDecoder, ReadsEveryEscapeAsScanfDoes) {
  for (int i = 0x100; i < 0x10000; ++i) {
    const char pair[] = {static_cast<char>(i >> 8), static_cast<char>(i), '\0'};
    unsigned int number = 'A';
    // What scanf makes of any two characters is what is compared.
    // NOLINTNEXTLINE(cert-err34-c)
    const bool is_read = std::sscanf(pair, "%x", &number) != EOF;
    const std::string byte(is_read ? 1 : 0, static_cast<char>(number));
    const bool ends = is_read && (number & 0xFF) == 0;
    const std::string rest = ends || pair[1] == '\0' ? "" : "|";
    EXPECT_EQ(URLDecoder::decode("%41%" + std::string(pair, 2) + '|'),
              'A' + (ends ? "" : byte) + rest)
        << i;
  }
}

TEST(UrlDecoder, UndoesTheEncoderForEveryByte) {
  std::string text;
  for (int byte = 1; byte < 256; ++byte) text += static_cast<char>(byte);
  const std::string encoded = URLEncoder::encode(text);
  EXPECT_EQ(encoded.size(), 3 * text.size());
  EXPECT_EQ(encoded.substr(0, 6), "%01%02");
  EXPECT_EQ(encoded.substr(encoded.size() - 6), "%FE%FF");
  EXPECT_EQ(URLDecoder::decode(encoded), text);
  EXPECT_EQ(URLEncoder::encode(nullptr), "");
  EXPECT_EQ(URLEncoder::encode(""), "");
}

}  // namespace
