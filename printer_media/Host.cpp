#include "printer_media/Host.h"

#include <algorithm>
#include <utility>

#include "printer_media/Catalogue.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

using nlohmann::json;
using std::chrono::milliseconds;

// The bounds of docs/protocol.md, with what a local device may take where that is more, and five
// seconds for the worker's own work and other writers of the list.
constexpr milliseconds kOwnWork(5000);
constexpr milliseconds kLongestSearch(60000);
constexpr int kExchange = 10;  // answer times, of a device that stalls in every step
constexpr int kOpening = 1;
constexpr int kReadings = 100;  // back, against a printer that answers with something else

milliseconds ListLimit() {
  return kLongestSearch + kOwnWork;
}

milliseconds ReadLimit(milliseconds answer_time) {
  return (kOpening + kExchange) * answer_time + kOwnWork;
}

milliseconds WriteLimit(milliseconds answer_time) {
  const milliseconds reading = milliseconds(30) + (kOpening + kExchange) * answer_time;
  return (kOpening + 2 * kExchange) * answer_time + kReadings * reading + kOwnWork;
}

std::vector<std::string> PrinterNames(const std::vector<Printer>& printers) {
  std::vector<std::string> names;
  names.reserve(printers.size());
  for (const Printer& printer : printers) names.push_back(printer.name);
  return names;
}

// A reply that stands for one thing or several.
json AsArray(const json& reply) {
  if (reply.is_null()) return json::array();
  return reply.is_array() ? reply : json::array({reply});
}

[[noreturn]] void ThrowOdd(const std::string& what) {
  throw Failure(Exit::kWorker, what + ": the worker's answer lacks something",
                "Are the worker and printer-media of the same version?");
}

std::string TextOf(const json& object, const char* key, const std::string& what) {
  if (!object.is_object() || !object.contains(key) || !object[key].is_string()) ThrowOdd(what);
  return Narrowed(object[key].get<std::string>());
}

int NumberOf(const json& object, const char* key, const std::string& what) {
  if (!object.is_object() || !object.contains(key) || !object[key].is_number()) ThrowOdd(what);
  return object[key].get<int>();
}

std::string RecordOf(const Printer& printer, int number) {
  return "record " + std::to_string(number) + " of " + Quoted(printer.name);
}

// Takes the head out of the reply; false when it is not that of the record.
bool TakeHead(json& reply, const Family& family, int number, int layout) {
  const json head{
      {"DeviceID", family.device_code}, {"CustomMediaNo", number}, {"CommandVersion", layout}};
  return std::all_of(head.items().begin(), head.items().end(), [&](const auto& item) {
    const json value = reply.value(item.key(), json());
    reply.erase(item.key());
    return value == item.value();
  });
}

}  // namespace

Answer Host::Ask(json request, const Printer* printer, milliseconds limit) {
  if (!worker_) worker_ = std::make_unique<Worker>(WorkerPath());
  if (printer != nullptr) {
    request["PrinterName"] = Widened(printer->name);
    request["DeviceName"] = Widened(printer->device);
  }
  Answer answer = worker_->Ask(request, limit);
  if (answer.is_syntax_error) {
    throw Failure(Exit::kWorker, "the worker did not understand a request",
                  "Are the worker and printer-media of the same version?");
  }
  return answer;
}

const std::vector<Printer>& Host::Printers() {
  if (printers_) return *printers_;
  const std::string what = "the list of printers was not read";
  const Answer answer = Ask({{"Command", "GetPrinterList"}}, nullptr, ListLimit());
  if (answer.code != 0) throw CodeFailure(answer.code, Operation::kList, what);
  std::vector<Printer> printers;
  for (const json& entry : AsArray(answer.reply)) {
    const std::string device = TextOf(entry, "DeviceName", what);
    printers.push_back({TextOf(entry, "PrinterName", what), device, FindFamily(device)});
  }
  printers_ = std::move(printers);
  return *printers_;
}

const Printer& Host::Find(const std::string& name) {
  const std::vector<Printer>& printers = Printers();
  const std::vector<std::string> names = PrinterNames(printers);
  const std::vector<std::string> matches = Matches(name, names);
  if (matches.size() > 1) {
    throw Failure(Exit::kUsage, Quoted(name) + " may be " + Listed(matches, "or"));
  }
  const auto found = std::find_if(printers.begin(), printers.end(), [&](const Printer& printer) {
    return !matches.empty() && printer.name == matches[0];
  });
  if (found == printers.end()) {
    throw Failure(Exit::kRefused, "no printer is called " + Quoted(name) + DidYouMean(name, names),
                  names.empty() ? "No printers are listed: printer-media doctor says why."
                                : "Listed are " + Listed(names) +
                                      ". printer-media doctor says why others are not.");
  }
  if (found->family == nullptr) {
    throw Failure(Exit::kRefused,
                  Quoted(found->name) + " is listed as \"" + found->device +
                      "\", which is no model that the worker knows" +
                      DidYouMean(found->device, DeviceNames()),
                  "Its InfoPrinterName in the printer list is to be a device name of "
                  "docs/parameters.md, letter for letter.");
  }
  return *found;
}

