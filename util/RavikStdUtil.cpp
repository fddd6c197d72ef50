#include "util/RavikStdUtil.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <initializer_list>
#include <iterator>

#include "corefoundation/Foundation.h"
#include "util/ExecutablePath.h"

namespace Ravik {
namespace {

constexpr std::size_t kFormatBufferSize = 5000;
constexpr std::size_t kPathBufferSize = 255;

// Position of the last separator, or npos.
std::size_t LastSeparator(const std::string& path) {
  const std::size_t backslash = path.rfind('\\');
  return backslash != std::string::npos ? backslash : path.rfind('/');
}

// The path as a URL spells it, UTF-8; empty when it cannot be told.
std::string NormalizedPath(const std::string& path) {
  if (path.empty()) return {};
  const CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()),
      static_cast<CFIndex>(path.size()), false));
  if (!url) return {};
  const CFRef<CFStringRef> text(CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle));
  if (!text) return {};
  const char* const direct = CFStringGetCStringPtr(text.get(), kCFStringEncodingUTF8);
  if (direct != nullptr) return direct;
  std::array<char, kPathBufferSize> buffer{};
  const bool fits =
      CFStringGetCString(text.get(), buffer.data(), buffer.size(), kCFStringEncodingUTF8);
  return fits ? std::string(buffer.data()) : std::string();
}

bool LocalTime(std::tm& result) {
  const std::time_t now = std::time(nullptr);
  return localtime_r(&now, &result) != nullptr;
}

// The numbers joined, each below 10 with one leading zero.
std::string JoinDigits(std::initializer_list<int> numbers) {
  std::string text;
  for (const int number : numbers) {
    if (number < 10) text += '0';
    text += std::to_string(number);
  }
  return text;
}

std::string DateDigits(const std::tm& time) {
  return JoinDigits({time.tm_year + 1900, time.tm_mon + 1, time.tm_mday});
}

std::string TimeDigits(const std::tm& time) {
  return JoinDigits({time.tm_hour, time.tm_min, time.tm_sec});
}

}  // namespace

std::string StdUtil::GetFileName(const std::string& path) {
  const std::size_t separator = LastSeparator(path);
  return separator == std::string::npos ? path : path.substr(separator + 1);
}

std::string StdUtil::GetCurrentPath(const std::string& path) {
  const std::size_t separator = LastSeparator(path);
  return separator == std::string::npos ? path : path.substr(0, separator + 1);
}

std::string StdUtil::GetModuleDir() {
  const std::string path = NormalizedPath(ExecutablePath());
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string StdUtil::NormalizationPath(const std::string& path) {
  const bool trailing = !path.empty() && (path.back() == '\\' || path.back() == '/');
  return trailing ? path.substr(0, path.size() - 1) : path;
}

std::string StdUtil::RenameExt(const std::string& extension, const std::string& path) {
  return path.substr(0, path.rfind('.')) + extension;
}

std::string StdUtil::GetExtension(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  return dot == std::string::npos ? std::string() : path.substr(dot);
}

std::string StdUtil::Format(const char* format, ...) {
  if (format == nullptr) return {};
  std::array<char, kFormatBufferSize> buffer{};
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  va_end(arguments);
  return length < 0 ? std::string() : std::string(buffer.data());
}

bool StdUtil::IsTag(const std::string& text, const std::string& tag) {
  return text.find(tag) != std::string::npos;
}

bool StdUtil::IsFile(const std::string& path) {
  return std::ifstream(path).is_open();
}

std::string& StdUtil::StringReplace(std::string& text, const char* from, const char* to) {
  if (from == nullptr || to == nullptr) return text;
  // Copies: either pointer may point into text.
  const std::string search = from;
  const std::string replacement = to;
  if (search.empty() || search == replacement) return text;
  std::size_t position = 0;
  while ((position = text.find(search, position)) != std::string::npos) {
    text.replace(position, search.size(), replacement);
    position += replacement.size();
  }
  return text;
}

bool StdUtil::FileCopy(const std::string& source, const std::string& destination) {
  std::ifstream input(source, std::ios::binary);
  if (!input) return false;
  std::ofstream output(destination, std::ios::binary | std::ios::trunc);
  if (!output) return false;
  try {
    // Buffer iterators, because they let a read error through as an exception.
    const auto end = std::copy(std::istreambuf_iterator<char>(input), {},
                               std::ostreambuf_iterator<char>(output));
    output.close();
    return !end.failed() && output.good();
  } catch (const std::exception&) {
    return false;
  }
}

std::string StdUtil::DateStr() {
  std::tm time{};
  return LocalTime(time) ? DateDigits(time) : std::string();
}

std::string StdUtil::TimeStr() {
  std::tm time{};
  return LocalTime(time) ? TimeDigits(time) : std::string();
}

std::string StdUtil::DateTimeStr() {
  std::tm time{};
  return LocalTime(time) ? DateDigits(time) + TimeDigits(time) : std::string();
}

bool StdUtil::GetLUT(const std::string& path, unsigned char* table, int count) {
  if (table == nullptr) return true;
  std::ifstream file(path);
  for (int i = 0; i < count && !file.eof(); ++i) {
    std::string line;
    std::getline(file, line);
    table[i] = static_cast<unsigned char>(std::strtol(line.c_str(), nullptr, 10));
  }
  return true;
}

}  // namespace Ravik
