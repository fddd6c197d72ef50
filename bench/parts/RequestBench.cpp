// Decoding and parsing request lines.
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

#include "NativeProcess/PrinterProcess.h"
#include "NativeProcess/URLDecoder.h"
#include "NativeProcess/URLEncoder.h"
#include "Record.h"

namespace Bench {
namespace {

std::string Request(const Ravik::ParameterMapVO& parameters) {
  std::ostringstream text;
  text << R"({"Command":"GetCustomMediaInfo","PrinterName":"Studio","DeviceName":"QM-R410 Series",)"
       << R"("Parameter":)" << parameters << '}';
  return text.str();
}

void DecodeURL(benchmark::State& state, const std::string& line) {
  for (auto _ : state) {
    const std::string text = URLDecoder::decode(line);
    benchmark::DoNotOptimize(text);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * line.size()));
}

void ParseRequest(benchmark::State& state, const std::string& request) {
  for (auto _ : state) {
    std::string command;
    Ravik::PrinterVO printer;
    Ravik::ParameterMapVO parameters;
    if (!Ravik::PrinterProcess::ParsePicojson(request, command, printer, parameters)) {
      state.SkipWithError("not parsed");
    }
    benchmark::DoNotOptimize(parameters);
  }
}

const bool kRegistered = [] {
  const std::pair<const char*, std::string> requests[] = {
      {"Read", Request(ReadParameters(kReads[0]))},
      {"Write", Request(WriteParameters(kWrites[0]))}};
  for (const auto& [name, request] : requests) {
    // A host may escape every byte, or none that may stand in a line.
    benchmark::RegisterBenchmark((std::string("DecodeURL/Escaped/") + name).c_str(), DecodeURL,
                                 URLEncoder::encode(request));
    benchmark::RegisterBenchmark((std::string("DecodeURL/Plain/") + name).c_str(), DecodeURL,
                                 request);
    benchmark::RegisterBenchmark((std::string("ParseRequest/") + name).c_str(), ParseRequest,
                                 request);
  }
  return true;
}();

}  // namespace
}  // namespace Bench
