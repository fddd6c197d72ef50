// The command `compare`.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>
#include <tuple>

#include "printer_media/Catalogue.h"
#include "printer_media/Commands.h"
#include "printer_media/SavedRecords.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

using nlohmann::ordered_json;

struct Difference {
  int record;
  int layout;
  std::string setting;
  Value first;
  Value second;
};

struct Comparison {
  std::vector<int> only_first;
  std::vector<int> only_second;
  std::vector<Difference> differences;

  bool IsSame() const { return only_first.empty() && only_second.empty() && differences.empty(); }
};

bool EndsIn(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// A name without a sign of a file is a printer's, unless there is no such printer but such a file.
bool IsFile(Host& host, const std::string& name) {
  if (name.find('/') != std::string::npos || EndsIn(name, ".json")) return true;
  std::error_code failure;
  if (!std::filesystem::is_regular_file(name, failure)) return false;
  const std::vector<Printer>& printers = host.Printers();
  return std::none_of(printers.begin(), printers.end(),
                      [&](const Printer& printer) { return SameButCase(printer.name, name); });
}

SavedRecords Load(Host& host, const std::string& name) {
  return IsFile(host, name) ? ReadRecords(name) : LoadRecords(host, host.Find(name));
}

// Printers of different families share settings of layout 0 alone: their blocks differ in form.
bool IsComparable(int layout, const SavedRecords& first, const SavedRecords& second) {
  return layout == 0 || first.family == second.family;
}

void CompareSettings(int number, int layout, const Settings& first, const Settings& second,
                     Comparison& comparison) {
  for (const auto& [name, value] : first) {
    const auto other = second.find(name);
    if (other == second.end() || other->second == value) continue;
    comparison.differences.push_back({number, layout, name, value, other->second});
  }
}

Comparison Compare(const SavedRecords& first, const SavedRecords& second) {
  Comparison comparison;
  for (const auto& [number, record] : second.records) {
    if (first.records.count(number) == 0) comparison.only_second.push_back(number);
  }
  for (const auto& [number, record] : first.records) {
    const auto other = second.records.find(number);
    if (other == second.records.end()) {
      comparison.only_first.push_back(number);
      continue;
    }
    for (const auto& [layout, settings] : record) {
      const auto other_layout = other->second.find(layout);
      if (other_layout == other->second.end() || !IsComparable(layout, first, second)) continue;
      CompareSettings(number, layout, settings, other_layout->second, comparison);
    }
  }
  return comparison;
}

ordered_json Json(const Comparison& comparison) {
  ordered_json json{{"same", comparison.IsSame()}};
  json["only_first"] = comparison.only_first;
  json["only_second"] = comparison.only_second;
  json["differences"] = ordered_json::array();
  for (const Difference& difference : comparison.differences) {
    json["differences"].push_back({{"record", difference.record},
                                   {"layout", difference.layout},
                                   {"setting", difference.setting},
                                   {"first", ValueToJson(difference.first)},
                                   {"second", ValueToJson(difference.second)}});
  }
  return json;
}

// Settings that several layouts hold are shown once.
std::string Text(const Comparison& comparison, const Options& options) {
  std::set<std::tuple<int, std::string, Value, Value>> shown;
  std::vector<TableRow> rows{{"RECORD", "SETTING", options.first, options.second}};
  for (const int number : comparison.only_first) {
    rows.push_back({std::to_string(number), "(the record)", "registered", "not registered"});
  }
  for (const int number : comparison.only_second) {
    rows.push_back({std::to_string(number), "(the record)", "not registered", "registered"});
  }
  for (const Difference& row : comparison.differences) {
    if (!shown.insert({row.record, row.setting, row.first, row.second}).second) continue;
    rows.push_back(
        {std::to_string(row.record), row.setting, ShortText(row.first), ShortText(row.second)});
  }
  return Table(rows);
}

}  // namespace

Exit CompareRecords(Host& host, const Options& options) {
  const SavedRecords first = Load(host, options.first);
  const SavedRecords second = Load(host, options.second);
  if (first.family != second.family) {
    std::cerr << "The records of a " << first.device << " and a " << second.device
              << " have different forms; compared is what both have.\n";
  }
  const Comparison comparison = Compare(first, second);
  if (options.is_json) {
    std::cout << Json(comparison).dump(2) << '\n';
  } else if (comparison.IsSame()) {
    std::cout << "the same: " << Counted(first.records.size(), "record") << '\n';
  } else {
    std::cout << Text(comparison, options);
  }
  return comparison.IsSame() ? Exit::kDone : Exit::kDiffers;
}

}  // namespace PrinterMedia
