// Keeps the plug-in's code loaded.
#ifndef PORT_DRIVER_PLUGINREGISTRATION_H_
#define PORT_DRIVER_PLUGINREGISTRATION_H_

#include <CoreFoundation/CFPlugIn.h>

#include "corefoundation/Foundation.h"

namespace ZIOP {

// A member of every object that the plug-in hands out: as long as one lives, the plug-in is in use.
class PlugInRegistration {
 public:
  PlugInRegistration() { CFPlugInAddInstanceForFactory(factory_.get()); }
  ~PlugInRegistration() { CFPlugInRemoveInstanceForFactory(factory_.get()); }
  PlugInRegistration(const PlugInRegistration&) = delete;
  PlugInRegistration& operator=(const PlugInRegistration&) = delete;

 private:
  CFRef<CFUUIDRef> factory_{CFUUIDCreateFromString(kCFAllocatorDefault, CFSTR(ZIOP_FACTORY_ID))};
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_PLUGINREGISTRATION_H_
