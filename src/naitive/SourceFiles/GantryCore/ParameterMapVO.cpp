#include "GantryCore/ParameterMapVO.h"

#include <algorithm>
#include <stdexcept>

#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

void ParameterMapVO::insert(const std::string& key) {
  if (isKey(key)) return;
  const auto it = map_.insert({key, {}});
  RAVIK_ASSERT(it.second);
}

void ParameterMapVO::insert(const std::string& key, const value& added) {
  const auto present = map_.find(key);
  if (present != map_.end()) {
    present->second.push_back(added);
    return;
  }
  const auto tmp = map_.insert({key, {added}});
  RAVIK_ASSERT(tmp.second);
}

void ParameterMapVO::insert(const std::string& key, const std::string& text) {
  insert(key, value(text));
}

void ParameterMapVO::insert(const std::string& key, int integer) {
  insert(key, value(integer));
}

bool ParameterMapVO::isKey(const std::string& key) const {
  return map_.count(key) != 0;
}

bool ParameterMapVO::find(const std::string& key, value& found) const {
  return find(key, 0, found);
}

bool ParameterMapVO::find(const std::string& key, int index, value& found) const {
  const auto present = map_.find(key);
  if (present == map_.end()) return false;
  const std::vector<value>& values = present->second;
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return false;
  found = values[static_cast<std::size_t>(index)];
  return true;
}

bool ParameterMapVO::find(const std::string& key, std::string& text) const {
  return find(key, 0, text);
}

bool ParameterMapVO::find(const std::string& key, int index, std::string& text) const {
  value val;
  if (!find(key, index, val)) return false;
  text = val.to_str();
  return true;
}

bool ParameterMapVO::find(const std::string& key, int& integer) const {
  return find(key, 0, integer);
}

bool ParameterMapVO::find(const std::string& key, int index, int& integer) const {
  value val;
  if (!find(key, index, val)) return false;
  RAVIK_ASSERT(val.is<int>());
  integer = val.get<int>();
  return true;
}

std::vector<value>::size_type ParameterMapVO::sizeMinVector() const {
  if (map_.empty()) return 0;
  const auto smallest = std::min_element(
      map_.begin(), map_.end(),
      [](const auto& a, const auto& b) { return a.second.size() < b.second.size(); });
  return smallest->second.size();
}

bool ParameterMapVO::isContain(const ParameterMapVO& other) const {
  for (const auto& [key, values] : other) {
    const value& expected = values.at(0);
    value own;
    if (find(key, own) && !(own == expected)) return false;
  }
  return true;
}

void ParameterMapVO::printObject(std::ostream& out, std::vector<value>::size_type index) const {
  out << '{';
  const char* separator = "";
  for (const auto& [key, values] : map_) {
    out << separator << '"' << key << "\":";
    out << (index < values.size() ? values[index] : value()).serialize();
    separator = ",";
  }
  out << '}';
}

void ParameterMapVO::printJson(std::ostream& out) const {
  const auto positions = sizeMinVector();
  if (positions < 2) {
    printObject(out, 0);
    return;
  }
  out << '[';
  for (std::vector<value>::size_type index = 0; index < positions; ++index) {
    if (index != 0) out << ',';
    printObject(out, index);
  }
  out << ']';
}

std::ostream& operator<<(std::ostream& out, const ParameterMapVO& parameters) {
  parameters.printJson(out);
  return out;
}

}  // namespace Ravik
