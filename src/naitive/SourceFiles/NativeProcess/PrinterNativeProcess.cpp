// The worker: one URL-encoded request a line on standard input, one answer each on standard output.
#include <cerrno>
#include <csignal>
#include <iostream>
#include <string>

#include "NativeProcess/PrinterProcess.h"
#include "NativeProcess/StandardStreams.h"
#include "NativeProcess/URLDecoder.h"
#include "printer_io/Termination.h"

int main() {
  Ravik::OccupyStandardDescriptors();
  Ravik::Termination::CatchSignals();
  // What meets the limit of file sizes fails with EFBIG, as on a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  long result = 1;
  for (std::string line; std::getline(std::cin, line); line.clear()) {
    if (line.empty()) continue;
    result = Ravik::PrinterProcess::doFunction(URLDecoder::decode(line), std::cout);
    // A host that keeps the worker running waits for this answer. One that cannot get it is not to
    // find its further requests done.
    if (!std::cout.flush()) return Ravik::LoseAnswer(errno);
  }
  return static_cast<int>(result);
}
