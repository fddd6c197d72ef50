#include "corefoundation/ObjectFile.h"

#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <vector>

#include "util/FileDescriptor.h"

namespace CoreFoundation {

namespace {

// False for a file that ends before.
bool ReadAt(const Ravik::FileDescriptor& file, std::uint64_t offset, void* bytes,
            std::size_t size) {
  ssize_t length = -1;
  do {
    length = pread(file.get(), bytes, size, static_cast<off_t>(offset));
  } while (length < 0 && errno == EINTR);
  return length >= 0 && static_cast<std::size_t>(length) == size;
}

bool ReachesBeyond(const ElfW(Phdr) & segment, std::uint64_t size) {
  return segment.p_type == PT_LOAD &&
         (segment.p_offset > size || segment.p_filesz > size - segment.p_offset);
}

}  // namespace

bool IsCutShort(const std::string& path) {
  const Ravik::FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status;
  ElfW(Ehdr) header;
  if (!file || fstat(file.get(), &status) != 0) return false;
  if (!ReadAt(file, 0, &header, sizeof(header))) return false;
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) return false;
  if (header.e_phentsize != sizeof(ElfW(Phdr))) return false;
  const auto size = static_cast<std::uint64_t>(status.st_size);
  std::vector<ElfW(Phdr)> segments(header.e_phnum);
  if (header.e_phoff > size) return !segments.empty();
  if (!ReadAt(file, header.e_phoff, segments.data(), segments.size() * sizeof(ElfW(Phdr)))) {
    return true;
  }
  return std::any_of(segments.begin(), segments.end(),
                     [&](const auto& segment) { return ReachesBeyond(segment, size); });
}

}  // namespace CoreFoundation
