// Builds a map in one expression.
#ifndef RAVIKCOMMON_RAVIKTEMPLATE_H_
#define RAVIKCOMMON_RAVIKTEMPLATE_H_

#include <map>

namespace Ravik {

// TCreateMap<K, V>(k1, v1)(k2, v2) is the map of these pairs. Of equal keys the last one counts.
template <typename K, typename V>
class TCreateMap {
 public:
  TCreateMap(const K& key, const V& mapped) { map_[key] = mapped; }

  TCreateMap& operator()(const K& key, const V& mapped) {
    map_[key] = mapped;
    return *this;
  }

  // Implicit, so that the expression initialises a map.
  operator std::map<K, V>() const { return map_; }  // NOLINT(google-explicit-constructor)

 private:
  std::map<K, V> map_;
};

}  // namespace Ravik

#endif  // RAVIKCOMMON_RAVIKTEMPLATE_H_
