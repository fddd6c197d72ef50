// A folder that a test has for itself.
#ifndef TESTS_PORT_DRIVER_TEMPORARYFOLDER_H_
#define TESTS_PORT_DRIVER_TEMPORARYFOLDER_H_

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace ZIOP {

// Empty, and removed with what is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() { EXPECT_NE(mkdtemp(path_.data()), nullptr); }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_ = std::filesystem::temp_directory_path() / "driver-XXXXXX";
};

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_TEMPORARYFOLDER_H_
