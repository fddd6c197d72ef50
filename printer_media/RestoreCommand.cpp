// The command `restore`.
#include <algorithm>
#include <iostream>
#include <iterator>
#include <set>

#include "printer_media/Catalogue.h"
#include "printer_media/Changes.h"
#include "printer_media/Commands.h"
#include "printer_media/Record.h"
#include "printer_media/SavedRecords.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

enum class Result { kUnchanged, kWritten, kFailed, kInterrupted, kNotTried };

const char* ResultText(Result result) {
  switch (result) {
    case Result::kUnchanged:
      return "unchanged";
    case Result::kWritten:
      return "written";
    case Result::kFailed:
      return "failed";
    case Result::kInterrupted:
      return "interrupted";
    default:
      return "not tried";
  }
}

struct Outcome {
  int number;
  std::string name;
  Result result;
  std::string why;
};

std::vector<std::string> CommonSettings(const Family& one, const Family& other) {
  std::set<std::string> known;
  for (const std::string& name : SettingNames(LayoutOf(one, 0))) known.insert(name);
  std::vector<std::string> common;
  for (const std::string& name : SettingNames(LayoutOf(other, 0))) {
    if (known.count(name) != 0) common.push_back(name);
  }
  return common;
}

void RequireSameFamily(const std::string& path, const SavedRecords& saved, const Printer& printer) {
  if (saved.family == printer.family) return;
  throw Failure(Exit::kFile,
                path + " holds records of a " + saved.device +
                    ", which have another form than those of " + Quoted(printer.name) + ", a " +
                    printer.device,
                "It can be restored to " + std::string(saved.family->models) +
                    ". What both have can be set by hand with printer-media set: " +
                    Listed(CommonSettings(*saved.family, *printer.family)) + ".");
}

// The block is written before the settings that it may hold as well.
std::vector<int> WritingOrder(const Record& record) {
  std::vector<int> layouts;
  for (const auto& [layout, settings] : record) layouts.push_back(layout);
  std::reverse(layouts.begin(), layouts.end());
  return layouts;
}

Settings Sendable(const Layout& layout, const Settings& settings) {
  Settings sendable;
  for (const auto& [name, value] : settings) {
    if (IsSendable(*FindParameter(layout, name), value)) sendable[name] = value;
  }
  return sendable;
}

// Puts records of a file into a printer, one after another.
class Restoration {
 public:
  Restoration(Host& host, const Printer& printer, const SavedRecords& saved)
      : host_(host), printer_(printer), saved_(saved) {}

  // Reads what is there, so that nothing has been written when that fails.
  void Compare() {
    Progress progress("comparing");
    for (const auto& [number, record] : saved_.records) {
      progress.Show(static_cast<int>(outcomes_.size()), Count());
      const Record current = Current(number, record);
      const bool is_same = DifferencesText(current, record).empty() && !IsChange(current, record);
      const std::string old_name = NameOf(current);
      const std::string given = NameOf(record);
      const std::string name = given.empty() ? old_name : given;  // an empty one is not written
      outcomes_.push_back({number, name, is_same ? Result::kUnchanged : Result::kNotTried, ""});
      if (!is_same) questions_.push_back({std::to_string(number), old_name, name});
    }
  }

  bool IsNothingToDo() const { return questions_.empty(); }

  // What is to be overwritten.
  std::string Question(const std::string& path) const {
    std::vector<TableRow> rows{{"  RECORD", "IS", "BECOMES"}};
    for (const TableRow& row : questions_) rows.push_back({"  " + row[0], row[1], row[2]});
    std::string text = "Overwrite these records of " + Quoted(printer_.name) + " with those of " +
                       path + "?\n" + Table(rows);
    text.pop_back();
    return text;
  }

  // Goes on behind a record that the printer does not take, as long as the printer answers.
  void Write() {
    Progress progress("writing");
    int done = 0;
    for (Outcome& outcome : outcomes_) {
      progress.Show(done++, Count());
      if (outcome.result == Result::kUnchanged) continue;
      if (!Write(outcome)) return;
    }
  }

  const std::vector<Outcome>& outcomes() const { return outcomes_; }

  // Of the command, unless all is as the file has it.
  Exit status() const { return status_; }

 private:
  int Count() const { return static_cast<int>(saved_.records.size()); }

  Record Current(int number, const Record& record) {
    Record current;
    for (const auto& [layout, settings] : record) {
      current[layout] = host_.Read(printer_, number, layout);
    }
    return current;
  }

