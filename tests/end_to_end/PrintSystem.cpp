#include "tests/end_to_end/PrintSystem.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "util/FileDescriptor.h"

namespace fs = std::filesystem;

namespace {

void WriteFile(const fs::path& path, const std::string& text) {
  std::ofstream(path) << text;
}

// What cupsd would otherwise look for or write in the system's own folders.
std::string FilesConfiguration(const fs::path& folder) {
  std::string text;
  for (const char* name : {"ServerRoot", "CacheDir", "RequestRoot", "TempDir", "StateDir",
                           "ServerBin", "DataDir", "DocumentRoot"}) {
    text += std::string(name) + ' ' + folder.string() + '\n';
  }
  for (const char* name : {"AccessLog", "PageLog", "ErrorLog"}) {
    text += std::string(name) + ' ' + (folder / name).string() + '\n';
  }
  return text;
}

std::string Driver(const std::string& model) {
  std::string text =
      "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n"
      "*LanguageVersion: English\n*LanguageEncoding: ISOLatin1\n"
      "*PCFileName: \"TEST.PPD\"\n*Manufacturer: \"Maker\"\n*Product: \"(Test)\"\n"
      "*PSVersion: \"(3010.000) 0\"\n";
  for (const char* name : {"ModelName", "ShortNickName", "NickName"}) {
    text += std::string("*") + name + ": \"" + model + "\"\n";
  }
  return text;
}

std::vector<std::string> Command(const fs::path& folder, const std::vector<PrintQueue>& queues) {
  std::string printers;
  std::string members;
  for (const PrintQueue& queue : queues) {
    printers += "<Printer " + queue.name + ">\nInfo " + queue.info + "\nDeviceURI " +
                queue.deviceUri + "\nState Idle\nAccepting Yes\n</Printer>\n";
    members += "Printer " + queue.name + '\n';
    if (!queue.driver.empty()) {
      WriteFile(folder / "ppd" / (queue.name + ".ppd"), Driver(queue.driver));
    }
  }
  WriteFile(folder / "printers.conf", printers);
  WriteFile(folder / "classes.conf", "<Class all>\nAccepting Yes\n" + members + "</Class>\n");
  WriteFile(folder / "cups-files.conf", FilesConfiguration(folder));
  WriteFile(folder / "cupsd.conf", "Listen " + (folder / "socket").string() +
                                       "\nBrowsing Off\nWebInterface No\n"
                                       "<Location />\nAllow all\n</Location>\n"
                                       "<Policy default>\n<Limit All>\nAllow all\n</Limit>\n"
                                       "</Policy>\n");
  return {CUPSD, "-f", "-c", folder / "cupsd.conf", "-s", folder / "cups-files.conf"};
}

bool IsServing(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const Ravik::FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  return ::connect(client.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

}  // namespace

PrintSystemFolder::PrintSystemFolder() {
  std::string name = (fs::temp_directory_path() / "cups-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp: " + name);
  path_ = name;
  if (socket().size() >= sizeof(sockaddr_un::sun_path)) {
    fs::remove(path_);
    throw std::runtime_error("TMPDIR is too long for a socket's name: " + name);
  }
  // The folders of programs that cupsd wants to be there, whether there is anything in them or not.
  for (const char* folder : {"ppd", "backend", "daemon", "filter", "notifier", "monitor"}) {
    fs::create_directory(path_ / folder);
  }
  setenv("CUPS_SERVER", socket().c_str(), 1);
}

PrintSystemFolder::~PrintSystemFolder() {
  unsetenv("CUPS_SERVER");
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

PrintSystem::PrintSystem(const std::vector<PrintQueue>& queues)
    : process_(Command(folder_.path(), queues), folder_.path() / "errors") {
  for (int tries = 0; !IsServing(folder_.socket()); ++tries) {
    if (tries == 6000) throw std::runtime_error("cupsd does not serve");
    usleep(10000);
  }
}
