// The platform's answer to where the running executable is.
#ifndef UTIL_EXECUTABLEPATH_H_
#define UTIL_EXECUTABLEPATH_H_

#include <string>

namespace Ravik {

// Path of the running executable, as the platform spells it at the first call; empty when the
// platform does not tell it or it takes 1024 bytes or more.
const std::string& ExecutablePath();

}  // namespace Ravik

#endif  // UTIL_EXECUTABLEPATH_H_
