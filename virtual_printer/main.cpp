// virtual-printer: a printer to run programs against.
#include <picojson.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>

#include "virtual_printer/Options.h"
#include "virtual_printer/Server.h"
#include "virtual_printer/StateFile.h"

namespace {

using VirtualPrinter::Options;

constexpr int kUsageError = 2;

int stop_pipe[2] = {-1, -1};

void Stop(int) {
  const int saved = errno;
  const char byte = 0;
  (void)!write(stop_pipe[1], &byte, 1);
  errno = saved;
}

bool CatchSignals() {
  if (pipe(stop_pipe) != 0) return false;
  struct sigaction action {};
  action.sa_handler = Stop;
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGINT, &action, nullptr);
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
  return true;
}

void TellReady(const Options& options, const VirtualPrinter::Server& server) {
  picojson::object ready;
  ready["model"] = picojson::value(options.setup.model);
  ready["snmp"] = picojson::value(static_cast<double>(server.SnmpPort()));
  ready["raw"] = picojson::value(static_cast<double>(server.RawPort()));
  ready["local"] =
      options.local_path.empty() ? picojson::value() : picojson::value(options.local_path);
  std::cout << picojson::value(ready).serialize() << std::endl;
}

int Fail(const std::string& what, int status) {
  std::cerr << "virtual-printer: " << what << '\n';
  return status;
}

int Run(Options& options) {
  const VirtualPrinter::Family& family = *VirtualPrinter::FindFamily(options.setup.model);
  VirtualPrinter::RecordTable records = VirtualPrinter::FactoryRecords(family);
  const std::string& path = options.setup.state_path;
  std::string error = path.empty() ? "" : VirtualPrinter::LoadState(path, family, records);
  if (!error.empty()) return Fail(path + ": " + error, 1);

  if (!CatchSignals()) return Fail("no pipe for the signals", 1);
  options.faults.Seed(options.setup.serial);
  VirtualPrinter::Trace trace(options.trace ? &std::cerr : nullptr);
  VirtualPrinter::Printer printer(options.setup, records, options.faults, trace);
  VirtualPrinter::Server server(options.listen, options.snmp_port, options.raw_port, printer,
                                options.faults, trace);
  if (!options.local_path.empty()) server.OfferLocalPort(options.local_path);
  TellReady(options, server);
  server.Run(stop_pipe[0]);
  error = printer.SaveState();
  return error.empty() ? 0 : Fail(path + ": " + error, 1);
}

}  // namespace

int main(int argc, char* argv[]) {
  Options options;
  const std::string error = VirtualPrinter::ParseOptions(argc, argv, options);
  if (!error.empty()) return Fail(error, kUsageError);
  if (options.help) {
    std::cout << VirtualPrinter::HelpText();
    return 0;
  }
  try {
    return Run(options);
  } catch (const std::exception& failure) {
    return Fail(failure.what(), 1);
  }
}
