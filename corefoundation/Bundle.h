// The object behind a CFPlugInRef: a bundle folder, what its Info.plist says, and its code.
#ifndef COREFOUNDATION_BUNDLE_H_
#define COREFOUNDATION_BUNDLE_H_

#include <map>
#include <string>

#include "corefoundation/Foundation.h"
#include "corefoundation/Object.h"
#include "corefoundation/UUID.h"

namespace CoreFoundation {

class Bundle final : public Object {
 public:
  using Ref = CFPlugInRef;

  // Reads Contents/Info.plist of the folder; without one, or with a broken one, the bundle has no
  // factories.
  explicit Bundle(std::string path);

  bool Equals(const Object& other) const override { return this == &other; }
  std::size_t Hash() const override { return 0; }

  struct Function {
    std::string name;
    void* code = nullptr;  // once it was found
  };

  // The factories' functions.
  const std::map<UUIDBytes, Function>& functions() const { return functions_; }

  // The factories for type, in the order of Info.plist; null when there are none.
  CFArrayRef FactoriesFor(const UUIDBytes& type) const;

  // Loads the executable when it is not loaded yet, and finds the function of one of the factories
  // there. Null, with a line on standard error when the executable is missing or cannot be loaded.
  void* FindFunction(const UUIDBytes& factory);

 private:
  void ReadInformation(CFDictionaryRef information);
  void ReadFactories(CFDictionaryRef factories);
  void ReadTypes(CFDictionaryRef types);
  std::string ExecutablePath() const;
  bool Load();
  void Report(const std::string& what) const;

  const std::string path_;
  std::string executable_name_;
  std::map<UUIDBytes, Function> functions_;
  std::map<UUIDBytes, CFRef<CFMutableArrayRef>> types_;
  void* code_ = nullptr;  // of dlopen; never closed
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_BUNDLE_H_
