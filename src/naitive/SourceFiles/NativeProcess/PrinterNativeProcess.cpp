// The worker: one URL-encoded request a line on standard input, one answer each on standard output.
#include <iostream>
#include <string>

#include "NativeProcess/PrinterProcess.h"
#include "NativeProcess/URLDecoder.h"

int main() {
  std::ios::sync_with_stdio(false);
  long result = 1;
  for (std::string line; std::getline(std::cin, line); line.clear()) {
    if (line.empty()) continue;
    result = Ravik::PrinterProcess::doFunction(URLDecoder::decode(line), std::cout);
    std::cout.flush();  // a host that keeps the worker running waits for this answer
  }
  return static_cast<int>(result);
}
