// From the searches to printer records.
#include "port_driver/Discovery.h"

#include <netdb.h>

#include <deque>
#include <exception>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "port_driver/DeviceURI.h"
#include "port_driver/DiscoverySettings.h"
#include "port_driver/DriverError.h"
#include "port_driver/DriverTrace.h"
#include "port_driver/HostAddress.h"
#include "port_driver/LocalSearch.h"
#include "port_driver/Module.h"
#include "port_driver/PrinterCatalogue.h"
#include "port_driver/PrinterMemory.h"
#include "port_driver/SearchModule.h"
#include "port_driver/SearchThread.h"
#include "util/Diagnostics.h"
#include "util/TraceLine.h"

namespace ZIOP {
namespace {

constexpr std::size_t kTextShown = 256;  // bytes of a text in a trace

struct Findings {
  std::vector<FoundPrinter> found;
  HostAddresses hosts;
};

std::string NumericText(const HostAddress& address) {
  char text[NI_MAXHOST];
  const int status =
      ::getnameinfo(address.get(), address.length, text, sizeof text, nullptr, 0, NI_NUMERICHOST);
  return status == 0 ? text : "";
}

template <typename Printer>
std::vector<std::string> URIsOf(const std::vector<Printer>& printers) {
  std::vector<std::string> uris;
  uris.reserve(printers.size());
  for (const Printer& printer : printers) {
    uris.push_back(printer.uri);
  }
  return uris;
}

// Hosts of network printers; a URI that cannot be read has none.
std::set<std::string> HostsOf(const std::vector<std::string>& uris) {
  std::set<std::string> hosts;
  for (const std::string& uri : uris) {
    try {
      hosts.insert(DeviceURI::Parse(uri).host);
    } catch (const DriverError&) {
      continue;
    }
  }
  hosts.erase(std::string());
  return hosts;
}

// Looks up the hosts of the URIs. One whose addresses are not known by the deadline is passed over:
// it may just as well be a printer that is switched off.
void LookUp(const std::vector<std::string>& uris, const Deadline& deadline, HostAddresses& known) {
  Waiter waiter;
  const std::set<std::string> hosts = HostsOf(uris);
  auto left = static_cast<int>(hosts.size());
  for (const std::string& host : hosts) {
    if (deadline.HasPassed()) {
      return;
    }
    try {
      for (const HostAddress& address : ResolveHost(host, deadline.Share(left), waiter)) {
        known[host].push_back(NumericText(address));
      }
    } catch (const DriverError&) {
      known.erase(host);
    }
    --left;
  }
}

void SearchWithModule(const char* module, const DiscoverySettings& settings,
                      const Deadline& deadline, Findings& findings) {
  RunSearchModule(DriverFolder() + "/" + module, settings.addresses, deadline, findings.found);
  LookUp(URIsOf(findings.found), deadline, findings.hosts);
}

struct Results {
  Findings queues;
  Findings network;
  Findings local;
  HostAddresses configured;
};

// Runs the searches at the same time; each ends by the deadline.
void RunSearches(const DiscoverySettings& settings, const std::vector<std::string>& configured,
                 Results& results) {
  const Deadline deadline = Deadline::After(settings.timeout);
  std::deque<SearchThread> threads;
  threads.emplace_back([&] { LookUp(configured, deadline, results.configured); });
  if (settings.queues) {
    threads.emplace_back(
        [&] { SearchWithModule("libZIOPQueues.so", settings, deadline, results.queues); });
  }
  if (settings.network) {
    threads.emplace_back(
        [&] { SearchWithModule("libZIOPNetwork.so", settings, deadline, results.network); });
  }
  if (settings.local) {
    threads.emplace_back([&] { SearchLocalPorts("", deadline, results.local.found); });
  }
}

void TraceSettings(const DiscoverySettings& settings) {
  if (!IsTraced()) {
    return;
  }
  const auto word = [](bool isWanted) { return isWanted ? "yes" : "no"; };
  std::string text = std::string("Network=") + word(settings.network) +
                     " CUPS=" + word(settings.queues) + " USB=" + word(settings.local) +
                     " TimeoutMilliseconds=" + std::to_string(settings.timeout.count());
  for (const std::string& address : settings.addresses) {
    text += " Address=" + Ravik::TraceQuoted(address, kTextShown);
  }
  Trace("network", "search", {}, text);
}

void TraceFound(const char* port, const char* event, const std::vector<FoundPrinter>& found) {
  if (!IsTraced()) {
    return;
  }
  constexpr std::pair<const char*, std::string FoundPrinter::*> kTexts[] = {
      {"uri", &FoundPrinter::uri},
      {"name", &FoundPrinter::name},
      {"model", &FoundPrinter::model},
      {"serial", &FoundPrinter::serial},
      {"device-id", &FoundPrinter::deviceId},
      {"description", &FoundPrinter::description},
  };
  for (const FoundPrinter& printer : found) {
    std::string text;
    for (const auto& [title, member] : kTexts) {
      if (!(printer.*member).empty()) {
        text += (text.empty() ? "" : " ") + std::string(title) + '=' +
                Ravik::TraceQuoted(printer.*member, kTextShown);
      }
    }
    Trace(port, event, {}, text);
  }
}

std::vector<ListedPrinter> ReadRecords(CFArrayRef records) {
  std::vector<ListedPrinter> printers;
  for (CFIndex i = 0; i < CFArrayGetCount(records); ++i) {
    printers.push_back(
        ReadPrinterRecord(CFCast<CFDictionaryRef>(CFArrayGetValueAtIndex(records, i))));
  }
  return printers;
}

std::vector<ListedPrinter> ListWhatIsNew(const DiscoverySettings& settings,
                                         const std::vector<ListedPrinter>& configured) {
  Results results;
  TraceSettings(settings);
  RunSearches(settings, URIsOf(configured), results);
  TraceFound("queue", "found", results.queues.found);
  TraceFound("network", "found", results.network.found);
  TraceFound("local", "found", results.local.found);
  HostAddresses hosts = std::move(results.configured);
  hosts.merge(results.queues.hosts);
  hosts.merge(results.network.hosts);
  const SupportedModels models(settings.models);
  if (settings.network) {
    const auto recalled = RecallPrinters(results.network.found, settings.addresses, models);
    TraceFound("network", "remembered", recalled);
    results.network.found.insert(results.network.found.end(), recalled.begin(), recalled.end());
  }
  PrinterCatalogue catalogue(models, std::move(hosts));
  for (const ListedPrinter& printer : configured) {
    catalogue.AddConfigured(printer);
  }
  catalogue.AddFound(PrinterSource::kQueues, results.queues.found);
  catalogue.AddFound(PrinterSource::kNetwork, results.network.found);
  catalogue.AddFound(PrinterSource::kLocal, results.local.found);
  return catalogue.List();
}

}  // namespace

void AppendFoundPrinters(CFDictionaryRef information, CFMutableArrayRef records) {
  const DiscoverySettings settings = DiscoverySettings::Read(information);
  if (!settings.IsSearchWanted()) {
    return;
  }
  if (settings.models.empty()) {
    Ravik::ReportLine("ZIOP", "nothing searched: SupportedPrinters names no printers");
    return;
  }
  for (const ListedPrinter& printer : ListWhatIsNew(settings, ReadRecords(records))) {
    CFArrayAppendValue(records, MakePrinterRecord(printer).get());
  }
}

}  // namespace ZIOP

void ZIOPDiscover(CFDictionaryRef information, CFMutableArrayRef records) noexcept {
  try {
    Ravik::ProcessTrace::Start("ZIOP");
    ZIOP::AppendFoundPrinters(information, records);
  } catch (const std::exception& error) {
    Ravik::ReportLine("ZIOP", "search broken off: " + Ravik::Printable(error.what()));
  }
}
