// Disjoint sets of findings, joined by what they have in common.
#include "port_driver/PrinterGroups.h"

#include <algorithm>

#include "port_driver/SupportedModels.h"

namespace ZIOP {

std::size_t PrinterGroups::Add(const PrinterIdentity& identity, const std::string& model) {
  const std::size_t number = earlier_.size();
  earlier_.push_back(number);
  for (const std::string& place : identity.places) {
    Join(places_.emplace(place, number).first->second, number);
  }
  if (!identity.serial.empty()) {
    JoinSameModel("serial " + identity.serial, model, number);
  }
  if (!identity.uuid.empty()) {
    JoinSameModel("uuid " + identity.uuid, model, number);
  }
  return number;
}

std::size_t PrinterGroups::FirstOf(std::size_t number) {
  while (earlier_[number] != number) {
    number = earlier_[number] = earlier_[earlier_[number]];
  }
  return number;
}

void PrinterGroups::Join(std::size_t left, std::size_t right) {
  const auto [first, second] = std::minmax({FirstOf(left), FirstOf(right)});
  earlier_[second] = first;
}

void PrinterGroups::JoinSameModel(const std::string& trait, const std::string& model,
                                  std::size_t number) {
  auto& known = traits_[trait];
  bool is_new = true;
  for (const auto& [other_model, other] : known) {
    is_new = is_new && other_model != model;
    if (IsSameModel(other_model, model)) {
      Join(other, number);
    }
  }
  if (is_new) {
    known.emplace_back(model, number);
  }
}

}  // namespace ZIOP
