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

std::string SerialTrait(const std::string& serial) {
  return "serial " + serial;
}

std::string UUIDTrait(const std::string& uuid) {
  return "uuid " + uuid;
}

}  // namespace

// A printer that may be listed.
struct PrinterCatalogue::Candidate {
  std::string name;  // its own, or its model if it has none
  bool isNamed;
  std::string model;
  std::string uri;
  PrinterIdentity identity;

  // By what people see; then by everything else that makes a difference.
  bool operator<(const Candidate& other) const {
    const auto mine = Order();
    const auto others = other.Order();
    return mine == others
               ? std::tie(identity.places, isNamed) < std::tie(other.identity.places, other.isNamed)
               : std::lexicographical_compare(mine.begin(), mine.end(), others.begin(),
                                              others.end(), ComesBefore);
  }

 private:
  std::array<std::string_view, 7> Order() const {
    return {name,          model, identity.places.front(), identity.tag, identity.serial,
            identity.uuid, uri};
  }
};

PrinterCatalogue::Candidate PrinterCatalogue::Describe(const FoundPrinter& printer,
                                                       const DeviceId& id,
                                                       const std::string& model) const {
  const std::string name = ListedText(printer.name, kMaximumNameLength);
  return {FirstKnown(name, model), !name.empty(), model, printer.uri,
          PrinterIdentity::Of(DeviceURI::Parse(printer.uri), hosts_, printer.address,
                              FirstKnown(printer.serial, id.serial), printer.uuid)};
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
      candidates.push_back(Describe(printer, id, model));
    } catch (const DriverError& error) {
      ReportLeftOut(source, Quoted(model) + ": " + error.what());
    }
  }
  ReportUnsupported(source, unsupported);
  return candidates;
}

bool PrinterCatalogue::IsKnown(const Candidate& candidate) const {
  const PrinterIdentity& identity = candidate.identity;
  const auto is_of_same_model = [&](const std::string& trait) {
    const auto known = traits_.find(trait);
    return known != traits_.end() &&
           std::any_of(known->second.begin(), known->second.end(), [&](const std::string& model) {
             return IsSameModel(model, candidate.model);
           });
  };
  return std::any_of(identity.places.begin(), identity.places.end(),
                     [&](const std::string& place) { return traits_.count(place) != 0; }) ||
         is_of_same_model(SerialTrait(identity.serial)) ||
         is_of_same_model(UUIDTrait(identity.uuid));
}

void PrinterCatalogue::Remember(const PrinterIdentity& identity, const std::string& model) {
  std::vector<std::string> traits = identity.places;
  if (!identity.serial.empty()) {
    traits.push_back(SerialTrait(identity.serial));
  }
  if (!identity.uuid.empty()) {
    traits.push_back(UUIDTrait(identity.uuid));
  }
  for (const std::string& trait : traits) {
    std::vector<std::string>& models = traits_[trait];
    if (std::find(models.begin(), models.end(), model) == models.end()) {
      models.push_back(model);
    }
  }
}

std::string PrinterCatalogue::FreeName(PrinterSource source, const Candidate& candidate) const {
  if (candidate.isNamed && RowOf(source).namesAreUnique && names_.count(candidate.name) == 0) {
    return candidate.name;
  }
  const std::string tag = " (" + ListedText(candidate.identity.tag, kMaximumTagLength) + ")";
  const std::string name = ListedText(candidate.name, kMaximumNameLength - tag.size()) + tag;
  return names_.count(name) == 0 ? name : std::string();
}

void PrinterCatalogue::AddConfigured(const ListedPrinter& printer) {
  names_.insert(printer.name);
  Remember(PrinterIdentity::Of(DeviceURI::Parse(printer.uri), hosts_), printer.model);
}

void PrinterCatalogue::AddFound(PrinterSource source, const std::vector<FoundPrinter>& found) {
  std::vector<Candidate> candidates = CandidatesOf(source, found);
  std::sort(candidates.begin(), candidates.end());
  for (const Candidate& candidate : candidates) {
    const bool is_known = IsKnown(candidate);
    Remember(candidate.identity, candidate.model);
    if (is_known) {
      continue;
    }
    const std::string name = FreeName(source, candidate);
    if (name.empty()) {
      ReportLeftOut(source, Quoted(candidate.name) + ": its name is taken");
      continue;
    }
    names_.insert(name);
    printers_.push_back({name, candidate.model, candidate.uri});
  }
}

}  // namespace ZIOP
