// Device names that discovery may list.
#ifndef PORT_DRIVER_SUPPORTEDMODELS_H_
#define PORT_DRIVER_SUPPORTEDMODELS_H_

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "port_driver/DeviceId.h"
#include "port_driver/FoundPrinter.h"

namespace ZIOP {

class SupportedModels {
 public:
  explicit SupportedModels(const std::vector<std::string>& names)
      : names_(names.begin(), names.end()) {}

  // The supported name of a printer, id being its device identifier; empty if it has none. Texts
  // are compared whole, blanks tidied, letter case included but for the maker's name. The model
  // comes first, then that of the identifier, then the descriptions; each of them as it stands,
  // without the maker's name in front, however often it stands there, and with it once. Where no
  // maker is known, the first word is taken for it.
  std::string NameOf(const FoundPrinter& printer, const DeviceId& id) const;

 private:
  std::string Match(std::string_view maker, std::string_view text) const;

  std::set<std::string, std::less<>> names_;
};

// Whether two device names stand for one model: they are equal but for the maker's name in front
// and " Comm Driver" at the end.
bool IsSameModel(std::string_view left, std::string_view right);

}  // namespace ZIOP

#endif  // PORT_DRIVER_SUPPORTEDMODELS_H_
