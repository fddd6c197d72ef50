// The commands that change records.
#include <iostream>
#include <utility>

#include "printer_media/Catalogue.h"
#include "printer_media/Changes.h"
#include "printer_media/Commands.h"
#include "printer_media/Record.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

using nlohmann::ordered_json;

Settings ParseAssignments(const Family& family, const Layout& layout, const Options& options) {
  const std::vector<std::string>& assignments = options.assignments;
  if (assignments.empty() && options.record.find('=') != std::string::npos) {
    throw Failure(Exit::kUsage,
                  "RECORD is required: " + Quoted(options.record) + " is in its place");
  }
  if (assignments.empty()) {
    throw Failure(Exit::kUsage, "nothing to set: give NAME=VALUE",
                  "The settings in layout " + std::to_string(layout.version) + " are\n" +
                      AllowedLines(layout));
  }
  Settings settings;
  for (const std::string& assignment : assignments) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
      throw Failure(Exit::kUsage, Quoted(assignment) + " is no NAME=VALUE",
                    "Name, equals sign and value are one word, as in MediaSuction=5; one with "
                    "blanks is put in quotation marks.");
    }
    const Parameter& parameter = ParameterOf(family, layout, assignment.substr(0, equals));
    const auto value = ParseValue(parameter, assignment.substr(equals + 1));
    if (!settings.emplace(parameter.name, value).second) {
      throw Failure(Exit::kUsage, std::string(parameter.name) + " is given twice");
    }
  }
  return settings;
}

void PrintSet(const Options& options, const Changes& changes, bool is_written,
              const std::string& title) {
  if (options.is_json) {
    std::cout << ordered_json{{"written", is_written}, {"changes", changes.Json()}}.dump(2) << '\n';
  } else if (is_written) {
    std::cout << "written, and read back: " << Printable(title) << '\n';
  } else {
    std::cout << "nothing to do: " << Printable(title) << " has these values\n";
  }
}

// Says what a write that was done does not show in the printer.
void PrintNotes(const Layout& layout, const Settings& given, const Settings& current) {
  for (const auto& [name, value] : given) {
    if (FindParameter(layout, name)->is_read) continue;
    std::cerr << name << " was sent, but printers of this model do not report it back\n";
  }
  const auto flag = current.find("RegistrationFlag");
  const bool is_free = flag != current.end() && flag->second == Value(0);
  if (is_free && given.count("RegistrationFlag") == 0) {
    std::cerr << "The record is not registered; RegistrationFlag=1 registers it.\n";
  }
}

std::string NameIn(const Settings& settings) {
  const auto name = settings.find("CustomMediaName");
  return name != settings.end() ? ValueText(name->second) : "";
}

// What a printer tells behind a reset that it took. Failure and Interrupted say that it did.
template <typename Call>
auto ReadBack(const std::string& what, const Call& call) {
  try {
    return call();
  } catch (const Failure& failure) {
    throw failure.Behind("the printer took the reset of " + what + ", and did not confirm it");
  } catch (Interrupted& interruption) {
    interruption.half_written = what;
    throw;
  }
}

// Answers the record's number.
int ResetRecord(Host& host, const Printer& printer, const Options& options) {
  const int number = RecordNumber(host, printer, options.record);
  const std::string title = RecordTitle(printer, number, NameIn(host.Read(printer, number, 0)));
  Confirm("Reset " + title + " to factory state?", options.is_agreed);
  host.Initialise(printer, number);
  const Settings now = ReadBack(title, [&] { return host.Read(printer, number, 0); });
  const auto flag = now.find("RegistrationFlag");
  if (flag != now.end() && flag->second != Value(0)) {
    throw Failure(Exit::kRefused, title + " is still registered: the printer did not reset it");
  }
  return number;
}

void ResetAll(Host& host, const Printer& printer, const Options& options) {
  const std::string title = "all records of " + Quoted(printer.name);
  Confirm("Reset " + title + " to factory state?", options.is_agreed);
  host.Initialise(printer, std::nullopt);
  std::vector<std::string> left;
  for (const RecordName& record : ReadBack(title, [&] { return ReadNames(host, printer); })) {
    if (record.is_registered) left.push_back(std::to_string(record.number));
  }
  if (left.empty()) return;
  throw Failure(Exit::kRefused,
                "still registered: record " + Listed(left) + " of " + Quoted(printer.name),
                "The printer may take some time: see printer-media names.");
}

}  // namespace

Exit SetRecord(Host& host, const Options& options) {
  const Printer& printer = host.Find(options.printer);
  const Layout& layout = LayoutOf(*printer.family, options.layout);
  const Settings given = ParseAssignments(*printer.family, layout, options);
  RequireConsent(options.is_agreed);
  const int number = RecordNumber(host, printer, options.record);
  const Settings current = host.Read(printer, number, layout.version);
  const std::string title = RecordTitle(printer, number, NameIn(current));
  const Changes changes(layout, current, given);
  if (changes.IsNone()) {
    PrintSet(options, changes, false, title);
    return Exit::kDone;
  }
  Confirm("Change " + title + "?\n" + changes.Text(), options.is_agreed);
  WriteRecord(host, printer, number, layout, current, given);
  PrintSet(options, changes, true, title);
  PrintNotes(layout, given, current);
  return Exit::kDone;
}

Exit InitialiseRecords(Host& host, const Options& options) {
  RequireConsent(options.is_agreed);
  const Printer& printer = host.Find(options.printer);
  const bool is_all = SameButCase(options.record, "All");
  ordered_json initialised = "All";
  if (is_all) {
    ResetAll(host, printer, options);
  } else {
    initialised = ResetRecord(host, printer, options);
  }
  if (options.is_json) {
    std::cout << ordered_json{{"initialised", initialised}}.dump(2) << '\n';
  } else {
    std::cout << (is_all ? "all records are" : "the record is") << " in factory state\n";
  }
  return Exit::kDone;
}

}  // namespace PrinterMedia
