// Loads the I/O plug-in's bundle and asks it for interfaces.
#ifndef PRINTER_IO_CPLUGINLOADER_H_
#define PRINTER_IO_CPLUGINLOADER_H_

#include <CoreFoundation/CFPlugIn.h>
#include <CoreFoundation/CFPlugInCOM.h>
#include <CoreFoundation/CoreFoundation.h>

#include "corefoundation/Foundation.h"

// One instance of a plug-in. A bundle that is missing, or has no factory for the type, leaves the
// loader empty: it then answers null to every request. Loading runs the plug-in's factory.
class CPluginLoader {
 public:
  // Loads the bundle at the path (POSIX) and makes an instance of the type, a UUID text, with the
  // bundle's first factory for it. Texts of the first form are Mac Roman. A null argument, or an
  // empty text in the first form, loads nothing.
  CPluginLoader(const char* path, const char* type);
  CPluginLoader(const __CFString* path, const __CFString* type);
  CPluginLoader(const __CFURL* bundle, const __CFString* type);

  // Releases the instance, then the bundle.
  virtual ~CPluginLoader();

  CPluginLoader(const CPluginLoader&) = delete;
  CPluginLoader& operator=(const CPluginLoader&) = delete;

  // Asks the instance for the interface of a UUID text. Null when the loader is empty, the argument
  // is null or the plug-in refuses. The interface belongs to the plug-in and ends with its own
  // release operation, which comes before the loader's destruction.
  virtual void* GetInterface(const char* interface_id);
  virtual void* GetInterface(const __CFString* interface_id);

  // What the constructors do with the bundle's URL; called once.
  void LoadPluginCommon(const __CFURL* bundle, const __CFString* type);

 private:
  bool HasInstance() const;

  CFRef<CFPlugInRef> bundle_;
  IUnknownVTbl** instance_ = nullptr;
};

#endif  // PRINTER_IO_CPLUGINLOADER_H_
