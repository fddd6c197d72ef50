// The platform's assertion report, in every kind of build.
#undef NDEBUG  // the C library declares its assertion-failure function without it only

#include "Library/RavikCommon/RavikAssert.h"

#include <cassert>
#include <string>

#include "util/ProcessTrace.h"

namespace Ravik {

void ReportAssertion(const char* expression, const char* function, const char* source,
                     unsigned int line) {
  if (ProcessTrace::IsOn()) {
    const std::string text = std::string("assertion ") + expression + " failed in " + function;
    ProcessTrace::Write({"worker", "host", "report", {}, text});
  }
  std::string unit(source);
  const std::string::size_type dot = unit.rfind('.');
  const std::string::size_type slash = unit.rfind('/');
  if (dot != std::string::npos && (slash == std::string::npos || slash < dot)) unit.resize(dot);
#ifdef __APPLE__
  __assert_rtn(function, unit.c_str(), static_cast<int>(line), expression);
#else
  __assert_fail(expression, unit.c_str(), line, function);
#endif
}

}  // namespace Ravik
