#include "PrinterWorker.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace {

using picojson::object;
using picojson::value;

std::string UpperHex(const std::string& bytes, const char* prefix) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    text += prefix;
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

// It comes back in the answer unescaped.
void CheckCommand(const std::string& command) {
  const auto is_letter_or_digit = [](char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
  };
  if (command.empty() || !std::all_of(command.begin(), command.end(), is_letter_or_digit)) {
    throw std::invalid_argument('"' + command + "\" is no command");
  }
}

void CheckParameter(const value& parameter) {
  if (!parameter.is<object>()) return;
  for (const auto& [name, setting] : parameter.get<object>()) {
    const bool is_whole =
        setting.is<double>() && setting.get<double>() == std::trunc(setting.get<double>());
    if (!is_whole && !setting.is<std::string>()) {
      throw std::invalid_argument(name + " is neither a whole number nor a text");
    }
  }
}

std::string ToLine(const std::string& command, const Printer* printer, const value& parameter) {
  CheckCommand(command);
  CheckParameter(parameter);
  object request{{"Command", value(command)}};
  if (printer != nullptr) {
    request["PrinterName"] = value(printer->name);
    request["DeviceName"] = value(printer->device);
  }
  if (!parameter.is<picojson::null>()) request["Parameter"] = parameter;
  return UpperHex(value(request).serialize(), "%") + '\n';
}

// picojson does not take the raw control characters that texts may hold.
std::string WithoutControls(const std::string& answer) {
  std::string text;
  for (const char character : answer) {
    if (static_cast<unsigned char>(character) < 0x20) {
      text += UpperHex({character}, "\\u00");
    } else {
      text += character;
    }
  }
  return text;
}

value ToReply(const std::string& command, const std::string& answer) {
  if (answer == kSyntaxError) throw RequestError(command + ": " + kSyntaxError);
  value members;
  const std::string error = picojson::parse(members, WithoutControls(answer));
  if (!error.empty() || !members.is<object>() || !members.get(command).is<double>()) {
    throw ProtocolError(command + " was answered \"" + answer.substr(0, 80) + '"');
  }
  const auto code = static_cast<long>(members.get(command).get<double>());
  if (code != 0) throw PrinterError(command, code);
  return members.get("Reply");
}

value Number(int number) {
  return value(static_cast<double>(number));
}

// A member that the worker always gives.
const std::string& Text(const value& reply, const std::string& name) {
  if (!reply.is<object>() || !reply.get(name).is<std::string>()) {
    throw ProtocolError("the reply lacks " + name);
  }
  return reply.get(name).get<std::string>();
}

Printer ToPrinter(const value& entry) {
  return {Text(entry, "PrinterName"), Text(entry, "DeviceName")};
}

}  // namespace

void PrinterWorker::Close() {
  const std::lock_guard<std::mutex> turn(turn_);
  if (process_) process_->Close();
  process_.reset();
}

std::vector<Printer> PrinterWorker::Printers() {
  const value reply = Request("GetPrinterList", nullptr, {}, kListLimit);
  if (reply.is<picojson::null>()) return {};
  if (!reply.is<picojson::array>()) return {ToPrinter(reply)};
  std::vector<Printer> printers;
  for (const value& entry : reply.get<picojson::array>()) printers.push_back(ToPrinter(entry));
  return printers;
}

value PrinterWorker::Status(const Printer& printer, const std::vector<std::string>& figures) {
  const value reply =
      Request("GetStatusReply", &printer, value(picojson::array(figures.begin(), figures.end())));
  return reply.is<object>() ? reply : value(object());
}

value PrinterWorker::Names(const Printer& printer, int first) {
  return Request("GetCustomMediaName", &printer, value(object{{"CustomMediaNo", Number(first)}}));
}

object PrinterWorker::ReadRecord(const Printer& printer, int number, int layout) {
  const value reply =
      Request("GetCustomMediaInfo", &printer,
              value(object{{"CustomMediaNo", Number(number)}, {"CommandVersion", Number(layout)}}));
  // A refusal reads as a record of zeros.
  if (!reply.is<object>() || reply.get("CustomMediaNo") != Number(number)) {
    throw ProtocolError(printer.name + " does not have a record " + std::to_string(number));
  }
  return reply.get<object>();
}

void PrinterWorker::WriteRecord(const Printer& printer, int number, object settings, int layout) {
  settings["CustomMediaNo"] = Number(number);
  settings["CommandVersion"] = Number(layout);
  Request("SetCustomMediaInfo", &printer, value(settings), kWriteLimit);
}

void PrinterWorker::Initialize(const Printer& printer, int number) {
  Request("SetMediaInitialize", &printer, value(object{{"InitializeCustomMedia", Number(number)}}),
          kWriteLimit);
}

void PrinterWorker::InitializeAll(const Printer& printer) {
  Request("SetMediaInitialize", &printer, value(object{{"InitializeCustomMedia", value("All")}}),
          kWriteLimit);
}

std::string PrinterWorker::Firmware(const Printer& printer) {
  return Text(Request("GetFWVersion", &printer), "FirmwareVersion");
}

value PrinterWorker::Request(const std::string& command, const Printer* printer,
                             const value& parameter, Milliseconds time_limit) {
  const std::string line = ToLine(command, printer, parameter);
  const std::lock_guard<std::mutex> turn(turn_);
  return Exchange(command, line, time_limit);
}

value PrinterWorker::Exchange(const std::string& command, const std::string& line,
                              Milliseconds time_limit) {
  if (process_ && !process_->IsReady()) process_.reset();
  if (!process_) process_ = std::make_unique<WorkerProcess>(program_);
  try {
    return ToReply(command, process_->Exchange(line, WorkerProcess::Clock::now() + time_limit));
  } catch (const PrinterError&) {
    throw;  // an answer; the worker is in step
  } catch (const RequestError&) {
    throw;
  } catch (...) {
    process_.reset();  // its answer would come to the next request
    throw;
  }
}
