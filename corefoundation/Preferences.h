// One application's defaults: a property-list file and the changes that are not in it yet.
#ifndef COREFOUNDATION_PREFERENCES_H_
#define COREFOUNDATION_PREFERENCES_H_

#include <sys/stat.h>

#include <map>
#include <string>

#include "corefoundation/Foundation.h"

namespace CoreFoundation {

class Preferences {
 public:
  // An empty path stands for defaults that have no place: they cannot be synchronised.
  explicit Preferences(std::string path);

  // value may be null, which removes the key.
  void Set(CFStringRef key, CFRef<CFTypeRef> value);

  // Null when there is none.
  CFRef<CFTypeRef> Get(CFStringRef key);

  // Writes the changes into the file. False when that fails: they are kept.
  bool Synchronise();

 private:
  struct Change {
    CFRef<CFStringRef> key;
    CFRef<CFTypeRef> value;
  };

  bool Write();
  void Load();
  CFRef<CFDictionaryRef> Merge(CFDictionaryRef list) const;

  const std::string path_;
  std::map<std::u16string, Change> changes_;
  CFRef<CFDictionaryRef> list_;  // what the file held when it was read last; null when not read
  struct stat status_ = {};      // of that file; zeros when there was none
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_PREFERENCES_H_
