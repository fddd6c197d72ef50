// The list of printers, made of what is configured and what the searches found.
#ifndef PORT_DRIVER_PRINTERCATALOGUE_H_
#define PORT_DRIVER_PRINTERCATALOGUE_H_

#include <cstddef>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "port_driver/FoundPrinter.h"
#include "port_driver/PrinterGroups.h"
#include "port_driver/PrinterIdentity.h"
#include "port_driver/PrinterRecord.h"
#include "port_driver/SupportedModels.h"

namespace ZIOP {

// The searches, in the order in which the catalogue is to be told of what they found.
enum class PrinterSource { kQueues, kNetwork, kLocal };

// Longest name of a printer that was found, in bytes.
constexpr std::size_t kMaximumNameLength = 127;

// Lists each printer once, under the source that was told of first; PrinterGroups says when two are
// one. The list depends on what was found, not on the order in which it was.
//
// Hosts open a printer days later by its name, so a name stays with its printer whichever others
// come and go: a queue has its queue's name, every other printer its own name or model and, in
// parentheses, its tag, also when it is the only one of that model. A queue whose name is taken has
// a tag too. Names are one line of valid UTF-8.
class PrinterCatalogue {
 public:
  PrinterCatalogue(SupportedModels models, HostAddresses hosts)
      : models_(std::move(models)), hosts_(std::move(hosts)) {}

  // Takes note of a printer that is listed already. Its name and URI are its user's; what is found
  // of it is left out, and nothing that is found has its name. To be called before AddFound.
  void AddConfigured(const ListedPrinter& printer);

  // Takes the printers of one source. Left out, with one line on standard error each time, are
  // those whose URI cannot be used and, all in one line, the models that are not supported.
  void AddFound(PrinterSource source, const std::vector<FoundPrinter>& found);

  // What AddFound was told of and is not configured, in the order of the sources, and by names and
  // addresses within one. Left out, with one line on standard error, is a printer whose name
  // another one has.
  std::vector<ListedPrinter> List() const;

 private:
  struct Candidate {
    PrinterSource source;
    std::string name;  // its own, or its model if it has none
    bool isNamed;
    std::string model;
    std::string uri;
    PrinterIdentity identity;
    std::size_t number;  // in groups_
  };
  using Names = std::unordered_set<std::string>;

  static bool ComesFirst(const Candidate& left, const Candidate& right);
  static std::string FreeName(const Candidate& candidate, const Names& names);

  Candidate Describe(PrinterSource source, const FoundPrinter& printer, const DeviceId& id,
                     const std::string& model) const;
  std::vector<Candidate> CandidatesOf(PrinterSource source,
                                      const std::vector<FoundPrinter>& found) const;

  SupportedModels models_;
  HostAddresses hosts_;
  Names configured_names_;
  PrinterGroups groups_;
  std::vector<Candidate> candidates_;  // in the order of the list
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_PRINTERCATALOGUE_H_