json Host::Status(const Printer& printer) {
  const json figures{"StatusCode", "ErrorCode", "WarningCode", "SerialNumber"};
  const Answer answer = Ask({{"Command", "GetStatusReply"}, {"Parameter", figures}}, &printer,
                            ReadLimit(answer_time_));
  if (answer.code != 0) {
    throw CodeFailure(answer.code, Operation::kRead,
                      "the status of " + Quoted(printer.name) + " was not read");
  }
  return answer.reply.is_object() ? answer.reply : json::object();
}

std::string Host::Firmware(const Printer& printer) {
  const std::string what = "the firmware version of " + Quoted(printer.name) + " was not read";
  const Answer answer = Ask({{"Command", "GetFWVersion"}}, &printer, ReadLimit(answer_time_));
  if (answer.code != 0) throw CodeFailure(answer.code, Operation::kRead, what);
  return TextOf(answer.reply, "FirmwareVersion", what);
}

std::vector<RecordName> Host::Names(const Printer& printer, const Step& step) {
  const std::string what = "the names of the records of " + Quoted(printer.name) + " were not read";
  std::vector<RecordName> records;
  for (int next = 1; next <= kLastRecord;) {
    const json parameter{{"CustomMediaNo", next}};
    const Answer answer = Ask({{"Command", "GetCustomMediaName"}, {"Parameter", parameter}},
                              &printer, ReadLimit(answer_time_));
    if (answer.code != 0) throw CodeFailure(answer.code, Operation::kRead, what);
    const int first = next;
    for (const json& entry : AsArray(answer.reply)) {
      if (next > kLastRecord || NumberOf(entry, "CustomMediaNo", what) != next) break;
      records.push_back({next, TextOf(entry, "CustomMediaName", what),
                         NumberOf(entry, "RegistrationFlag", what) != 0});
      ++next;
    }
    if (step) step(next - 1);
    // Behind its last record a printer answers with numbers 0.
    if (next < first + 3) break;
  }
  if (records.empty()) {
    throw Failure(Exit::kRefused, what + ": the printer refused",
                  "Is it of the model that printer-media list shows for it?");
  }
  return records;
}

Settings Host::Read(const Printer& printer, int number, int layout) {
  const std::string record = RecordOf(printer, number);
  const std::string what = record + " was not read in layout " + std::to_string(layout);
  const json parameter{{"CustomMediaNo", number}, {"CommandVersion", layout}};
  Answer answer = Ask({{"Command", "GetCustomMediaInfo"}, {"Parameter", parameter}}, &printer,
                      ReadLimit(answer_time_));
  if (answer.code != 0) throw CodeFailure(answer.code, Operation::kRead, what);
  if (!answer.reply.is_object() || !TakeHead(answer.reply, *printer.family, number, layout)) {
    throw Failure(Exit::kRefused, what + ": the printer refused", kReadRefused);
  }
  Settings settings;
  for (const auto& [name, value] : answer.reply.items()) {
    const std::optional<Value> read = ValueFromWire(value);
    if (read) settings[name] = *read;
  }
  return settings;
}

void Host::Write(const Printer& printer, int number, int layout, const Settings& settings) {
  json parameter{{"CustomMediaNo", number}, {"CommandVersion", layout}};
  for (const auto& [name, value] : settings) parameter[name] = ValueToWire(value);
  Change({{"Command", "SetCustomMediaInfo"}, {"Parameter", parameter}}, printer,
         RecordOf(printer, number), WriteLimit(answer_time_));
}

void Host::Initialise(const Printer& printer, std::optional<int> number) {
  const json record = number ? json(*number) : json("All");
  const std::string what =
      number ? RecordOf(printer, *number) : "the records of " + Quoted(printer.name);
  Change({{"Command", "SetMediaInitialize"}, {"Parameter", {{"InitializeCustomMedia", record}}}},
         printer, what, WriteLimit(answer_time_));
}

void Host::Change(json request, const Printer& printer, const std::string& what,
                  milliseconds limit) {
  try {
    const Answer answer = Ask(std::move(request), &printer, limit);
    if (answer.code == 0) return;
    throw CodeFailure(answer.code, Operation::kWrite, "changing " + what);
  } catch (Interrupted& interruption) {
    interruption.half_written = what;
    throw;
  }
}

}  // namespace PrinterMedia
