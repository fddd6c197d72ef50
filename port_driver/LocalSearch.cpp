// Scan of the printers' device nodes.
#include "port_driver/LocalSearch.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "util/FileDescriptor.h"

namespace ZIOP {
namespace {

// The longest identifier that is read; the kernel's driver keeps 1023 bytes.
constexpr std::size_t kMaximumIdLength = 4096;

constexpr struct {
  const char* folder;
  std::string_view prefix;
} kNodes[] = {{"/dev/usb", "lp"}, {"/dev", "usblp"}};

bool IsNumber(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool IsCharacterDevice(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISCHR(status.st_mode);
}

std::string IdFromKernel(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string id(kMaximumIdLength, '\0');
  file.read(id.data(), static_cast<std::streamsize>(id.size()));
  id.resize(static_cast<std::size_t>(file.gcount()));
  return id;
}

std::string IdFromDevice(const std::string& path) {
  const Ravik::FileDescriptor node(
      ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  char id[kMaximumIdLength] = {};
  // LPIOC_GET_DEVICE_ID of the printer class driver: the identifier with its length in front.
  constexpr unsigned long kGetDeviceId = _IOC(_IOC_READ, 'P', 1, sizeof id);
  if (!node || ::ioctl(node.get(), kGetDeviceId, id) < 0) {
    return {};
  }
  const std::string answer(id, sizeof id);
  return answer.substr(0, answer.find_last_not_of('\0') + 1);
}

// RFC 3986: what a path holds besides these is percent-encoded.
bool IsPathByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("/-._~").find(c) != std::string_view::npos;
}

std::string FileURI(const std::string& path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uri = "file://";
  for (const char c : path) {
    if (IsPathByte(c)) {
      uri += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      uri += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return uri;
}

void Ask(const std::string& root, const std::string& path, const std::string& number,
         std::vector<FoundPrinter>& found) {
  if (!IsCharacterDevice(path)) {
    return;
  }
  FoundPrinter printer;
  printer.deviceId = IdFromKernel(root + "/sys/class/usbmisc/lp" + number + "/device/ieee1284_id");
  if (printer.deviceId.empty()) {
    printer.deviceId = IdFromDevice(path);
  }
  if (!printer.deviceId.empty()) {
    printer.uri = FileURI(path);
    found.push_back(std::move(printer));
  }
}

}  // namespace

void SearchLocalPorts(const std::string& root, const Deadline& deadline,
                      std::vector<FoundPrinter>& found) {
  for (const auto& [folder, prefix] : kNodes) {
    std::error_code error;
    std::filesystem::directory_iterator entry(root + folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
      const std::string name = entry->path().filename();
      if (name.compare(0, prefix.size(), prefix) == 0 && IsNumber(name.substr(prefix.size())) &&
          !deadline.HasPassed()) {
        Ask(root, entry->path(), name.substr(prefix.size()), found);
      }
    }
  }
}

}  // namespace ZIOP
