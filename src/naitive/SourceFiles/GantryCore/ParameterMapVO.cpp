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

void ParameterValues::ClearMore() {
  more_.clear();
}

ParameterValues& ParameterMapVO::Values(const std::string& key) {
  const auto removed = map_.begin() + static_cast<std::ptrdiff_t>(size_);
  if (size_ == ordered_ || removed->first != key) return FindOrAdd(key);
  ++size_;
  removed->second.clear();
  return removed->second;
}

ParameterValues& ParameterMapVO::FindOrAdd(const std::string& key) {
  if (size_ == 0 || IsBefore(map_[size_ - 1], key)) return Add(key, size_);
  const auto place = std::lower_bound(begin(), end(), key, IsBefore);
  const auto index = static_cast<std::size_t>(place - begin());
  return place->first == key ? map_[index].second : Add(key, index);
}

ParameterValues& ParameterMapVO::Add(const std::string& key, std::size_t index) {
  ordered_ = size_;
  if (size_ == map_.size()) map_.emplace_back();
  map_[size_].first = key;
  map_[size_].second.clear();
  ++size_;
  const auto place = map_.begin() + static_cast<std::ptrdiff_t>(index);
  const auto entries_end = map_.begin() + static_cast<std::ptrdiff_t>(size_);
  std::rotate(place, entries_end - 1, entries_end);
  ordered_ = size_;
  return place->second;
}

const ParameterValues* ParameterMapVO::FindValues(const std::string& key) const {
  // Few keys are compared sooner by their lengths than in their order.
  constexpr std::size_t kFew = 24;
  const auto is_key = [&key](const Map::value_type& entry) { return entry.first == key; };
  if (size_ <= kFew) {
    const auto place = std::find_if(begin(), end(), is_key);
    return place != end() ? &place->second : nullptr;
  }
  const auto place = std::lower_bound(begin(), end(), key, IsBefore);
  return place != end() && is_key(*place) ? &place->second : nullptr;
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
  std::size_t smallest = size_ == 0 ? 0 : std::numeric_limits<std::size_t>::max();
  for (const auto& [key, values] : *this) smallest = std::min(smallest, values.size());
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

std::size_t ParameterMapVO::JsonBound(std::size_t objects) const {
  std::size_t keys = std::string_view("{},").size();
  std::size_t values_bound = std::string_view("[]").size();
  for (const auto& [key, values] : *this) {
    keys += key.size() + std::string_view("\"\":,").size();
    values_bound += values.empty() ? value().serialized_bound() : values[0].serialized_bound();
    for (std::size_t i = 1; i < objects; ++i) values_bound += values[i].serialized_bound();
  }
  return objects * keys + values_bound;
}

char* ParameterMapVO::WriteObject(char* json, std::size_t index) const {
  *json++ = '{';
  for (const auto& [key, values] : *this) {
    *json++ = '"';
    json = std::copy(key.begin(), key.end(), json);
    *json++ = '"';
    *json++ = ':';
    json = index < values.size() ? values[index].serialize_to(json) : value().serialize_to(json);
    *json++ = ',';
  }
  if (size_ != 0) --json;  // the last comma
  *json++ = '}';
  return json;
}

void ParameterMapVO::appendJson(std::string& json) const {
  const auto has_one = [](const Map::value_type& entry) { return entry.second.size() < 2; };
  const std::size_t positions = std::any_of(begin(), end(), has_one) ? 1 : sizeMinVector();
  const std::size_t objects = std::max<std::size_t>(positions, 1);
  const std::size_t start = json.size();
  json.resize(start + JsonBound(objects));
  char* end = json.data() + start;
  if (positions >= 2) *end++ = '[';
  for (std::size_t index = 0; index < objects; ++index) {
    if (index != 0) *end++ = ',';
    end = WriteObject(end, index);
  }
  if (positions >= 2) *end++ = ']';
  json.resize(static_cast<std::size_t>(end - json.data()));
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
