// Slots of the port-information interface.
#include "port_driver/PortInfoInterface.h"

#include <algorithm>
#include <iterator>

#include "corefoundation/Foundation.h"
#include "port_driver/ConfiguredPrinters.h"
#include "port_driver/Discovery.h"
#include "port_driver/FunctionTable.h"
#include "port_driver/Module.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

class PortInfoInterface : public ZIOPortInfoInterface {
 public:
  PortInfoInterface();

  void Initialise(int version, CFDictionaryRef information);
  void Terminate();
  void Search();

  CFDictionaryRef list() const { return list_.get(); }

 private:
  CFRef<CFDictionaryRef> information_;  // from initialise to terminate
  CFRef<CFDictionaryRef> list_;         // what the last search found
};

PortInfoInterface& Self(ZIOPortInfoInterface* interface) {
  return *static_cast<PortInfoInterface*>(interface);
}

template <auto Operation, typename... Arguments>
int Slot(ZIOPortInfoInterface* interface, Arguments... arguments) noexcept {
  return Guard([&] { (Self(interface).*Operation)(arguments...); },
               [](DriverCode, const char* message) { Ravik::ReportLine("ZIOP", message); });
}

int Release(ZIOPortInfoInterface* interface) noexcept {
  delete &Self(interface);
  return 0;
}

CFDictionaryRef GetList(ZIOPortInfoInterface* interface) noexcept {
  return Slot<&PortInfoInterface::Search>(interface) == 0 ? Self(interface).list() : nullptr;
}

constexpr ZIOPortInfoTable kTable = {
    nullptr, Release, Slot<&PortInfoInterface::Initialise>, Slot<&PortInfoInterface::Terminate>,
    GetList,
};

// Whether information may ask for a search; the searches themselves look closer.
bool MayAskForSearch(CFDictionaryRef information) {
  const CFTypeRef discovery = CFDictionaryGetValue(information, CFSTR("Discovery"));
  const auto searches = CFCast<CFDictionaryRef>(discovery);
  if (searches == nullptr) return discovery != nullptr;
  const CFStringRef kSearches[] = {CFSTR("Network"), CFSTR("CUPS"), CFSTR("USB")};
  return std::any_of(std::begin(kSearches), std::end(kSearches), [searches](CFStringRef key) {
    const CFTypeRef wanted = CFDictionaryGetValue(searches, key);
    return wanted != nullptr && wanted != kCFBooleanFalse;
  });
}

void SearchIfAsked(CFDictionaryRef information, CFMutableArrayRef records) {
  if (!MayAskForSearch(information)) return;
  const auto discover =
      LoadModule<decltype(ZIOPDiscover)>(DriverFolder() + "/libZIOPDiscovery.so", "ZIOPDiscover");
  if (discover != nullptr) discover(information, records);
}

PortInfoInterface::PortInfoInterface() : ZIOPortInfoInterface{&kTable} {}

void PortInfoInterface::Initialise(int version, CFDictionaryRef information) {
  Require(!information_, "the interface is initialised already");
  Require(CFCast<CFDictionaryRef>(information) != nullptr, "no supported-printer dictionary");
  if (version != ZIO_INTERFACE_VERSION) {
    throw DriverError(DriverCode::kUnsupported, "unknown version of the interface");
  }
  information_ = CFRef<CFDictionaryRef>::Retain(information);
}

void PortInfoInterface::Terminate() {
  list_ = {};
  information_ = {};
}

void PortInfoInterface::Search() {
  list_ = {};
  Require(static_cast<bool>(information_), "the interface is not initialised");
  const CFRef<CFMutableArrayRef> records(
      CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));
  AppendConfiguredPrinters(information_.get(), records.get());
  SearchIfAsked(information_.get(), records.get());
  const void* keys[] = {CFSTR(ZIO_INFO_PRINTER_LIST)};
  const void* values[] = {records.get()};
  list_ = CFRef<CFDictionaryRef>(CFDictionaryCreate(kCFAllocatorDefault, keys, values, 1,
                                                    &kCFTypeDictionaryKeyCallBacks,
                                                    &kCFTypeDictionaryValueCallBacks));
}

}  // namespace

ZIOPortInfoInterface* MakePortInfoInterface() {
  return new PortInfoInterface;
}

}  // namespace ZIOP
