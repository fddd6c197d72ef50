// What is listed of printers that tell anything.
//
// Input: texts that zero bytes end; the first one is a configured printer's name, and each ten
// after it are the members of a printer that was found, in the order of kFoundPrinterFields. "%" in
// front of a URI stands for "socket://192.0.2.".
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>

#include "corefoundation/Foundation.h"
#include "fuzz/Fuzz.h"
#include "port_driver/PrinterCatalogue.h"
#include "port_driver/SearchModule.h"
#include "util/Diagnostics.h"

namespace {

using ZIOP::FoundPrinter;
using ZIOP::ListedPrinter;
using ZIOP::PrinterSource;

const std::vector<std::string> kModels = {"M", "Z M", "N Series"};

std::string TakeText(std::string_view& input) {
  const std::string_view text = input.substr(0, input.find('\0'));
  input.remove_prefix(std::min(text.size() + 1, input.size()));
  return std::string(text);
}

FoundPrinter TakePrinter(std::string_view& input) {
  FoundPrinter printer;
  for (const auto field : ZIOP::kFoundPrinterFields) printer.*field = TakeText(input);
  if (printer.uri.compare(0, 1, "%") == 0) printer.uri.replace(0, 1, "socket://192.0.2.");
  return printer;
}

std::vector<ListedPrinter> List(const std::string& configured,
                                const std::vector<FoundPrinter>& found,
                                const std::vector<FoundPrinter>& local = {}) {
  ZIOP::PrinterCatalogue catalogue(ZIOP::SupportedModels(kModels), {});
  catalogue.AddConfigured({configured, "M", "socket://192.0.2.1"});
  const auto half = found.begin() + static_cast<std::ptrdiff_t>(found.size() / 2);
  catalogue.AddFound(PrinterSource::kQueues, {found.begin(), half});
  catalogue.AddFound(PrinterSource::kNetwork, {half, found.end()});
  catalogue.AddFound(PrinterSource::kLocal, local);
  return catalogue.List();
}

// A line of UTF-8, by another reader of it.
bool IsText(const std::string& text) {
  const CFRef<CFStringRef> string(
      CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
  bool is_line = string && text.find('\0') == std::string::npos;
  for (const char c : text) is_line = is_line && static_cast<unsigned char>(c) >= 0x20;
  return is_line;
}

void Check(const std::string& configured, const std::vector<ListedPrinter>& printers) {
  std::set<std::string> names = {configured};
  for (const ListedPrinter& printer : printers) {
    FUZZ_CHECK(names.insert(printer.name).second);
    FUZZ_CHECK(!printer.name.empty() && printer.name.size() <= ZIOP::kMaximumNameLength);
    FUZZ_CHECK(IsText(printer.name));
    FUZZ_CHECK(std::count(kModels.begin(), kModels.end(), printer.model) == 1);
    FUZZ_CHECK(ZIOP::MakePrinterRecord(printer));
  }
}

bool Equal(const std::vector<ListedPrinter>& left, const std::vector<ListedPrinter>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const ListedPrinter& one, const ListedPrinter& other) {
                      return one.name == other.name && one.model == other.model &&
                             one.uri == other.uri;
                    });
}

// The order of arrival within a source plays no part, and what is found again is not listed again.
void CheckOrder(const std::string& configured, std::vector<FoundPrinter> found,
                const std::vector<ListedPrinter>& printers) {
  FUZZ_CHECK(Equal(printers, List(configured, found, found)));
  const auto half = found.begin() + static_cast<std::ptrdiff_t>(found.size() / 2);
  std::reverse(found.begin(), half);
  std::reverse(half, found.end());
  FUZZ_CHECK(Equal(printers, List(configured, found)));
}

}  // namespace

// Linked in place of util/Diagnostics: what is left out is not reported a thousand times a second.
namespace Ravik {

std::string Printable(std::string_view text) {
  return std::string(text);
}

void ReportLine(const std::string& /*reporter*/, const std::string& /*line*/) {}

}  // namespace Ravik

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string configured = TakeText(input);
  std::vector<FoundPrinter> found;
  while (!input.empty()) found.push_back(TakePrinter(input));
  const std::vector<ListedPrinter> printers = List(configured, found);
  Check(configured, printers);
  CheckOrder(configured, found, printers);
  return 0;
}
