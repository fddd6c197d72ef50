// Request lines from the host, run against a port whose answers come from the input too. The line
// is also encoded, read as JSON by picojson alone, and sent to the port as it is.
//
// Input: the URL-encoded request line; the name of a plug-in call that fails, or any other text;
// then the port's answers, the first of them also the status text. Each ends in a backslash and a
// character that is none. Taken from the end: the length that the plug-in tells of an answer.
#include <picojson.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "NativeProcess/PrinterProcess.h"
#include "NativeProcess/RequestReader.h"
#include "NativeProcess/URLDecoder.h"
#include "NativeProcess/URLEncoder.h"
#include "fuzz/Fuzz.h"
#include "fuzz/PrescribedEnds.h"
#include "printer_control/PrinterController.h"
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

// Texts end at their NUL.
void CheckEncoding(const std::string& line) {
  FUZZ_CHECK(URLDecoder::decode(URLEncoder::encode(line)) == line.substr(0, line.find('\0')));
}

template <typename Kept>
bool Equals(const std::optional<Kept>& kept, const picojson::value& member) {
  return kept ? member.is<Kept>() && member.get<Kept>() == *kept : !member.is<Kept>();
}

// Whether the texts are those of an array's elements.
bool AreTexts(const std::optional<std::vector<std::string>>& texts, const picojson::value& member) {
  if (!texts || !member.is<picojson::array>()) return !texts && !member.is<picojson::array>();
  std::vector<std::string> expected;
  for (const picojson::value& element : member.get<picojson::array>()) {
    if (element.is<std::string>()) expected.push_back(element.get<std::string>());
  }
  return *texts == expected;
}

// What a processor makes of a number beyond 32 bits is the smallest integer.
int Truncated(double number) {
  const double whole = std::trunc(number);
  return std::abs(whole + 0.5) < 2147483648.0 ? static_cast<int>(whole) : INT_MIN;
}

bool AreParameters(const std::optional<Ravik::RequestMembers::Parameters>& parameters,
                   const picojson::value& member) {
  if (!parameters || !member.is<picojson::object>()) {
    return !parameters && !member.is<picojson::object>();
  }
  Ravik::RequestMembers::Parameters expected;
  for (const auto& [key, value] : member.get<picojson::object>()) {
    if (value.is<std::string>()) expected.emplace_back(key, value.get<std::string>());
    if (value.is<double>()) expected.emplace_back(key, Truncated(value.get<double>()));
  }
  return *parameters == expected;
}

void CheckMembers(const Ravik::RequestMembers& members, const picojson::value& request) {
  FUZZ_CHECK(Equals(members.command, request.get("Command")));
  FUZZ_CHECK(Equals(members.printer_name, request.get("PrinterName")));
  FUZZ_CHECK(Equals(members.device_name, request.get("DeviceName")));
  FUZZ_CHECK(Equals(members.file_path, request.get("FilePath")));
  FUZZ_CHECK(AreTexts(members.parameter_texts, request.get("Parameter")));
  FUZZ_CHECK(AreParameters(members.parameters, request.get("Parameter")));
}

// A line holds fewer objects inside one another than are read, so that every text is read as by
// picojson alone, which makes a tree of it.
void CheckReading(const std::string& text) {
  picojson::value expected;
  std::istringstream stream(text);
  bool is_read = false;
  try {
    is_read = picojson::parse(expected, stream).empty() && !expected.is<picojson::null>();
  } catch (const std::overflow_error&) {  // a number beyond a double's range
  }
  Ravik::RequestMembers members;
  try {
    FUZZ_CHECK(Ravik::ReadRequest(text, members) == is_read);
    if (is_read) CheckMembers(members, expected);
  } catch (const std::runtime_error& error) {
    FUZZ_CHECK(is_read && !expected.is<picojson::object>());
    FUZZ_CHECK(std::string(error.what()) == "is<object>()");
  }
}

bool Succeed(std::initializer_list<const char*> calls) {
  const auto& results = fake_plugin::script().results;
  return std::none_of(calls.begin(), calls.end(), [&results](const std::string& call) {
    const auto result = results.find(call);
    return result != results.end() && result->second != 0;
  });
}

void CheckTransfer(bool sent, bool succeeds, Ravik::APPLICATION_ERROR error) {
  const bool opens = Succeed({"factory", "QueryInterface", "initialise", "open"});
  FUZZ_CHECK(sent == (opens && succeeds));
  FUZZ_CHECK(error == (sent    ? Ravik::ERROR_NONE
                       : opens ? Ravik::ERROR_TRANSFER
                               : Ravik::ERROR_OPEN));
}

// Transfers that no request makes so far end as the port's calls do.
void CheckTransfers(const std::string& bytes) {
  constexpr std::size_t kReplySize = 512;
  const Ravik::PrinterVO printer("N", "QM-R410 Series");
  const Ravik::CommandVO command(bytes.data(), static_cast<int>(bytes.size()));
  const auto replies = fake_plugin::script().replies;
  auto error = Ravik::ERROR_COMMAND;
  const bool spooled = Ravik::CPrinterController::SendSpooler(printer, command, error);
  CheckTransfer(spooled, Succeed({"write", "flush"}), error);
  Ravik::CommandVO reply;
  error = Ravik::ERROR_COMMAND;
  const bool answered =
      Ravik::CPrinterController::SendCommand(printer, command, true, &reply, error);
  CheckTransfer(answered, Succeed({"control"}), error);
  std::string expected = replies.empty() ? "" : replies.front();
  expected.resize(answered ? kReplySize : 0);
  FUZZ_CHECK(std::string(reply.bytes().begin(), reply.bytes().end()) == expected);
  fake_plugin::script().replies = replies;
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
  static const auto stored = (StorePrinters(), fake_plugin::StoredList());
  FuzzedDataProvider input(data, size);
  const std::string line = input.ConsumeRandomLengthString(4096);
  ScriptPort(input);
  CheckEncoding(line);
  CheckReading(URLDecoder::decode(line));
  CheckTransfers(line);
  Completes([&] { Ask(line); });
  FUZZ_CHECK(fake_plugin::LiveObjects() == 0);
  fake_plugin::TakeCalls();
  // A search replaces what is stored, also one that fails before it asks the plug-in.
  const auto left = fake_plugin::StoredList();
  if (!left || !CFEqual(left.get(), stored.get())) StorePrinters();
  return 0;
}
