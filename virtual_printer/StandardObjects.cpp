// The standard objects by which printers are found.
#include "virtual_printer/StandardObjects.h"

#include <algorithm>
#include <array>

namespace VirtualPrinter {
namespace {

struct ObjectRow {
  StandardObject kind;
  std::string_view name;
  ObjectId object;
};

// RFC 1213, RFC 2790, RFC 3805, PWG 5107.1.
const std::array<ObjectRow, 5>& Objects() {
  static const std::array<ObjectRow, 5> objects = {{
      {StandardObject::kSysDescr, "sysDescr", {1, 3, 6, 1, 2, 1, 1, 1, 0}},
      {StandardObject::kHrDeviceType, "hrDeviceType", {1, 3, 6, 1, 2, 1, 25, 3, 2, 1, 2, 1}},
      {StandardObject::kHrDeviceDescr, "hrDeviceDescr", {1, 3, 6, 1, 2, 1, 25, 3, 2, 1, 3, 1}},
      {StandardObject::kPrtGeneralSerialNumber,
       "prtGeneralSerialNumber",
       {1, 3, 6, 1, 2, 1, 43, 5, 1, 1, 17, 1}},
      {StandardObject::kPpmPrinterIeee1284DeviceId,
       "ppmPrinterIEEE1284DeviceId",
       {1, 3, 6, 1, 4, 1, 2699, 1, 2, 1, 2, 1, 1, 3, 1}},
  }};
  return objects;
}

template <typename Predicate>
StandardObject Find(Predicate matches) {
  const auto found = std::find_if(Objects().begin(), Objects().end(), matches);
  return found == Objects().end() ? StandardObject::kNone : found->kind;
}

}  // namespace

StandardObject FindStandardObject(const ObjectId& object) {
  return Find([&](const ObjectRow& row) { return row.object == object; });
}

StandardObject FindStandardObject(std::string_view name) {
  return Find([&](const ObjectRow& row) { return row.name == name; });
}

}  // namespace VirtualPrinter
