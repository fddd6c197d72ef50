#include "printer_media/Record.h"

#include <algorithm>

#include "printer_media/Suggestion.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

bool IsNumber(const std::string& text) {
  constexpr std::size_t kMostDigits = 6;
  return !text.empty() && text.size() <= kMostDigits &&
         text.find_first_not_of("0123456789") == std::string::npos;
}

int CheckedNumber(const std::string& text) {
  const int number = std::stoi(text);
  if (number >= 1 && number <= kLastRecord) return number;
  throw Failure(Exit::kUsage, "there is no record " + text,
                "Records are numbered from 1 to " + std::to_string(kLastRecord) +
                    "; printer-media names shows which of them a printer has.");
}

}  // namespace

std::vector<RecordName> ReadNames(Host& host, const Printer& printer) {
  Progress progress("reading names");
  return host.Names(printer, [&](int last) { progress.Show(last, kLastRecord); });
}

int RecordNumber(Host& host, const Printer& printer, const std::string& text) {
  if (IsNumber(text)) return CheckedNumber(text);
  std::vector<RecordName> records = ReadNames(host, printer);
  records.erase(std::remove_if(records.begin(), records.end(),
                               [](const RecordName& record) { return !record.is_registered; }),
                records.end());
  std::vector<std::string> names;
  names.reserve(records.size());
  for (const RecordName& record : records) names.push_back(record.name);
  const std::vector<std::string> matches = Matches(text, names);
  std::vector<std::string> numbers;
  for (const RecordName& record : records) {
    const bool is_meant = std::find(matches.begin(), matches.end(), record.name) != matches.end();
    if (is_meant) numbers.push_back(std::to_string(record.number));
  }
  if (numbers.size() == 1) return std::stoi(numbers[0]);
  if (numbers.size() > 1) {
    throw Failure(Exit::kUsage, Quoted(text) + " is the name of records " + Listed(numbers),
                  "Give the number.");
  }
  throw Failure(Exit::kUsage,
                "no registered record of " + Quoted(printer.name) + " is called " + Quoted(text) +
                    DidYouMean(text, names),
                "printer-media names shows them; a record that is not registered is told by its "
                "number.");
}

std::string RecordTitle(const Printer& printer, int number, const std::string& name) {
  const std::string title = name.empty() ? "" : " " + Quoted(name);
  return "record " + std::to_string(number) + title + " of " + Quoted(printer.name);
}

}  // namespace PrinterMedia
