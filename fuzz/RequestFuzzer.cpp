// Request lines from the host, run against a port whose answers come from the input too.
//
// Input: the URL-encoded request line; the name of a plug-in call that fails, or any other text;
// then the port's answers, the first of them also the status text. Each ends in a backslash and a
// character that is none. Taken from the end: the length that the plug-in tells of an answer.
#include <algorithm>
#include <sstream>

#include "NativeProcess/PrinterProcess.h"
#include "NativeProcess/URLDecoder.h"
#include "fuzz/Fuzz.h"
#include "fuzz/PrescribedEnds.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace {

// "N" is a printer on a network port, "L" on a local one.
void StorePrinters() {
  fake_plugin::StorePrinters({{"N", "QM-R410 Series", "network", ZIO_PORT_TYPE_TCPIP},
                              {"L", "QM-T44 Series", "local", 1}});
}

// Printers that a search finds; one without a name ends the process.
CFRef<CFTypeRef> FoundPrinters(const std::string& names) {
  std::vector<CFRef<CFTypeRef>> records;
  std::istringstream stream(names);
  for (std::string name; records.size() < 4 && stream >> name;) {
    if (!fake_plugin::MakeText(name)) continue;
    records.emplace_back(fake_plugin::MakeRecord({name, name, "address"}));
  }
  if (names.find('!') != std::string::npos) records.emplace_back(fake_plugin::MakeDictionary({}));
  return fake_plugin::MakeList(records);
}

void ScriptPort(FuzzedDataProvider& input) {
  fake_plugin::Script& script = fake_plugin::script();
  script = {};
  script.results[input.ConsumeRandomLengthString(32)] = -7;
  const long told_length = input.ConsumeIntegral<std::int16_t>();
  while (input.remaining_bytes() > 0 && script.replies.size() < 8) {
    script.replies.push_back(input.ConsumeRandomLengthString(1024));
  }
  if (!script.replies.empty()) script.status = script.replies.front();
  script.list = FoundPrinters(script.status);
  script.on_exchange = [told_length](ZIOSnmpExchange& block) {
    if (told_length % 8 == 7) block.answerLength = std::min(told_length, 512L);
  };
}

bool IsResultCode(long code) {
  return code == 0 || code == -1 || (code >= -8 && code <= -4);
}

void Ask(const std::string& line) {
  std::ostringstream answer;
  const long code = Ravik::PrinterProcess::doFunction(URLDecoder::decode(line), answer);
  FUZZ_CHECK(IsResultCode(code));
  const std::string text = answer.str();
  FUZZ_CHECK(text == "syntax error" ||
             (text.substr(0, 2) == "{\"" && text.back() == '}' &&
              text.find("\":" + std::to_string(code)) != std::string::npos));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fake_plugin::Session session;
  static const bool stored = (StorePrinters(), true);
  static_cast<void>(stored);
  FuzzedDataProvider input(data, size);
  const std::string line = input.ConsumeRandomLengthString(4096);
  ScriptPort(input);
  Completes([&] { Ask(line); });
  FUZZ_CHECK(fake_plugin::LiveObjects() == 0);
  const auto calls = fake_plugin::TakeCalls();
  if (std::count(calls.begin(), calls.end(), "info.getList") != 0) StorePrinters();
  return 0;
}
