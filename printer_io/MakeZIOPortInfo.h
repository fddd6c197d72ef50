// The I/O plug-in's port-information interface: which printers the plug-in can reach.
#ifndef PRINTER_IO_MAKEZIOPORTINFO_H_
#define PRINTER_IO_MAKEZIOPORTINFO_H_

#include <memory>

#include "printer_io/CPluginLoader.h"
#include "printer_io/ZIOPlugin.h"

class MakeZIOPortInfo {
 public:
  // Loads the plug-in at path, or without one at the dictionary's ZIO_INFO_PLUGIN_PATH, and
  // initialises its port-information interface with the dictionary. Loads nothing without a
  // dictionary or a path.
  MakeZIOPortInfo(const __CFString* path, const __CFDictionary* information);

  // Terminates and releases the interface, then the plug-in.
  virtual ~MakeZIOPortInfo();

  MakeZIOPortInfo(const MakeZIOPortInfo&) = delete;
  MakeZIOPortInfo& operator=(const MakeZIOPortInfo&) = delete;

  // The plug-in's list, or null when the interface is not initialised or lists nothing. It stays
  // the plug-in's and is valid until the next call and no longer than this object. Blocks while the
  // plug-in searches.
  virtual const __CFDictionary* GetList();

 private:
  std::unique_ptr<CPluginLoader> loader_;
  ZIOPortInfoInterface* port_info_ = nullptr;
  bool ready_ = false;
};

#endif  // PRINTER_IO_MAKEZIOPORTINFO_H_
