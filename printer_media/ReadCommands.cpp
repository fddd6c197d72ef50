// The commands that change nothing.
#include <algorithm>
#include <iostream>

#include "printer_media/Catalogue.h"
#include "printer_media/Commands.h"
#include "printer_media/Record.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Terminal.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

using nlohmann::ordered_json;

constexpr int kReady = 4;
constexpr int kError = 0;

std::vector<std::string> LayoutVersions(const Family& family) {
  std::vector<std::string> versions;
  for (const Layout& layout : family.layouts) versions.push_back(std::to_string(layout.version));
  return versions;
}

ordered_json PrinterJson(const Printer& printer) {
  ordered_json json;
  json["name"] = TextToJson(printer.name);
  json["device"] = TextToJson(printer.device);
  json["models"] = nullptr;
  json["layouts"] = ordered_json::array();
  json["firmware"] = false;
  if (printer.family == nullptr) return json;
  json["models"] = printer.family->models;
  for (const Layout& layout : printer.family->layouts) json["layouts"].push_back(layout.version);
  json["firmware"] = printer.family->tells_firmware;
  return json;
}

TableRow PrinterRow(const Printer& printer) {
  if (printer.family == nullptr) return {printer.name, printer.device, "not known", ""};
  return {printer.name, printer.device, Listed(LayoutVersions(*printer.family), "and"),
          printer.family->tells_firmware ? "yes" : "no"};
}

std::string StateText(const nlohmann::json& status) {
  if (!status.contains("StatusCode")) return "not reported";
  const auto code = status["StatusCode"].get<int>();
  if (code == kReady) return "ready";
  if (code == kError) return "error";
  return "busy or in another state (" + std::to_string(code) + ")";
}

std::string FigureText(const nlohmann::json& status, const char* name) {
  if (!status.contains(name)) return "not reported";
  const nlohmann::json& figure = status[name];
  if (figure.is_string()) return Narrowed(figure.get<std::string>());
  if (!figure.is_array()) return figure.dump();
  std::vector<std::string> codes;
  for (const nlohmann::json& code : figure) codes.push_back(code.dump());
  return codes.empty() ? "none" : Listed(codes, "and");
}

ordered_json StatusJson(const nlohmann::json& status) {
  ordered_json json;
  if (status.contains("StatusCode")) json["ready"] = status["StatusCode"] == kReady;
  for (const auto& [name, figure] : status.items()) {
    json[name] = figure.is_string() ? TextToJson(Narrowed(figure.get<std::string>())) : figure;
  }
  return json;
}

void PrintNames(const std::vector<RecordName>& records) {
  std::vector<TableRow> rows{{"RECORD", "NAME"}};
  for (const RecordName& record : records) {
    if (record.is_registered) rows.push_back({std::to_string(record.number), record.name});
  }
  const std::size_t registered = rows.size() - 1;
  if (registered > 0) std::cout << Table(rows);
  std::cerr << registered << " of " << records.size() << " records are registered\n";
}

}  // namespace

Exit ListPrinters(Host& host, const Options& options) {
  const std::vector<Printer>& printers = host.Printers();
  if (options.is_json) {
    ordered_json json = ordered_json::array();
    for (const Printer& printer : printers) json.push_back(PrinterJson(printer));
    std::cout << json.dump(2) << '\n';
    return Exit::kDone;
  }
  std::vector<TableRow> rows{{"PRINTER", "DEVICE NAME", "LAYOUTS", "FIRMWARE"}};
  for (const Printer& printer : printers) rows.push_back(PrinterRow(printer));
  if (!printers.empty()) std::cout << Table(rows);
  if (printers.empty()) std::cerr << "No printers are listed: printer-media doctor says why.\n";
  return Exit::kDone;
}

Exit ShowStatus(Host& host, const Options& options) {
  const nlohmann::json status = host.Status(host.Find(options.printer));
  if (options.is_json) {
    std::cout << StatusJson(status).dump(2) << '\n';
    return Exit::kDone;
  }
  std::cout << Table({{"state", StateText(status)},
                      {"error code", FigureText(status, "ErrorCode")},
                      {"warnings", FigureText(status, "WarningCode")},
                      {"serial number", FigureText(status, "SerialNumber")}});
  return Exit::kDone;
}

Exit ShowFirmware(Host& host, const Options& options) {
  const Printer& printer = host.Find(options.printer);
  if (!printer.family->tells_firmware) {
    throw Failure(Exit::kUsage,
                  "printers of the series " + std::string(printer.family->models) +
                      " do not tell their firmware version",
                  "Those that do are " + FirmwareModels() + ".");
  }
  const std::string version = host.Firmware(printer);
  if (options.is_json) {
    std::cout << ordered_json{{"firmware", TextToJson(version)}}.dump(2) << '\n';
  } else {
    std::cout << Printable(version) << '\n';
  }
  return Exit::kDone;
}

Exit ListNames(Host& host, const Options& options) {
  const Printer& printer = host.Find(options.printer);
  const std::vector<RecordName> records = ReadNames(host, printer);
  if (!options.is_json) {
    PrintNames(records);
    return Exit::kDone;
  }
  ordered_json json = ordered_json::array();
  for (const RecordName& record : records) {
    json.push_back({{"record", record.number},
                    {"name", TextToJson(record.name)},
                    {"registered", record.is_registered}});
  }
  std::cout << json.dump(2) << '\n';
  return Exit::kDone;
}

Exit GetRecord(Host& host, const Options& options) {
  const Printer& printer = host.Find(options.printer);
  const Layout& layout = LayoutOf(*printer.family, options.layout);
  const int number = RecordNumber(host, printer, options.record);
  const Settings settings = host.Read(printer, number, layout.version);
  if (options.is_json) {
    ordered_json json{{"record", number}, {"layout", layout.version}};
    for (const auto& [name, value] : settings) json["settings"][name] = ValueToJson(value);
    std::cout << json.dump(2) << '\n';
    return Exit::kDone;
  }
  std::vector<TableRow> rows{{"SETTING", "VALUE"}};
  for (const Parameter* parameter : SettingsOf(layout)) {
    const auto setting = settings.find(std::string(parameter->name));
    if (setting != settings.end()) {
      rows.push_back({std::string(parameter->name), ValueText(setting->second)});
    }
  }
  std::cout << Table(rows);
  return Exit::kDone;
}

}  // namespace PrinterMedia
