// Named parameters of a request or of a reply.
#ifndef GANTRYCORE_PARAMETERMAPVO_H_
#define GANTRYCORE_PARAMETERMAPVO_H_

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "Library/RavikCommon/RavikValue.h"

namespace Ravik {

// A map from a parameter's key to its values, iterated in byte order of the keys. The values of a
// key keep the order of insertion; a key may be present without values.
class ParameterMapVO {
 public:
  using Map = std::map<std::string, std::vector<value>>;

  // Adds the key without values; changes nothing if it is present.
  void insert(const std::string& key);

  // Appends a value to those of the key, which is added if it is absent.
  void insert(const std::string& key, const value& added);
  void insert(const std::string& key, const std::string& text);
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

  Map::const_iterator begin() const { return map_.begin(); }
  Map::const_iterator end() const { return map_.end(); }
  Map::size_type size() const { return map_.size(); }

  // The smallest number of values that a key holds; 0 for an empty map.
  std::vector<value>::size_type sizeMinVector() const;

  // Whether the first values of all keys that both maps hold are equal; keys of other that this
  // map lacks or holds without values do not count. Throws std::out_of_range when it meets a key
  // of other without values.
  bool isContain(const ParameterMapVO& other) const;

  // Writes the map as JSON without blanks: one object of the first values, or, when every key
  // holds two values or more, an array of objects, one for each position that all keys fill. Keys
  // are not escaped; a key without values is written as null.
  void printJson(std::ostream& out) const;

 private:
  void printObject(std::ostream& out, std::vector<value>::size_type index) const;

  Map map_;
};

std::ostream& operator<<(std::ostream& out, const ParameterMapVO& parameters);

}  // namespace Ravik

#endif  // GANTRYCORE_PARAMETERMAPVO_H_
