#include "util/ProcessTrace.h"

#include <cstdlib>
#include <new>
#include <optional>
#include <system_error>

#include "util/Diagnostics.h"
#include "util/TraceWriter.h"

namespace Ravik {

namespace {

std::optional<TraceWriter> writer;

// Leaves writer empty if no trace is asked for; throws std::system_error if it cannot be had.
void Open(const char* reporter) {
  const char* const target = std::getenv(kTraceVariable);
  if (target != nullptr && *target != '\0') writer.emplace(reporter, target);
}

}  // namespace

std::atomic<bool> ProcessTrace::is_on_{false};

bool ProcessTrace::Start(const char* reporter) noexcept {
  static const bool is_as_asked = [reporter] {
    try {
      Open(reporter);
    } catch (const std::system_error& error) {
      ReportLine(reporter, std::string("no trace: ") + error.what() + " (error " +
                               std::to_string(error.code().value()) + ")");
      return false;
    } catch (const std::bad_alloc&) {
      return false;
    }
    is_on_ = writer.has_value();
    return true;
  }();
  return is_as_asked;
}

void ProcessTrace::Write(const TraceEvent& event) {
  if (IsOn() && !writer->Write(event)) is_on_ = false;
}

}  // namespace Ravik
