// Files that hold a property list.
#ifndef COREFOUNDATION_LISTFILE_H_
#define COREFOUNDATION_LISTFILE_H_

#include <string>
#include <system_error>

namespace CoreFoundation {

// The whole of a regular file of at most 64 MiB. On failure the text is empty and error says why:
// EINVAL for another kind of file, which is neither waited for nor read, EFBIG for a larger one.
std::string ReadListFile(const std::string& path, std::error_code& error);

// Replaces the file at path, or makes it, by a new file of the bytes that only the user may read
// (mode 0600): readers find the old bytes or the new ones, also after a crash of the system where
// the file system keeps its promises. False, with the old file in place, on failure.
bool ReplaceListFile(const std::string& path, const std::string& bytes);

// Removes the new files that writers of path left behind when they were killed. The caller keeps
// other writers away; one that writes all the same fails, and the list stays whole.
void RemoveLeftovers(const std::string& path);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_LISTFILE_H_
