#include "tests/end_to_end/Rig.h"

#include <gtest/gtest.h>
#include <picojson.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>

#include "NativeProcess/URLEncoder.h"

namespace fs = std::filesystem;

namespace {

std::string Entry(const std::string& key, const std::string& text) {
  const std::string escaped = std::regex_replace(text, std::regex("&"), "&amp;");
  return "<key>" + key + "</key><string>" + escaped + "</string>";
}

std::vector<std::string> PrinterCommand(const std::string& model,
                                        const std::vector<std::string>& options,
                                        const fs::path& local) {
  std::vector<std::string> command{VIRTUAL_PRINTER, "--model", model};
  command.insert(command.end(), options.begin(), options.end());
  if (!local.empty()) command.insert(command.end(), {"--local", local});
  return command;
}

// A place for a local port, its own each time.
fs::path LocalPath() {
  static int count = 0;
  return fs::temp_directory_path() /
         ("printer-" + std::to_string(getpid()) + '-' + std::to_string(++count));
}

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

VirtualPrinter::VirtualPrinter(const std::string& model, const std::vector<std::string>& options,
                               Link link, const std::string& errorFile)
    : local_(link == Link::kLocal ? LocalPath() : fs::path()),
      process_(PrinterCommand(model, options, local_), errorFile) {
  picojson::value ready;
  const std::string error = picojson::parse(ready, process_.ReadUntil("\n"));
  if (!error.empty()) throw std::runtime_error("virtual-printer: " + error);
  uri_ = link == Link::kLocal ? "file://" + ready.get("local").to_str()
                              : "socket://127.0.0.1:" + ready.get("raw").to_str() +
                                    "?snmp=" + ready.get("snmp").to_str();
}

VirtualPrinter::~VirtualPrinter() {
  std::error_code ignored;
  fs::remove(local_, ignored);
}

std::string VirtualPrinter::Uri(const std::string& furtherOptions) const {
  return furtherOptions.empty() ? uri_ : uri_ + (local_.empty() ? '&' : '?') + furtherOptions;
}

bool VirtualPrinter::Stop() {
  const int status = process_.Wait(SIGTERM);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

WorkerFolder::WorkerFolder(const std::vector<ListedPrinter>& printers) {
  std::string name = (fs::temp_directory_path() / "worker-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp: " + name);
  path_ = name;
  for (const char* product : {"PrinterNativeProcess", "libCoreFoundation.so", "ZIO"}) {
    fs::copy(fs::path(PRODUCTS_FOLDER) / product, path_ / product, fs::copy_options::recursive);
  }
  List(printers);
}

WorkerFolder::~WorkerFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void WorkerFolder::List(const std::vector<ListedPrinter>& printers) const {
  std::ofstream list(path_ / "SupportPrinterList.xml");
  list << R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)"
       << "<key>Printers</key><array>";
  for (const ListedPrinter& printer : printers) {
    list << "<dict>" << Entry("InfoTargetName", printer.name)
         << Entry("InfoPrinterName", printer.device) << Entry("DeviceURI", printer.uri)
         << "</dict>";
  }
  list << "</array></dict></plist>";
}

Process WorkerFolder::Start(const std::string& shell) const {
  const std::string defaults = "XDG_CONFIG_HOME=" + (path_ / "config").string();
  return {{"env", defaults, "sh", "-c", shell, path_ / "PrinterNativeProcess"}, path_ / "errors"};
}

std::string WorkerFolder::Errors() const {
  return ReadFile(path_ / "errors");
}

Outcome WorkerFolder::Run(const std::string& input) const {
  fs::remove(path_ / "errors");
  Process process = Start();
  process.Write(input);
  const std::string output = process.ReadAll();
  const int status = process.Wait();
  return {output, Errors(), status};
}

std::string Line(const std::string& json) {
  return URLEncoder::encode(json) + '\n';
}

// An answer has no end of its own: that to a line which is no request marks it.
std::string Ask(const Process& worker, const std::string& json) {
  const std::string end = "syntax error";
  worker.Write(Line(json) + Line("null"));
  const std::string answer = worker.ReadUntil(end);
  return answer.substr(0, answer.rfind(end));
}

Studio::Studio(const std::string& device, const std::vector<std::string>& printerOptions,
               const std::string& uriOptions, Link link)
    : device_(device),
      printer_(device, printerOptions, link),
      folder_({{"Studio", device, printer_.Uri(uriOptions)}}),
      worker_(folder_.Start()) {
  EXPECT_EQ(::Ask(worker_, kList), R"({"GetPrinterList":0,"Reply":{"DeviceName":")" + device +
                                       R"(","PrinterName":"Studio"}})");
}

std::string Studio::Ask(const std::string& command, const std::string& parameter) const {
  return ::Ask(worker_, Request(command, "Studio", device_, parameter));
}

std::string Request(const std::string& command, const std::string& printer,
                    const std::string& device, const std::string& parameter) {
  std::string json = R"({"Command":")" + command + R"(","PrinterName":")" + printer +
                     R"(","DeviceName":")" + device + '"';
  if (!parameter.empty()) json += R"(,"Parameter":)" + parameter;
  return json + '}';
}

std::string Document(const std::string& page) {
  return ReadFile(fs::path(DOCUMENTS_FOLDER) / page);
}
