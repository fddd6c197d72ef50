// What the tests of this folder share.
#ifndef TESTS_COREFOUNDATION_TESTSUPPORT_H_
#define TESTS_COREFOUNDATION_TESTSUPPORT_H_

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "corefoundation/Foundation.h"

// Bytes of a literal, zero bytes included.
template <std::size_t size>
std::string Bytes(const char (&literal)[size]) {
  return std::string(literal, size - 1);
}

inline CFRef<CFStringRef> MakeString(const std::string& text,
                                     CFStringEncoding encoding = kCFStringEncodingUTF8) {
  return CFRef<CFStringRef>(CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), encoding));
}

inline CFRef<CFUUIDRef> MakeUUID(const char* text) {
  return CFRef<CFUUIDRef>(CFUUIDCreateFromString(kCFAllocatorDefault, MakeString(text).get()));
}

inline CFRef<CFDataRef> MakeData(const std::string& bytes) {
  return CFRef<CFDataRef>(CFDataCreate(kCFAllocatorDefault,
                                       reinterpret_cast<const UInt8*>(bytes.data()),
                                       static_cast<CFIndex>(bytes.size())));
}

inline CFRef<CFTypeRef> Parse(const std::string& bytes) {
  return CFRef<CFTypeRef>(CFPropertyListCreateWithData(
      nullptr, MakeData(bytes).get(), kCFPropertyListMutableContainers, nullptr, nullptr));
}

// The XML of arrays in arrays.
inline std::string Nested(std::size_t depth) {
  std::string text;
  for (std::size_t i = 0; i < 2 * depth; ++i) text += i < depth ? "<array>" : "</array>";
  return text;
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class TemporaryFolder {
 public:
  TemporaryFolder() { EXPECT_NE(mkdtemp(path_.data()), nullptr); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  const std::string& path() const { return path_; }

 private:
  std::string path_ = testing::TempDir() + "corefoundation.XXXXXX";
};

#endif  // TESTS_COREFOUNDATION_TESTSUPPORT_H_
