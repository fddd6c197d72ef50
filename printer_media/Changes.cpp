#include "printer_media/Changes.h"

#include "printer_media/Catalogue.h"
#include "printer_media/Record.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

constexpr int kNotConfirmed = -6;

// The failure of a write that the worker did not see confirmed, with what the printer holds where
// it tells that.
[[noreturn]] void ThrowNotKept(Host& host, const Printer& printer, int number, const Layout& layout,
                               const Settings& wanted, const Failure& failure) {
  std::vector<std::string> differences;
  try {
    const Settings now = host.Read(printer, number, layout.version);
    differences = Differences(layout, now, wanted);
  } catch (const Failure&) {
    throw failure;  // that the record cannot be read says less than that it was written
  } catch (Interrupted& interruption) {
    interruption.half_written = RecordTitle(printer, number, "");
    throw;
  }
  if (differences.empty()) throw failure;
  throw Failure::OfCode(kNotConfirmed,
                        "the printer took the write, but did not keep it: " + Listed(differences) +
                            " (result code -6)",
                        "It may not allow these values for this record or medium, or somebody else "
                        "wrote them too. What it did keep is changed: read the record to see.");
}

}  // namespace

Changes::Changes(const Layout& layout, const Settings& current, const Settings& wanted) {
  for (const Parameter& parameter : layout.parameters) {
    const auto setting = wanted.find(std::string(parameter.name));
    if (setting == wanted.end()) continue;
    const auto old = current.find(setting->first);
    if (old == current.end()) {
      rows_.push_back({setting->first, std::nullopt, setting->second});
    } else if (old->second != setting->second) {
      rows_.push_back({setting->first, old->second, setting->second});
    }
  }
}

std::string Changes::Text() const {
  std::vector<TableRow> rows{{"  SETTING", "IS", "BECOMES"}};
  for (const Row& row : rows_) {
    const std::string old = row.old_value ? ShortText(*row.old_value) : "not reported";
    rows.push_back({"  " + row.name, old, ShortText(row.new_value)});
  }
  std::string text = Table(rows);
  text.pop_back();
  return text;
}

nlohmann::ordered_json Changes::Json() const {
  auto changes = nlohmann::ordered_json::array();
  for (const Row& row : rows_) {
    nlohmann::ordered_json change{{"setting", row.name}};
    change["old"] = row.old_value ? ValueToJson(*row.old_value) : nlohmann::json();
    change["new"] = ValueToJson(row.new_value);
    changes.push_back(change);
  }
  return changes;
}

std::vector<std::string> Differences(const Layout& layout, const Settings& now,
                                     const Settings& wanted) {
  std::vector<std::string> differences;
  for (const auto& [name, value] : wanted) {
    const auto setting = now.find(name);
    if (setting == now.end() || setting->second == value) continue;
    const bool is_block = FindParameter(layout, name)->kind == Kind::kBlock;
    differences.push_back(is_block ? "the block differs"
                                   : name + " is " + OnOneLine(ValueText(setting->second)) +
                                         ", not " + OnOneLine(ValueText(value)));
  }
  return differences;
}

void WriteRecord(Host& host, const Printer& printer, int number, const Layout& layout,
                 const Settings& current, const Settings& wanted) {
  Settings sent = wanted;
  for (const Parameter* parameter : SettingsOf(layout)) {
    const auto setting = current.find(std::string(parameter->name));
    if (!parameter->stays && setting != current.end()) sent.emplace(*setting);
  }
  try {
    host.Write(printer, number, layout.version, sent);
  } catch (const Failure& failure) {
    if (failure.code() != kNotConfirmed) throw;
    ThrowNotKept(host, printer, number, layout, wanted, failure);
  }
}

}  // namespace PrinterMedia
