// Named parameters of a request or of a reply.
#ifndef GANTRYCORE_PARAMETERMAPVO_H_
#define GANTRYCORE_PARAMETERMAPVO_H_

#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Library/RavikCommon/RavikValue.h"

namespace Ravik {

// The values of one key. The first one, which most keys hold alone, takes no memory of its own.
class ParameterValues {
 public:
  std::size_t size() const { return has_first_ ? 1 + more_.size() : 0; }
  bool empty() const { return !has_first_; }

  // index is below size().
  const value& operator[](std::size_t index) const {
    return index == 0 ? first_ : more_[index - 1];
  }

  // Throws std::out_of_range for an index at or beyond size().
  const value& at(std::size_t index) const {
    if (index >= size()) throw std::out_of_range("ParameterValues::at");
    return (*this)[index];
  }

  // Removes all values; the first one's memory stays for the next.
  void clear() {
    has_first_ = false;
    if (!more_.empty()) ClearMore();
  }

  // Appends the value that is made of the argument.
  template <typename Content>
  void emplace_back(Content&& content) {
    if (has_first_) {
      more_.emplace_back(std::forward<Content>(content));
    } else {
      first_ = std::forward<Content>(content);
      has_first_ = true;
    }
  }

 private:
  // Apart, because hardly any key has them.
  [[gnu::noinline]] void ClearMore();

  bool has_first_ = false;
  value first_;              // a former one where there is none
  std::vector<value> more_;  // empty without a first one
};

// A map from a parameter's key to its values, iterated in byte order of the keys. The values of a
// key keep the order of insertion; a key may be present without values.
//
// The entries lie in one block in the order of their keys. A new key is added in constant time when
// it comes behind all others, as it does wherever a table or a JSON object is walked; otherwise
// those behind it are moved.
//
// Entries that clear() removes stay behind the others, so that those to come use their memory. Keys
// that come as they did before, as those of a reply do, find their places without a search.
class ParameterMapVO {
 public:
  using Map = std::vector<std::pair<std::string, ParameterValues>>;

  ParameterMapVO() = default;
  // Copied also where it could be moved: what is moved from would have lost its entries.
  ParameterMapVO(const ParameterMapVO&) = default;
  ParameterMapVO& operator=(const ParameterMapVO&) = default;

  // Removes all keys; their memory stays for those to come.
  void clear() { size_ = 0; }

  // Makes room for that many keys at once.
  void reserve(Map::size_type keys) { map_.reserve(keys); }

  // Adds the key without values; changes nothing if it is present.
  void insert(const std::string& key);

  // Appends a value to those of the key, which is added if it is absent.
  void insert(const std::string& key, value added);
  void insert(const std::string& key, std::string_view text);
  void insert(const std::string& key, int integer);

  // Whether the key is present, with or without values.
  bool isKey(const std::string& key) const;

  // Copies the key's value at index, 0 where none is given, into found. False, with found left as
  // it was, if the key is absent or holds no value there. The text form takes to_str() of any
  // value; the integer form ends the process if the value is not an int.
  bool find(const std::string& key, value& found) const;
  bool find(const std::string& key, int index, value& found) const;
  bool find(const std::string& key, std::string& text) const;
  bool find(const std::string& key, int index, std::string& text) const;
  bool find(const std::string& key, int& integer) const;
  bool find(const std::string& key, int index, int& integer) const;

  // The key's first value, valid until the map changes; null if the key is absent or has no values.
  const value* first(const std::string& key) const;

  Map::const_iterator begin() const { return map_.begin(); }
  Map::const_iterator end() const { return begin() + static_cast<std::ptrdiff_t>(size_); }
  Map::size_type size() const { return size_; }

  // The smallest number of values that a key holds; 0 for an empty map.
  std::size_t sizeMinVector() const;

  // Whether the first values of all keys that both maps hold are equal; keys of other that this
  // map lacks or holds without values do not count. Throws std::out_of_range when it meets a key
  // of other without values.
  bool isContain(const ParameterMapVO& other) const;

  // Writes the map as JSON without blanks: one object of the first values, or, when every key
  // holds two values or more, an array of objects, one for each position that all keys fill. Keys
  // are not escaped; a key without values is written as null.
  void printJson(std::ostream& out) const;

  // Appends what printJson() writes to json.
  void appendJson(std::string& json) const;

 private:
  // The values of the key, which is added without any if it is absent.
  ParameterValues& Values(const std::string& key);

  // The same for a key that is not that of the first one of the removed entries.
  ParameterValues& FindOrAdd(const std::string& key);

  // The values, none, of a new key, whose place is in front of the entry at index.
  ParameterValues& Add(const std::string& key, std::size_t index);

  // The values of the key; null if it is absent.
  const ParameterValues* FindValues(const std::string& key) const;

  // The key's value at index; null if the key is absent or holds no value there.
  const value* At(const std::string& key, int index) const;

  // As long as the map can be as JSON at most, with that many objects in it.
  std::size_t JsonBound(std::size_t objects) const;

  // Writes the object of the values at index to where there is room for it; returns its end there.
  char* WriteObject(char* json, std::size_t index) const;

  Map map_;  // the entries, and behind them those that have been removed
  std::size_t size_ = 0;
  std::size_t ordered_ = 0;  // so many of both are in the order of their keys; the entries at least
};

std::ostream& operator<<(std::ostream& out, const ParameterMapVO& parameters);

}  // namespace Ravik

#endif  // GANTRYCORE_PARAMETERMAPVO_H_
