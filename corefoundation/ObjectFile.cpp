#include "corefoundation/ObjectFile.h"

#include <link.h>

#include <cstdint>
#include <cstring>
#include <fstream>

namespace CoreFoundation {

namespace {

template <typename T>
bool ReadAt(std::ifstream& file, std::uint64_t offset, T& object) {
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(reinterpret_cast<char*>(&object), sizeof(object));
  return file.good();
}

}  // namespace

bool IsCutShort(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const auto size = static_cast<std::uint64_t>(file.tellg());
  ElfW(Ehdr) header;
  if (!file || !ReadAt(file, 0, header)) return false;
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
  if (header.e_phentsize != sizeof(ElfW(Phdr))) return false;
  for (unsigned i = 0; i < header.e_phnum; ++i) {
    ElfW(Phdr) segment;
    if (header.e_phoff > size) return true;
    if (!ReadAt(file, header.e_phoff + i * sizeof(segment), segment)) return true;
    if (segment.p_type != PT_LOAD) continue;
    if (segment.p_offset > size || segment.p_filesz > size - segment.p_offset) return true;
  }
  return false;
}

}  // namespace CoreFoundation
