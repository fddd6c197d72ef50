// One application's defaults: a property-list file and the changes that are not in it yet.
#ifndef COREFOUNDATION_PREFERENCES_H_
#define COREFOUNDATION_PREFERENCES_H_

#include <map>
#include <string>

#include "corefoundation/FileStamp.h"
#include "corefoundation/Foundation.h"

namespace CoreFoundation {

class Preferences {
 public:
  // An empty path stands for defaults that have no place: they cannot be synchronised.
  explicit Preferences(std::string path);

  // value may be null, which removes the key.
  void Set(CFStringRef key, CFRef<CFTypeRef> value);

  // What was set last or else what the file holds now; null when there is none. A file that cannot
  // be read, or holds no dictionary, has none, with a line on standard error. The value is shared
  // with later calls.
  CFRef<CFTypeRef> Get(CFStringRef key);

  // Writes the changes into the file. False when that fails: they are kept, the file is as it was,
  // and a line on standard error says why.
  bool Synchronise();

 private:
  struct Change {
    CFRef<CFStringRef> key;
    CFRef<CFTypeRef> value;
  };

  CFDictionaryRef Current();
  void Write() const;
  CFRef<CFDictionaryRef> Read() const;
  CFRef<CFDictionaryRef> Merge(CFDictionaryRef list) const;
  void Report(const std::string& what) const;

  const std::string path_;
  std::map<std::u16string, Change> changes_;
  FileStamp stamp_;  // of the version of the file that list_ is
  CFRef<CFDictionaryRef> list_;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_PREFERENCES_H_
