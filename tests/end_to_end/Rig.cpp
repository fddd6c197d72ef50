#include "tests/end_to_end/Rig.h"

#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "NativeProcess/URLEncoder.h"

namespace fs = std::filesystem;

namespace {

std::string Escaped(const std::string& text) {
  std::string xml;
  for (const char c : text) {
    if (c == '&') {
      xml += "&amp;";
    } else if (c == '<') {
      xml += "&lt;";
    } else {
      xml += c;
    }
  }
  return xml;
}

std::string Entry(const std::string& key, const std::string& text) {
  return "<key>" + key + "</key><string>" + Escaped(text) + "</string>";
}

// Whether text is one whole answer: an object with all its braces, or the words of a refusal.
bool IsWholeAnswer(const std::string& text) {
  if (text == "syntax error") return true;
  int depth = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (quoted && text[i] == '\\') {
      ++i;
    } else if (text[i] == '"') {
      quoted = !quoted;
    } else if (!quoted && text[i] == '{') {
      ++depth;
    } else if (!quoted && text[i] == '}' && --depth == 0) {
      return true;
    }
  }
  return false;
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "worker-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp: " + name);
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

VirtualPrinter::VirtualPrinter(const std::string& model, const std::vector<std::string>& options)
    : model_(model) {
  std::vector<std::string> command{VIRTUAL_PRINTER, "--model", model};
  command.insert(command.end(), options.begin(), options.end());
  process_ = std::make_unique<Process>(command, Process::Environment{}, folder_.path() / "trace");
  const std::string line = process_->ReadUntil(
      [](const std::string& text) { return text.find('\n') != std::string::npos; });
  picojson::value ready;
  const std::string error = picojson::parse(ready, line);
  if (!error.empty()) throw std::runtime_error("virtual-printer: " + error + Trace());
  snmp_ = static_cast<int>(ready.get("snmp").get<double>());
  raw_ = static_cast<int>(ready.get("raw").get<double>());
}

std::string VirtualPrinter::Uri(const std::string& furtherOptions) const {
  std::string uri = "socket://127.0.0.1:" + std::to_string(raw_) + "?snmp=" + std::to_string(snmp_);
  if (!furtherOptions.empty()) uri += "&" + furtherOptions;
  return uri;
}

bool VirtualPrinter::Stop() {
  process_->Signal(SIGTERM);
  const int status = process_->Wait();
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string VirtualPrinter::Trace() const {
  return ReadFile(folder_.path() / "trace");
}

WorkerFolder::WorkerFolder(const std::vector<ListedPrinter>& printers) {
  const fs::path products(PRODUCTS_FOLDER);
  for (const char* name : {"PrinterNativeProcess", "libCoreFoundation.so", "ZIO"}) {
    fs::copy(products / name, path() / name, fs::copy_options::recursive);
  }
  List(printers);
}

void WorkerFolder::List(const std::vector<ListedPrinter>& printers) const {
  std::ofstream list(path() / "SupportPrinterList.xml");
  list << R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)"
       << "<key>Printers</key><array>";
  for (const ListedPrinter& printer : printers) {
    list << "<dict>" << Entry("InfoTargetName", printer.name)
         << Entry("InfoPrinterName", printer.device) << Entry("DeviceURI", printer.uri)
         << "</dict>";
  }
  list << "</array></dict></plist>";
}

std::unique_ptr<Process> WorkerFolder::Start() const {
  return std::make_unique<Process>(
      std::vector<std::string>{(path() / "PrinterNativeProcess").string()},
      Process::Environment{{"XDG_CONFIG_HOME", (path() / "config").string()}}, ErrorFile());
}

Outcome WorkerFolder::Run(const std::vector<std::string>& requests) const {
  std::string input;
  for (const std::string& request : requests) input += URLEncoder::encode(request) + '\n';
  return RunRaw(input);
}

Outcome WorkerFolder::RunRaw(const std::string& input) const {
  fs::remove(ErrorFile());
  const std::unique_ptr<Process> process = Start();
  process->Write(input);
  Outcome outcome;
  outcome.output = process->ReadAll();
  outcome.status = process->Wait();
  outcome.errors = ReadFile(ErrorFile());
  return outcome;
}

std::string KeptWorker::Ask(const std::string& json) {
  process_->Write(URLEncoder::encode(json) + '\n');
  return process_->ReadUntil(IsWholeAnswer);
}

std::string Request(const std::string& command, const std::string& printer,
                    const std::string& device, const std::string& parameter) {
  std::string json = R"({"Command":")" + command + R"(","PrinterName":")" + printer +
                     R"(","DeviceName":")" + device + '"';
  if (!parameter.empty()) json += R"(,"Parameter":)" + parameter;
  return json + '}';
}

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
