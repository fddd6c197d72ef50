// One printer once, under a name that stays.
#include "port_driver/PrinterCatalogue.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "port_driver/DeviceId.h"
#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"
#include "port_driver/PlainText.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

// What is left of a name's length is the printer's own name or model.
constexpr std::size_t kMaximumTagLength = 96;

struct SourceRow {
  const char* label;    // for messages
  bool namesAreUnique;  // each stands for one printer
};

constexpr SourceRow kSources[] = {
    {"printing system", true},
    {"network", false},
    {"local devices", false},
};

const SourceRow& RowOf(PrinterSource source) {
  return kSources[static_cast<std::size_t>(source)];
}

const std::string& FirstKnown(const std::string& first, const std::string& second) {
  return first.empty() ? second : first;
}

std::string Quoted(std::string_view text) {
  return "\"" + Ravik::Printable(text) + "\"";
}

void ReportLeftOut(PrinterSource source, const std::string& reason) {
  Ravik::ReportLine("ZIOP", std::string(RowOf(source).label) + ": left out: " + reason);
}

void ReportUnsupported(PrinterSource source, const std::set<std::string>& models) {
  std::string line;
  for (const std::string& model : models) {
    line += " " + Quoted(model);
  }
  if (!line.empty()) {
    ReportLeftOut(source, "SupportedPrinters lacks" + line);
  }
}

}  // namespace

// By what people see; then by everything else that makes a difference.
bool PrinterCatalogue::ComesFirst(const Candidate& left, const Candidate& right) {
  const auto order_of = [](const Candidate& each) {
    const PrinterIdentity& identity = each.identity;
    return std::array<std::string_view, 7>{each.name,    each.model,      identity.places.front(),
                                           identity.tag, identity.serial, identity.uuid,
                                           each.uri};
  };
  const auto mine = order_of(left);
  const auto others = order_of(right);
  return mine == others ? std::tie(left.identity.places, left.isNamed) <
                              std::tie(right.identity.places, right.isNamed)
                        : std::lexicographical_compare(mine.begin(), mine.end(), others.begin(),
                                                       others.end(), ComesBefore);
}

PrinterCatalogue::Candidate PrinterCatalogue::Describe(PrinterSource source,
                                                       const FoundPrinter& printer,
                                                       const DeviceId& id,
                                                       const std::string& model) const {
  const std::string name = ListedText(printer.name, kMaximumNameLength);
  return {source,
          FirstKnown(name, model),
          !name.empty(),
          model,
          printer.uri,
          PrinterIdentity::Of(DeviceURI::Parse(printer.uri), hosts_, printer.address,
                              FirstKnown(printer.serial, id.serial), printer.uuid),
          0};
}

std::vector<PrinterCatalogue::Candidate> PrinterCatalogue::CandidatesOf(
    PrinterSource source, const std::vector<FoundPrinter>& found) const {
  std::vector<Candidate> candidates;
  std::set<std::string> unsupported;
  for (const FoundPrinter& printer : found) {
    const DeviceId id = DeviceId::Parse(printer.deviceId);
    const std::string model = models_.NameOf(printer, id);
    if (model.empty()) {
      unsupported.insert(
          ListedText(FirstKnown(FirstKnown(printer.model, id.model), printer.description),
                     kMaximumNameLength));
      continue;
    }
    try {
      candidates.push_back(Describe(source, printer, id, model));
    } catch (const DriverError& error) {
      ReportLeftOut(source, Quoted(model) + ": " + error.what());
    }
  }
  ReportUnsupported(source, unsupported);
  return candidates;
}

// Empty when there is none.
std::string PrinterCatalogue::FreeName(const Candidate& candidate, const Names& names) {
  if (candidate.isNamed && RowOf(candidate.source).namesAreUnique &&
      names.count(candidate.name) == 0) {
    return candidate.name;
  }
  const std::string tag = " (" + ListedText(candidate.identity.tag, kMaximumTagLength) + ")";
  const std::string name = ListedText(candidate.name, kMaximumNameLength - tag.size()) + tag;
  return names.count(name) == 0 ? name : std::string();
}

void PrinterCatalogue::AddConfigured(const ListedPrinter& printer) {
  configured_names_.insert(printer.name);
  groups_.Add(PrinterIdentity::Of(DeviceURI::Parse(printer.uri), hosts_), printer.model);
}

void PrinterCatalogue::AddFound(PrinterSource source, const std::vector<FoundPrinter>& found) {
  std::vector<Candidate> candidates = CandidatesOf(source, found);
  std::sort(candidates.begin(), candidates.end(), ComesFirst);
  for (Candidate& candidate : candidates) {
    candidate.number = groups_.Add(candidate.identity, candidate.model);
    candidates_.push_back(std::move(candidate));
  }
}

std::vector<ListedPrinter> PrinterCatalogue::List() const {
  std::vector<ListedPrinter> printers;
  Names names = configured_names_;
  for (const Candidate& candidate : candidates_) {
    if (!groups_.IsFirst(candidate.number)) {
      continue;
    }
    const std::string name = FreeName(candidate, names);
    if (name.empty()) {
      ReportLeftOut(candidate.source, Quoted(candidate.name) + ": its name is taken");
      continue;
    }
    names.insert(name);
    printers.push_back({name, candidate.model, candidate.uri});
  }
  return printers;
}

}  // namespace ZIOP