  // Whether writing the record would change something, or something that printers do not report.
  bool IsChange(const Record& current, const Record& record) const {
    return std::any_of(record.begin(), record.end(), [&](const auto& entry) {
      const Layout& layout = LayoutOf(*printer_.family, entry.first);
      return !Changes(layout, current.at(entry.first), Sendable(layout, entry.second)).IsNone();
    });
  }

  // What the printer has otherwise than the record, in words.
  std::string DifferencesText(const Record& current, const Record& record) const {
    std::set<std::string> texts;
    for (const auto& [version, settings] : record) {
      const Layout& layout = LayoutOf(*printer_.family, version);
      const auto differences = Differences(layout, current.at(version), settings);
      texts.insert(differences.begin(), differences.end());
    }
    return Listed({texts.begin(), texts.end()});
  }

  // Tells in is_begun when the printer may hold a part of the record.
  void WriteLayouts(int number, const Record& record, bool& is_begun) {
    for (const int version : WritingOrder(record)) {
      const Layout& layout = LayoutOf(*printer_.family, version);
      const Settings current = host_.Read(printer_, number, version);
      const Settings wanted = Sendable(layout, record.at(version));
      if (Changes(layout, current, wanted).IsNone()) continue;
      is_begun = true;
      WriteRecord(host_, printer_, number, layout, current, wanted);
    }
  }

  // False when there is no point in going on.
  bool Write(Outcome& outcome) {
    const Record& record = saved_.records.at(outcome.number);
    bool is_begun = false;
    outcome.result = Result::kFailed;
    try {
      WriteLayouts(outcome.number, record, is_begun);
      outcome.why = DifferencesText(Current(outcome.number, record), record);
      if (outcome.why.empty()) outcome.result = Result::kWritten;
      return true;
    } catch (const Failure& failure) {
      outcome.why = failure.message();
      status_ = failure.status();
      return status_ == Exit::kRefused && IsAnswering(outcome.number);
    } catch (Interrupted& interruption) {
      outcome.result = is_begun ? Result::kInterrupted : Result::kNotTried;
      if (is_begun) interruption.half_written = RecordTitle(printer_, outcome.number, outcome.name);
      throw;
    }
  }

  bool IsAnswering(int number) {
    try {
      host_.Read(printer_, number, 0);
      return true;
    } catch (const Failure&) {
      return false;
    }
  }

  Host& host_;
  const Printer& printer_;
  const SavedRecords& saved_;
  std::vector<Outcome> outcomes_;
  std::vector<TableRow> questions_;
  Exit status_ = Exit::kRefused;
};

void PrintOutcomes(const std::vector<Outcome>& outcomes, bool is_json) {
  if (is_json) {
    auto json = nlohmann::ordered_json::array();
    for (const Outcome& outcome : outcomes) {
      nlohmann::ordered_json row{{"record", outcome.number}};
      row["name"] = TextToJson(outcome.name);
      row["result"] = ResultText(outcome.result);
      if (!outcome.why.empty()) row["message"] = Printable(outcome.why);
      json.push_back(row);
    }
    std::cout << json.dump(2) << '\n';
    return;
  }
  std::vector<TableRow> rows{{"RECORD", "NAME", "RESULT"}};
  for (const Outcome& outcome : outcomes) {
    const std::string why = outcome.why.empty() ? "" : ": " + outcome.why;
    rows.push_back(
        {std::to_string(outcome.number), outcome.name, ResultText(outcome.result) + why});
  }
  std::cout << Table(rows);
}

Exit Finish(const Restoration& restoration, const Options& options) {
  const std::vector<Outcome>& outcomes = restoration.outcomes();
  PrintOutcomes(outcomes, options.is_json);
  const bool is_done = std::all_of(outcomes.begin(), outcomes.end(), [](const Outcome& outcome) {
    return outcome.result == Result::kUnchanged || outcome.result == Result::kWritten;
  });
  if (is_done) return Exit::kDone;
  std::cerr << "printer-media: not all records are restored, and one that failed may be written in "
               "part; restore again when the reason is mended\n";
  return restoration.status();
}

}  // namespace

Exit RestoreRecords(Host& host, const Options& options) {
  const SavedRecords saved = ReadRecords(options.file);
  const Printer& printer = host.Find(options.printer);
  RequireSameFamily(options.file, saved, printer);
  RequireConsent(options.is_agreed);
  Restoration restoration(host, printer, saved);
  restoration.Compare();
  if (!restoration.IsNothingToDo()) {
    Confirm(restoration.Question(options.file), options.is_agreed);
    try {
      restoration.Write();
    } catch (const Interrupted&) {
      PrintOutcomes(restoration.outcomes(), options.is_json);
      throw;
    }
  }
  return Finish(restoration, options);
}

}  // namespace PrinterMedia
