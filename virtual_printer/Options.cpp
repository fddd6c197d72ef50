// The command line.
#include "virtual_printer/Options.h"

#include <getopt.h>

#include "virtual_printer/Model.h"
#include "virtual_printer/Numbers.h"

namespace VirtualPrinter {
namespace {

enum Option {
  kModel = 1,
  kListen,
  kSnmp,
  kRaw,
  kLocal,
  kSerial,
  kFirmware,
  kState,
  kFault,
  kTrace,
  kHelp,
};

constexpr option kOptions[] = {
    {"model", required_argument, nullptr, kModel},
    {"listen", required_argument, nullptr, kListen},
    {"snmp", required_argument, nullptr, kSnmp},
    {"raw", required_argument, nullptr, kRaw},
    {"local", required_argument, nullptr, kLocal},
    {"serial", required_argument, nullptr, kSerial},
    {"firmware", required_argument, nullptr, kFirmware},
    {"state", required_argument, nullptr, kState},
    {"fault", required_argument, nullptr, kFault},
    {"trace", no_argument, nullptr, kTrace},
    {"help", no_argument, nullptr, kHelp},
    {nullptr, 0, nullptr, 0},
};

std::string Models() {
  std::string text;
  for (const auto name : DeviceNames()) text += "  " + std::string(name) + '\n';
  return text;
}

std::string SetModel(const std::string& name, Options& options) {
  options.setup.model = name;
  if (FindFamily(name) != nullptr) return "";
  return "no printer is called \"" + name + "\"; the names are\n" + Models();
}

std::string SetPort(const char* name, const std::string& text, std::uint16_t& port) {
  const auto number = ParseNumber(text, 65535);
  if (!number) return std::string("--") + name + " takes a port number from 0 to 65535";
  port = static_cast<std::uint16_t>(*number);
  return "";
}

std::string AddFault(const std::string& text, Options& options) {
  const std::string error = options.faults.Add(text);
  if (error.empty()) return "";
  return "--fault " + text + ": " + error + "; the faults are\n" + Faults::Help();
}

std::string Apply(int option, const std::string& value, Options& options) {
  switch (option) {
    case kModel:
      return SetModel(value, options);
    case kListen:
      options.listen = value;
      return "";
    case kSnmp:
      return SetPort("snmp", value, options.snmp_port);
    case kRaw:
      return SetPort("raw", value, options.raw_port);
    case kLocal:
      options.local_path = value;
      return "";
    case kSerial:
      options.setup.serial = value;
      return "";
    case kFirmware:
      options.setup.firmware = value;
      return "";
    case kState:
      options.setup.state_path = value;
      return "";
    case kFault:
      return AddFault(value, options);
    case kTrace:
      options.trace = true;
      return "";
    case kHelp:
      options.help = true;
      return "";
    default:
      return "unknown option, or an option without its value";
  }
}

}  // namespace

std::string ParseOptions(int argc, char* const argv[], Options& options) {
  optind = 0;  // start afresh
  opterr = 0;
  for (;;) {
    const int at = optind == 0 ? 1 : optind;
    const int option = getopt_long(argc, argv, "", kOptions, nullptr);
    if (option == -1) break;
    const std::string error = Apply(option, optarg != nullptr ? optarg : "", options);
    if (!error.empty()) return option == '?' ? std::string(argv[at]) + ": " + error : error;
  }
  if (options.help) return "";
  if (optind < argc) return std::string(argv[optind]) + ": unexpected argument";
  if (options.setup.model.empty()) return "--model is missing; the names are\n" + Models();
  return "";
}

std::string HelpText() {
  return "Usage: virtual-printer --model NAME [OPTION]...\n"
         "\n"
         "Plays a printer with an SNMP agent, a raw TCP port and a local port. When it is ready,\n"
         "it prints one JSON object with its model and ports; SIGTERM and SIGINT end it.\n"
         "\n"
         "  --model NAME      the printer's device name, one of those below\n"
         "  --listen ADDRESS  numeric address of the network ports (127.0.0.1)\n"
         "  --snmp PORT       UDP port of the SNMP agent (0: any free one)\n"
         "  --raw PORT        TCP port of the raw data port (0: any free one)\n"
         "  --local PATH      also offer a local port, a terminal device linked at PATH\n"
         "  --serial TEXT     serial number, padded or cut to 10 characters (VP00000001)\n"
         "  --firmware TEXT   firmware version, padded or cut to 4 characters (1.00)\n"
         "  --state FILE      keep what the command SV makes permanent in FILE\n"
         "  --fault KIND      misbehave, as listed below; may be repeated\n"
         "  --trace           write one line an event to standard error\n"
         "  --help            print this text\n"
         "\n"
         "Faults. A request is an SNMP GetRequest, or one command on the raw or local port. With\n"
         "=N a fault strikes only the first N times.\n" +
         Faults::Help() +
         "\n"
         "Device names:\n" +
         Models();
}

}  // namespace VirtualPrinter
