// Building commands, and the SNMP requests that carry them.
#include <benchmark/benchmark.h>

#include "GantryCore/PrinterCommand.h"
#include "Record.h"
#include "printer_io/CZIOCommon.h"

namespace Bench {
namespace {

void BuildCommand(benchmark::State& state, const Operation& operation,
                  const Ravik::ParameterMapVO& parameters) {
  for (auto _ : state) {
    Ravik::CPrinterCommand command;
    if (!command.Set(operation.device_name, operation.key, parameters)) {
      state.SkipWithError("not built");
    }
    benchmark::DoNotOptimize(command);
  }
}

void BuildSnmpRequest(benchmark::State& state, const Ravik::CommandVO& command) {
  const auto& bytes = command.bytes();
  char request[512];
  for (auto _ : state) {
    long length = 0;
    if (CZIOCommon::CreateSNMPCommand(reinterpret_cast<const char*>(bytes.data()),
                                      static_cast<long>(bytes.size()), request, &length) != 0) {
      state.SkipWithError("not built");
    }
    benchmark::DoNotOptimize(request);
  }
}

const bool kRegistered = [] {
  for (const Operation& read : kReads) {
    benchmark::RegisterBenchmark((std::string("BuildCommand/Read/") + read.name).c_str(),
                                 BuildCommand, read, ReadParameters(read));
  }
  for (const Operation& write : kWrites) {
    benchmark::RegisterBenchmark((std::string("BuildCommand/Write/") + write.name).c_str(),
                                 BuildCommand, write, WriteParameters(write));
  }
  benchmark::RegisterBenchmark("BuildSnmpRequest", BuildSnmpRequest, ReadCommand(kReads[0]));
  return true;
}();

}  // namespace
}  // namespace Bench
