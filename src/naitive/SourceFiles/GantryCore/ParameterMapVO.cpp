#include "GantryCore/ParameterMapVO.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

namespace {

bool IsBefore(const ParameterMapVO::Map::value_type& entry, const std::string& key) {
  return entry.first < key;
}

}  // namespace

ParameterValues& ParameterMapVO::Values(const std::string& key) {
  if (map_.empty() || IsBefore(map_.back(), key)) {
    return map_.emplace_back(key, ParameterValues()).second;
  }
  const auto place = std::lower_bound(map_.begin(), map_.end(), key, IsBefore);
  if (place->first == key) return place->second;
  return map_.emplace(place, key, ParameterValues())->second;
}

const ParameterValues* ParameterMapVO::FindValues(const std::string& key) const {
  // Few keys are compared sooner by their lengths than in their order.
  constexpr std::size_t kFew = 24;
  const auto place = map_.size() > kFew
                         ? std::lower_bound(map_.begin(), map_.end(), key, IsBefore)
                         : std::find_if(map_.begin(), map_.end(),
                                        [&key](const auto& entry) { return entry.first == key; });
  return place != map_.end() && place->first == key ? &place->second : nullptr;
}

void ParameterMapVO::insert(const std::string& key) {
  Values(key);
}

void ParameterMapVO::insert(const std::string& key, value added) {
  Values(key).emplace_back(std::move(added));
}

void ParameterMapVO::insert(const std::string& key, std::string_view text) {
  Values(key).emplace_back(text);
}

void ParameterMapVO::insert(const std::string& key, int integer) {
  Values(key).emplace_back(integer);
}

bool ParameterMapVO::isKey(const std::string& key) const {
  return FindValues(key) != nullptr;
}

const value* ParameterMapVO::At(const std::string& key, int index) const {
  const ParameterValues* const values = FindValues(key);
  if (values == nullptr || index < 0) return nullptr;
  const auto position = static_cast<std::size_t>(index);
  return position < values->size() ? &(*values)[position] : nullptr;
}

const value* ParameterMapVO::first(const std::string& key) const {
  return At(key, 0);
}

bool ParameterMapVO::find(const std::string& key, value& found) const {
  return find(key, 0, found);
}

bool ParameterMapVO::find(const std::string& key, int index, value& found) const {
  const value* const val = At(key, index);
  if (val == nullptr) return false;
  found = *val;
  return true;
}

bool ParameterMapVO::find(const std::string& key, std::string& text) const {
  return find(key, 0, text);
}

bool ParameterMapVO::find(const std::string& key, int index, std::string& text) const {
  const value* const val = At(key, index);
  if (val == nullptr) return false;
  text = val->to_str();
  return true;
}

bool ParameterMapVO::find(const std::string& key, int& integer) const {
  return find(key, 0, integer);
}

bool ParameterMapVO::find(const std::string& key, int index, int& integer) const {
  const value* const found = At(key, index);
  if (found == nullptr) return false;
  const value& val = *found;
  RAVIK_ASSERT(val.is<int>());
  integer = val.get<int>();
  return true;
}

std::size_t ParameterMapVO::sizeMinVector() const {
  std::size_t smallest = map_.empty() ? 0 : std::numeric_limits<std::size_t>::max();
  for (const auto& [key, values] : map_) smallest = std::min(smallest, values.size());
  return smallest;
}

bool ParameterMapVO::isContain(const ParameterMapVO& other) const {
  for (const auto& [key, values] : other) {
    const value& expected = values.at(0);
    const value* const own = first(key);
    if (own != nullptr && !(*own == expected)) return false;
  }
  return true;
}

void ParameterMapVO::AppendObject(std::string& json, std::size_t index) const {
  json += '{';
  for (const auto& [key, values] : map_) {
    json += '"';
    json += key;
    json += '"';
    json += ':';
    if (index < values.size()) {
      values[index].serialize_to(json);
    } else {
      value().serialize_to(json);
    }
    json += ',';
  }
  if (!map_.empty()) json.pop_back();  // the last comma
  json += '}';
}

void ParameterMapVO::appendJson(std::string& json) const {
  const std::size_t positions = sizeMinVector();
  if (positions < 2) {
    AppendObject(json, 0);
    return;
  }
  json += '[';
  for (std::size_t index = 0; index < positions; ++index) {
    if (index != 0) json += ',';
    AppendObject(json, index);
  }
  json += ']';
}

void ParameterMapVO::printJson(std::ostream& out) const {
  std::string json;
  appendJson(json);
  out << json;
}

std::ostream& operator<<(std::ostream& out, const ParameterMapVO& parameters) {
  parameters.printJson(out);
  return out;
}

}  // namespace Ravik
