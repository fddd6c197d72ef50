// A printer's side of a local port for the tests: a pseudo-terminal as the system makes them, which
// echoes and edits lines.
#ifndef TESTS_PORT_DRIVER_LOCALPEER_H_
#define TESTS_PORT_DRIVER_LOCALPEER_H_

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "util/FileDescriptor.h"

namespace ZIOP {

class LocalPeer {
 public:
  LocalPeer() : terminal_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_TRUE(::grantpt(terminal_.get()) == 0 && ::unlockpt(terminal_.get()) == 0);
    path_ = ::ptsname(terminal_.get());
  }

  const std::string& path() const { return path_; }
  std::string Uri(int timeout_ms) const {
    return "file://" + path_ + "?timeout=" + std::to_string(timeout_ms);
  }

  // The printer's side; a host finds the device unplugged once it is closed.
  Ravik::FileDescriptor& side() { return terminal_; }

 private:
  Ravik::FileDescriptor terminal_;
  std::string path_;
};

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_LOCALPEER_H_
