#include "printer_media/SavedRecords.h"

#include <ctime>
#include <iostream>
#include <nlohmann/json.hpp>

#include "printer_media/Catalogue.h"
#include "printer_media/File.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr char kFormat[] = "printer-media records";
constexpr int kVersion = 1;

// Reads the records of a file, and remembers where in it.
class Reader {
 public:
  explicit Reader(std::string place) : place_(std::move(place)) {}

  SavedRecords Read(const json& file) const {
    if (!file.is_object() || file.value("format", json()) != kFormat) {
      Fail("this is no file of saved records");
    }
    if (file.value("version", json()) != kVersion) {
      Fail("the file is of version " + file.value("version", json()).dump() +
           ", and this program reads version 1");
    }
    SavedRecords saved;
    saved.printer = Text(file, "printer");
    saved.device = Text(file, "device");
    saved.family = FindFamily(saved.device);
    if (saved.family == nullptr) Fail("no printer is a \"" + saved.device + '"');
    const json records = file.value("records", json());
    if (!records.is_array()) Fail("there is no list of records");
    for (const json& record : records) ReadRecord(record, saved);
    return saved;
  }

 private:
  [[noreturn]] void Fail(const std::string& why, const std::string& advice = "") const {
    throw Failure(Exit::kFile, place_ + ": " + why, advice);
  }

  Reader At(const std::string& part) const { return Reader(place_ + ", " + part); }

  std::string Text(const json& object, const char* key) const {
    const std::optional<Value> text = ValueFromJson(object.value(key, json()));
    if (!text || !std::holds_alternative<std::string>(*text)) {
      Fail(std::string("there is no text \"") + key + '"');
    }
    return std::get<std::string>(*text);
  }

  void ReadRecord(const json& object, SavedRecords& saved) const {
    const json number = object.is_object() ? object.value("record", json()) : json();
    const std::optional<Value> value = ValueFromJson(number);
    if (!value || !std::holds_alternative<int>(*value)) Fail("a record has no number");
    const int record = std::get<int>(*value);
    const Reader reader = At("record " + std::to_string(record));
    if (record < 1 || record > kLastRecord) reader.Fail("there is no such record");
    if (saved.records.count(record) != 0) reader.Fail("the record is there twice");
    saved.records[record] = reader.ReadLayouts(object.value("layouts", json()), *saved.family);
  }

  Record ReadLayouts(const json& object, const Family& family) const {
    if (!object.is_object()) Fail("there are no layouts");
    Record record;
    for (const auto& [version, settings] : object.items()) {
      const Reader reader = At("layout " + version);
      const Layout* found = nullptr;
      for (const Layout& layout : family.layouts) {
        if (std::to_string(layout.version) == version) found = &layout;
      }
      if (found == nullptr) {
        reader.Fail("records of " + std::string(family.models) + " have no such layout");
      }
      if (!settings.is_object()) reader.Fail("there are no settings");
      record[found->version] = reader.ReadSettings(settings, *found);
    }
    return record;
  }

  Settings ReadSettings(const json& object, const Layout& layout) const {
    Settings settings;
    for (const auto& [name, json_value] : object.items()) {
      const Parameter* const parameter = FindParameter(layout, name);
      if (parameter == nullptr || parameter->kind == Kind::kHead) {
        Fail("there is no setting \"" + name + '"' + DidYouMean(name, SettingNames(layout)),
             "The settings are\n" + AllowedLines(layout));
      }
      const std::optional<Value> value = ValueFromJson(json_value);
      if (!value || !IsPossible(*parameter, *value)) {
        Fail(name + " cannot be " + json_value.dump(), name + " is " + Allowed(*parameter) + ".");
      }
      settings[name] = *value;
    }
    return settings;
  }

  std::string place_;
};

std::string Now() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

// The JSON of a file, which is not deeper than files of saved records are. Throws Failure.
json Parse(const std::string& path, const std::string& text) {
  constexpr int kDeepest = 8;
  const auto check = [&](int depth, json::parse_event_t, const json&) {
    if (depth > kDeepest) throw Failure(Exit::kFile, path + ": this is no file of saved records");
    return true;
  };
  try {
    return json::parse(text, check);
  } catch (const json::parse_error& error) {
    // "[...] parse error at line 1, column 2: ..."
    const std::string what = error.what();
    const std::size_t begin = what.find("line ");
    const std::string place = what.substr(begin, what.find(':', begin) - begin);
    throw Failure(Exit::kFile, path + ": this is no JSON: " + place + " cannot be read");
  }
}

// Reads one layout; nothing when the printer refuses one that is not the usual.
std::optional<Settings> LoadLayout(Host& host, const Printer& printer, int number, int layout,
                                   Progress& progress) {
  try {
    return host.Read(printer, number, layout);
  } catch (const Failure& failure) {
    if (layout == 0 || !failure.IsRefusal()) throw;
    progress.Hide();
    std::cerr << "left out: " << Printable(failure.message()) << '\n';
    return std::nullopt;
  }
}

}  // namespace

std::string NameOf(const Record& record) {
  for (const auto& [layout, settings] : record) {
    const auto name = settings.find("CustomMediaName");
    if (name != settings.end()) return ValueText(name->second);
  }
  return "";
}

SavedRecords LoadRecords(Host& host, const Printer& printer) {
  Progress progress("reading " + printer.name);
  const std::vector<RecordName> names =
      host.Names(printer, [&](int last) { progress.Show(last, kLastRecord); });
  SavedRecords saved{printer.name, printer.device, printer.family, {}};
  int done = 0;
  for (const RecordName& name : names) {
    progress.Show(++done, static_cast<int>(names.size()));
    if (!name.is_registered) continue;
    for (const Layout& layout : printer.family->layouts) {
      const std::optional<Settings> settings =
          LoadLayout(host, printer, name.number, layout.version, progress);
      if (settings) saved.records[name.number][layout.version] = *settings;
    }
  }
  return saved;
}

std::string FormatRecords(const SavedRecords& saved) {
  ordered_json file{{"format", kFormat}, {"version", kVersion}};
  file["printer"] = TextToJson(saved.printer);
  file["device"] = TextToJson(saved.device);
  file["saved"] = Now();
  file["records"] = ordered_json::array();
  for (const auto& [number, record] : saved.records) {
    ordered_json object{{"record", number}};
    for (const auto& [version, settings] : record) {
      ordered_json& layout = object["layouts"][std::to_string(version)];
      for (const auto& [name, value] : settings) layout[name] = ValueToJson(value);
    }
    file["records"].push_back(object);
  }
  return file.dump(2) + '\n';
}

SavedRecords ReadRecords(const std::string& path) {
  return Reader(path).Read(Parse(path, ReadFile(path)));
}

}  // namespace PrinterMedia
