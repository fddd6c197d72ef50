#include "NativeProcess/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>

#include "util/Diagnostics.h"

namespace Ravik {

void OccupyStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free number is the one that is missing.
    const int flags = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", flags) != descriptor) _exit(EXIT_FAILURE);
  }
}

int LoseAnswer(int error) {
  if (error != EPIPE) {
    ReportLine("PrinterNativeProcess",
               std::string("an answer could not be written: ") + std::strerror(error));
  }
  return EXIT_FAILURE;
}

}  // namespace Ravik
