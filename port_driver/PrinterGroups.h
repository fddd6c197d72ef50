// Which findings are of one printer.
#ifndef PORT_DRIVER_PRINTERGROUPS_H_
#define PORT_DRIVER_PRINTERGROUPS_H_

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "port_driver/PrinterIdentity.h"

namespace ZIOP {

// Findings are of one printer when their identities and models say so (PrinterIdentity), and when
// each is of one printer with a third, in whatever order they come: what the network tells under a
// serial number is the configured node that shows the same one.
class PrinterGroups {
 public:
  // Adds a finding and gives its number; they count from 0.
  std::size_t Add(const PrinterIdentity& identity, const std::string& model);

  // Whether of one printer's findings this is the one that was added first.
  bool IsFirst(std::size_t number) const { return earlier_[number] == number; }

 private:
  std::size_t FirstOf(std::size_t number);
  void Join(std::size_t left, std::size_t right);
  void JoinSameModel(const std::string& trait, const std::string& model, std::size_t number);

  std::vector<std::size_t> earlier_;  // one of the same printer, the first one's is itself
  std::unordered_map<std::string, std::size_t> places_;
  // Findings that a serial number or a UUID stands for, one of each model.
  std::unordered_map<std::string, std::vector<std::pair<std::string, std::size_t>>> traits_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_PRINTERGROUPS_H_
