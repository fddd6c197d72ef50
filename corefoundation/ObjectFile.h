// Executables, before the dynamic linker is given them.
#ifndef COREFOUNDATION_OBJECTFILE_H_
#define COREFOUNDATION_OBJECTFILE_H_

#include <string>

namespace CoreFoundation {

// Whether the file at path begins as an object file of this machine (ELF, System V ABI) of which a
// loadable segment or the table of segments is missing at its end. The dynamic linker maps such a
// file, and the process ends with a bus error; whatever else is no object file it refuses itself.
bool IsCutShort(const std::string& path);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_OBJECTFILE_H_
