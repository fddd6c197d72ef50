// Printers on device nodes.
#include "port_driver/LocalSearch.h"

#include <gmock/gmock.h>

#include <fstream>

#include "tests/port_driver/TemporaryFolder.h"

namespace ZIOP {
namespace {

TEST(LocalSearchTest, FindsTheNodesThatTellAnIdentifier) {
  const TemporaryFolder folder;
  const std::string root = folder.path() + "/a b";
  const auto put = [&](const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(root + path).parent_path());
    std::ofstream(root + path) << text;
  };
  const auto id_path = [](const std::string& node) {
    return "/sys/class/usbmisc/" + node + "/device/ieee1284_id";
  };
  for (const char* const node : {"lp0", "lp1", "lp3", "lp12"}) {
    put(id_path(node), std::string("MDL:") + node);
  }
  put("/dev/usb/lp3", "no device");
  // Character devices that know nothing of printers: lp2 is not in sysfs either.
  for (const char* const node :
       {"/dev/usb/lp0", "/dev/usb/lp2", "/dev/usb/lp", "/dev/usb/lp0x", "/dev/usblp12"}) {
    std::filesystem::create_symlink("/dev/null", root + node);
  }
  std::filesystem::create_symlink("/nowhere", root + "/dev/usb/lp1");

  std::vector<FoundPrinter> found;
  SearchLocalPorts(root, Deadline::After(std::chrono::seconds(60)), found);
  SearchLocalPorts(folder.path() + "/none", Deadline::After(std::chrono::seconds(60)), found);
  std::vector<std::string> printers;
  printers.reserve(found.size());
  for (const FoundPrinter& printer : found) {
    printers.push_back(printer.uri + " " + printer.deviceId);
  }
  const std::string scheme = "file://" + folder.path() + "/a%20b";
  EXPECT_THAT(printers, testing::UnorderedElementsAre(scheme + "/dev/usb/lp0 MDL:lp0",
                                                      scheme + "/dev/usblp12 MDL:lp12"));
}

}  // namespace
}  // namespace ZIOP
