// Always-on assertions for errors of the program's own tables and maps; never compiled out.
#ifndef RAVIKCOMMON_RAVIKASSERT_H_
#define RAVIKCOMMON_RAVIKASSERT_H_

namespace Ravik {

// Ends the process through the C library's assertion-failure function, which prints expression,
// function, source and line on standard error and aborts. source is a path from the repository
// root; a file extension is left out of the report.
[[noreturn]] void ReportAssertion(const char* expression, const char* function, const char* source,
                                  unsigned int line);

}  // namespace Ravik

// Reports expression, as written, from the place where the macro stands.
#define RAVIK_ASSERT(expression) \
  ((expression) ? void(0) : ::Ravik::ReportAssertion(#expression, __func__, __FILE__, __LINE__))

#endif  // RAVIKCOMMON_RAVIKASSERT_H_
