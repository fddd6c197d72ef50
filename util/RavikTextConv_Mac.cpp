#include "util/RavikTextConv_Mac.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstring>

#include "corefoundation/Foundation.h"

namespace Ravik {
namespace {

unsigned int ShiftJIS() {
  constexpr unsigned long kNSShiftJISStringEncoding = 8;
  return CFStringConvertNSStringEncodingToEncoding(kNSShiftJISStringEncoding);
}

const char* Bytes(const std::wstring& text) {
  return reinterpret_cast<const char*>(text.c_str());
}

std::wstring WideText(const std::string& bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text.substr(0, text.find(L'\0'));
}

}  // namespace

std::string ConvertEncoding(const char* text, unsigned int from, unsigned int to) {
  if (text == nullptr) return {};
  const CFRef<CFStringRef> source(CFStringCreateWithCString(kCFAllocatorDefault, text, from));
  if (!source) return {};
  const CFIndex count = CFStringGetBytes(source.get(), {0, CFStringGetLength(source.get())}, to, 0,
                                         false, nullptr, 0, nullptr);
  if (count <= 0) return {};
  std::string result(static_cast<std::size_t>(count), '\0');
  CFStringGetCString(source.get(), result.data(), count, to);
  return result;
}

std::string TextConv::SJISToUTF8(const std::string& text) {
  return ConvertEncoding(text.c_str(), ShiftJIS(), kCFStringEncodingUTF8);
}

std::string TextConv::UTF8ToSJIS(const std::string& text) {
  return ConvertEncoding(text.c_str(), kCFStringEncodingUTF8, ShiftJIS());
}

std::wstring TextConv::SJISToUTF16(const std::string& text) {
  return WideText(ConvertEncoding(text.c_str(), ShiftJIS(), kCFStringEncodingUTF16LE));
}

std::wstring TextConv::UTF8ToUTF16(const std::string& text) {
  return WideText(ConvertEncoding(text.c_str(), kCFStringEncodingUTF8, kCFStringEncodingUTF16LE));
}

std::string TextConv::UTF16ToSJIS(const std::wstring& text) {
  return ConvertEncoding(Bytes(text), kCFStringEncodingUTF16LE, ShiftJIS());
}

std::string TextConv::UTF16ToUTF8(const std::wstring& text) {
  return ConvertEncoding(Bytes(text), kCFStringEncodingUTF16LE, kCFStringEncodingUTF8);
}

}  // namespace Ravik
