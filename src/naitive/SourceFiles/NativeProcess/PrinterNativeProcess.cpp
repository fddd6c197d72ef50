// The worker: one URL-encoded request a line on standard input, one answer each on standard output.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>

#include "NativeProcess/HostChannel.h"
#include "NativeProcess/PrinterProcess.h"
#include "NativeProcess/RequestTrace.h"
#include "NativeProcess/StandardStreams.h"
#include "NativeProcess/URLDecoder.h"
#include "printer_io/Termination.h"
#include "util/ProcessTrace.h"

int main() {
  Ravik::OccupyStandardDescriptors();
  Ravik::Termination::CatchSignals();
  // What meets the limit of file sizes fails with EFBIG, as on a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  // A file that cannot be had is reported once: the plug-in would try it again.
  if (!Ravik::ProcessTrace::Start("PrinterNativeProcess")) ::unsetenv(Ravik::kTraceVariable);
  Ravik::HostChannel host(STDIN_FILENO, STDOUT_FILENO);
  long result = 1;
  Ravik::PrinterProcess::Workspace workspace;
  for (std::string line; host.ReadLine(line);) {
    if (line.empty()) continue;
    const std::string request = URLDecoder::decode(line);
    const Ravik::RequestTrace trace(request);
    result = Ravik::PrinterProcess::Answer(request, workspace);
    trace.End(result, workspace.answer);
    // A host that keeps the worker running waits for this answer. One that cannot get it is not to
    // find its further requests done.
    if (!host.Write(workspace.answer)) return Ravik::LoseAnswer(errno);
  }
  return static_cast<int>(result);
}
