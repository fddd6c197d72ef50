// Files that are read and replaced as a whole.
#ifndef UTIL_WHOLEFILE_H_
#define UTIL_WHOLEFILE_H_

#include <string>
#include <system_error>

namespace Ravik {

// The whole of a regular file of at most 64 MiB. On failure the text is empty and error says why:
// EINVAL for another kind of file, which is neither waited for nor read, EFBIG for a larger one.
std::string ReadWholeFile(const std::string& path, std::error_code& error);

// Replaces the file at path, or makes it, by a new file of the bytes that only the user may read
// (mode 0600, at most 64 MiB): readers find the old bytes or the new ones, also after a crash of
// the system where the file system keeps its promises. A symbolic link at path is replaced, not
// followed. Throws std::system_error, which names the failed call, with the old file in place.
void ReplaceWholeFile(const std::string& path, const std::string& bytes);

// Removes the new files that writers of path left behind when they were killed. The caller keeps
// other writers away; one that writes all the same fails, and the old file stays whole.
void RemoveLeftovers(const std::string& path);

}  // namespace Ravik

#endif  // UTIL_WHOLEFILE_H_
