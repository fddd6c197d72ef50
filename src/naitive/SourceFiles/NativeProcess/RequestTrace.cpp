#include "NativeProcess/RequestTrace.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "printer_control/ApplicationError.h"
#include "util/Diagnostics.h"

namespace Ravik {

namespace {

constexpr std::size_t kShown = 1024;  // bytes of a request or an answer

struct Meaning {
  long code;
  const char* text;
};

// In the words of the host's protocol.
constexpr Meaning kMeanings[] = {
    {ERROR_NONE, "done"},
    {ERROR_COMMAND,
     "unknown command or device name, a parameter is missing, or the printer did not take a write"},
    {ERROR_OPEN,
     "the printer could not be opened: it is not in the list of the last search, or does not "
     "exist"},
    {ERROR_CLOSE, "the printer could not be closed"},
    {ERROR_TRANSFER, "no answer from the printer, or a write that reading back did not confirm"},
    {ERROR_NO_BODY, "an answer without the header that belongs to the request"},
    {ERROR_AUXILIARY, "an answer that ends in the auxiliary marker"},
};

const char* MeaningOf(long code) {
  for (const Meaning& row : kMeanings) {
    if (row.code == code) return row.text;
  }
  return "unknown";
}

std::string Shown(std::string_view text) {
  const std::size_t more = text.size() - std::min(text.size(), kShown);
  return Printable(text.substr(0, kShown)) + (more > 0 ? '+' + std::to_string(more) : "");
}

}  // namespace

void RequestTrace::Begin(std::string_view request) {
  start_ = std::chrono::steady_clock::now();
  ProcessTrace::Write({"worker", "host", "request", {}, Shown(request)});
}

void RequestTrace::Tell(long code, std::string_view answer) const {
  ProcessTrace::Write({"worker", "host", "answer", {}, Shown(answer)});
  const bool is_request = answer != "syntax error";
  const std::string text = "code=" + std::to_string(code) + ' ' + TraceDuration(start_) + ' ' +
                           (is_request ? MeaningOf(code) : "the request is not well formed");
  ProcessTrace::Write({"worker", "host", "result", {}, text});
}

}  // namespace Ravik
