#include "port_driver/Module.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <memory>

#include "util/Diagnostics.h"

namespace ZIOP {

std::string DriverFolder() {
  Dl_info own{};
  if (::dladdr(reinterpret_cast<const void*>(&DriverFolder), &own) == 0) {
    return {};
  }
  const std::unique_ptr<char, void (*)(void*)> path(::realpath(own.dli_fname, nullptr), ::free);
  const std::string file = path ? path.get() : "";
  return file.substr(0, file.rfind('/') == std::string::npos ? 0 : file.rfind('/'));
}

void* FindInModule(const std::string& path, const char* symbol) {
  void* const code = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  void* const function = code == nullptr ? nullptr : ::dlsym(code, symbol);
  if (function == nullptr) {
    const char* const reason = ::dlerror();
    Ravik::ReportLine("ZIOP",
                      "search left out: " + Ravik::Printable(reason == nullptr ? path : reason));
  }
  return function;
}

}  // namespace ZIOP
