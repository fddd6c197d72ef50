// Reading the supported-printer list and the preferences, and loading the plug-in.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "printer_io/CPluginLoader.h"
#include "printer_io/PropertyListFile.h"
#include "printer_io/ZIOPlugin.h"
#include "printer_io/ZIOSearchPrinter.h"

namespace Bench {
namespace {

// A folder for lists and preferences, until the process ends.
const std::filesystem::path& Folder() {
  static const struct Temporary {
    Temporary() {
      std::string name = (std::filesystem::temp_directory_path() / "parts.XXXXXX").string();
      path = mkdtemp(name.data());
      setenv("XDG_CONFIG_HOME", path.c_str(), 1);
    }
    ~Temporary() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
  } folder;
  return folder.path;
}

std::string PrinterName(int64_t number) {
  return "Printer" + std::to_string(number);
}

// The path of a list of as many printers.
std::string WriteList(int64_t count) {
  std::string path = Folder() / ("list" + std::to_string(count));
  std::ofstream list(path);
  list << R"(<plist version="1.0"><dict><key>Printers</key><array>)";
  for (int64_t i = 0; i < count; ++i) {
    list << "<dict><key>InfoTargetName</key><string>" << PrinterName(i)
         << "</string><key>InfoPrinterName</key><string>QM-R410 Series</string>"
         << "<key>DeviceURI</key><string>socket://127.0.0.1?snmp=1161</string></dict>";
  }
  list << "</array></dict></plist>";
  return path;
}

CFRef<CFStringRef> MakeText(const std::string& text) {
  return CFRef<CFStringRef>(
      CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

CFRef<CFDictionaryRef> ReadList(const std::string& path) {
  return Ravik::ReadPropertyListFile(MakeText(path).get());
}

const CFRef<CFStringRef>& PlugInPath() {
  static const auto path = MakeText(PRODUCTS_FOLDER "/ZIO/ZIOP.plugin");
  return path;
}

void ReadPrinterList(benchmark::State& state) {
  const std::string path = WriteList(state.range(0));
  for (auto _ : state) {
    if (!ReadList(path)) state.SkipWithError("not read");
  }
  state.SetComplexityN(state.range(0));
}

// As an open of a worker that is kept running does it: the stored list, and the last printer in it,
// which it has found before.
void ReadPreferences(benchmark::State& state) {
  const auto list = ReadList(WriteList(state.range(0)));
  ZIOSearchPrinter(PlugInPath().get(), list.get()).GetPrinterList();
  const auto name = MakeText(PrinterName(state.range(0) - 1));
  ZIOSearchPrinter::GetPrinterInfo(name.get());
  for (auto _ : state) {
    if (!ZIOSearchPrinter::GetPrinterInfo(name.get())) state.SkipWithError("not found");
  }
  state.SetComplexityN(state.range(0));
}

void LoadPlugIn(benchmark::State& state) {
  const auto type = MakeText(ZIO_PLUGIN_TYPE_ID);
  for (auto _ : state) {
    CPluginLoader loader(PlugInPath().get(), type.get());
    auto* const port = static_cast<ZIOPortInterface*>(loader.GetInterface(ZIO_PORT_INTERFACE_ID));
    if (port == nullptr) {
      state.SkipWithError("not loaded");
      break;
    }
    port->table->release(port);
  }
}

BENCHMARK(ReadPrinterList)->RangeMultiplier(10)->Range(1, 10'000)->Complexity();
BENCHMARK(ReadPreferences)->RangeMultiplier(10)->Range(1, 10'000)->Complexity();
BENCHMARK(LoadPlugIn);

}  // namespace
}  // namespace Bench
