#include "printer_io/MakeZIOPortInfo.h"

MakeZIOPortInfo::MakeZIOPortInfo(const __CFString* path, const __CFDictionary* information) {
  if (information == nullptr) return;
  if (path == nullptr) {
    path = CFCast<CFStringRef>(CFDictionaryGetValue(information, CFSTR(ZIO_INFO_PLUGIN_PATH)));
  }
  if (path == nullptr) return;
  loader_ = std::make_unique<CPluginLoader>(path, CFSTR(ZIO_PLUGIN_TYPE_ID));
  port_info_ =
      static_cast<ZIOPortInfoInterface*>(loader_->GetInterface(CFSTR(ZIO_PORT_INFO_INTERFACE_ID)));
  if (port_info_ == nullptr) return;
  ready_ = port_info_->table->initialise(port_info_, ZIO_INTERFACE_VERSION, information) == 0;
}

MakeZIOPortInfo::~MakeZIOPortInfo() {
  if (port_info_ == nullptr) return;
  port_info_->table->terminate(port_info_);
  port_info_->table->release(port_info_);
}

const __CFDictionary* MakeZIOPortInfo::GetList() {
  return ready_ ? port_info_->table->getList(port_info_) : nullptr;
}
