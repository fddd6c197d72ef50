// Analysing replies, and writing answers.
#include <benchmark/benchmark.h>

#include <sstream>

#include "GantryCore/PrinterReply.h"
#include "NativeProcess/PrinterProcess.h"
#include "Record.h"

namespace Bench {
namespace {

void AnalyseReply(benchmark::State& state, const Operation& read) {
  const Ravik::CommandVO reply = Reply(read);
  for (auto _ : state) {
    const Ravik::ParameterMapVO values = Values(read, reply);
    benchmark::DoNotOptimize(values);
  }
}

// All figures that a request may ask for.
void AnalyseStatus(benchmark::State& state) {
  constexpr unsigned char kStatus[] =
      "\x19\0\x01\x01\x04\x02\x01\0\x04\x02\x13\x2A\x1F\x0ASN00012345\x28\x01\x40";
  Ravik::ParameterMapVO request;
  for (const char* name : {"StatusCode", "ErrorCode", "WarningCode", "SerialNumber"})
    request.insert(name);
  for (auto _ : state) {
    StatusReply status;
    Ravik::ParameterMapVO values;
    Ravik::APPLICATION_ERROR error = Ravik::ERROR_NONE;
    if (!status.SetReply(kStatus) ||
        !Ravik::CPrinterReply::AnalysisStatusReply(kReads[0].device_name, request, status, values,
                                                   error) ||
        values.size() != 4) {
      state.SkipWithError("not analysed");
    }
    benchmark::DoNotOptimize(values);
  }
}
BENCHMARK(AnalyseStatus);

void WriteAnswer(benchmark::State& state, const Operation& read) {
  const Ravik::ParameterMapVO values = Values(read, Reply(read));
  std::ostringstream out;
  for (auto _ : state) {
    out.seekp(0);
    Ravik::PrinterProcess::PrintJson("GetCustomMediaInfo", values, 0, out);
    benchmark::DoNotOptimize(out);
  }
}

const bool kRegistered = [] {
  for (const Operation& read : kReads) {
    benchmark::RegisterBenchmark((std::string("AnalyseReply/") + read.name).c_str(), AnalyseReply,
                                 read);
  }
  for (const Operation& read : kReads) {
    benchmark::RegisterBenchmark((std::string("WriteAnswer/") + read.name).c_str(), WriteAnswer,
                                 read);
  }
  return true;
}();

}  // namespace
}  // namespace Bench
