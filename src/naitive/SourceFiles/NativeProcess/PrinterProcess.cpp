#include "NativeProcess/PrinterProcess.h"

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "Library/RavikCommon/RavikAssert.h"
#include "Library/RavikCommon/RavikTemplate.h"
#include "ModelInfomation/ParameterName.h"
#include "NativeProcess/RequestReader.h"
#include "printer_control/PrinterController.h"

namespace Ravik {

namespace {

constexpr char kPrinterName[] = "PrinterName";
constexpr char kDeviceName[] = "DeviceName";
constexpr char kReply[] = "Reply";
constexpr char kFilePath[] = "FilePath";
constexpr std::string_view kGetPrinterList = "GetPrinterList";
constexpr std::string_view kGetStatusReply = "GetStatusReply";
constexpr std::string_view kOpenHelpFile = "OpenHelpFile";
constexpr std::string_view kGetFWVersion = "GetFWVersion";

const std::string kCommandVersion = "CommandVersion";
const std::string kInitializeCustomMedia = "InitializeCustomMedia";

// The status figures asked for, as keys without values.
bool InsertStatusKeys(std::optional<std::vector<std::string>>& keys, ParameterMapVO& params) {
  if (!keys) return false;
  std::sort(keys->begin(), keys->end());  // a map takes them at its end
  for (const std::string& key : *keys) params.insert(key);
  return true;
}

bool InsertParameters(std::optional<RequestMembers::Parameters>& members, ParameterMapVO& params) {
  if (!members) return false;
  params.reserve(members->size());
  for (auto& [key, parameter] : *members) params.insert(key, std::move(parameter));
  return true;
}

bool InsertFilePath(const std::optional<std::string>& path, ParameterMapVO& params) {
  if (!path) return false;
  params.insert(kFilePath, *path);
  return true;
}

long ReadReply(COMMAND_KEY key, const PrinterVO& printer, const ParameterMapVO& in,
               ParameterMapVO& out) {
  APPLICATION_ERROR error = ERROR_COMMAND;
  CPrinterController::Read(key, printer, in, out, error);
  return error;
}

// What one reading back says of a write.
enum class ReadBack { kAgrees, kDiffers, kFailed };

// Reads back every 30 ms until the printer agrees, a reading fails or the time is over. The time
// is the process's own processor time, which goes by with the work that the readings cost.
template <typename Reading>
APPLICATION_ERROR AwaitAgreement(Reading reading) {
  constexpr useconds_t kPauseMicroseconds = 30000;
  constexpr unsigned long kBudgetTicks = 10000;
  const std::clock_t start = std::clock();
  do {
    usleep(kPauseMicroseconds);
    const ReadBack result = reading();
    if (result == ReadBack::kAgrees) return ERROR_NONE;
    if (result == ReadBack::kFailed) break;
  } while (static_cast<unsigned long>(std::clock() - start) < kBudgetTicks);
  return ERROR_TRANSFER;
}

void AppendAnswer(const std::string& command, const ParameterMapVO& reply, long code,
                  std::string& answer) {
  answer.append("{\"").append(command).append("\":").append(std::to_string(code));
  if (code == 0 && reply.size() != 0) {
    answer.append(",\"").append(kReply).append("\":");
    reply.appendJson(answer);
  }
  answer += '}';
}

}  // namespace

const std::map<std::string, PrinterProcess::Handler> PrinterProcess::NativeProcessFunction =
    TCreateMap<std::string, PrinterProcess::Handler>(std::string(kGetPrinterList), GetPrinterList)(
        std::string(kGetStatusReply), GetPrinterStatus)("GetCustomMediaName", GetCustomMediaName)(
        "GetCustomMediaInfo", GetCustomMediaInfo)("SetCustomMediaInfo", SetCustomMediaInfo)(
        "SetMediaInitialize", SetMediaInitialize)(std::string(kGetFWVersion), GetFWVersion);

long PrinterProcess::Answer(const std::string& request, Workspace& workspace) {
  auto& [params, reply, answer] = workspace;
  params.clear();
  reply.clear();
  answer.clear();
  PrinterVO printer;
  std::string command;
  if (!ParsePicojson(request, command, printer, params)) {
    answer = "syntax error";
    return -1;
  }
  const auto function = NativeProcessFunction.find(command);
  long code = -1;
  try {
    if (function != NativeProcessFunction.end()) code = function->second(printer, params, reply);
  } catch (const std::out_of_range&) {
    code = -1;
  }
  AppendAnswer(command, reply, code, answer);
  return code;
}

long PrinterProcess::doFunction(const std::string& request, std::ostream& out) {
  Workspace workspace;
  const long code = Answer(request, workspace);
  out << workspace.answer;
  return code;
}

bool PrinterProcess::ParsePicojson(const std::string& request, std::string& command,
                                   PrinterVO& printer, ParameterMapVO& params) {
  RequestMembers members;
  if (!ReadRequest(request, members) || !members.command) return false;
  command = *std::move(members.command);
  if (command == kGetPrinterList) return true;
  if (command == kOpenHelpFile) return InsertFilePath(members.file_path, params);

  if (!members.printer_name || !members.device_name) return false;
  printer.setPrinter(*std::move(members.printer_name), *std::move(members.device_name));
  if (command == kGetFWVersion) return true;
  return command == kGetStatusReply ? InsertStatusKeys(members.parameter_texts, params)
                                    : InsertParameters(members.parameters, params);
}

void PrinterProcess::PrintJson(const std::string& command, const ParameterMapVO& reply, long code,
                               std::ostream& out) {
  std::string answer;
  AppendAnswer(command, reply, code, answer);
  out << answer;
}

long PrinterProcess::GetPrinterList(const PrinterVO& /*printer*/, const ParameterMapVO& /*in*/,
                                    ParameterMapVO& out) {
  std::vector<PrinterVO> printers;
  const long code = CPrinterController::Search(printers);
  if (code != 0) return code;
  for (const PrinterVO& found : printers) {
    out.insert(kPrinterName, found.printerName());
    out.insert(kDeviceName, found.deviceName());
  }
  return 0;
}

long PrinterProcess::GetPrinterStatus(const PrinterVO& printer, const ParameterMapVO& in,
                                      ParameterMapVO& out) {
  return ReadReply(READ_STATUS, printer, in, out);
}

long PrinterProcess::GetCustomMediaName(const PrinterVO& printer, const ParameterMapVO& in,
                                        ParameterMapVO& out) {
  return ReadReply(READ_CUSTOMMEDIA_NAME, printer, in, out);
}

long PrinterProcess::GetCustomMediaInfo(const PrinterVO& printer, const ParameterMapVO& in,
                                        ParameterMapVO& out) {
  int version = 0;
  if (!in.find(kCommandVersion, version)) return -1;
  switch (version) {
    case 0:
      return ReadReply(READ_CUSTOMMEDIA_INFO1, printer, in, out);
    case 1:
      return ReadReply(READ_CUSTOMMEDIA_INFO2, printer, in, out);
    case 128:
      return ReadReply(READ_CUSTOMMEDIA_INFO3, printer, in, out);
    default:
      RAVIK_ASSERT(false);
      return -1;
  }
}

long PrinterProcess::SetCustomMediaInfo(const PrinterVO& printer, const ParameterMapVO& in,
                                        ParameterMapVO& out) {
  int version = 0;
  if (!in.find(kCommandVersion, version)) return -1;
  COMMAND_KEY key = WRITE_CUSTOMMEDIA_INFO1;
  switch (version) {
    case 0:
      break;
    case 1:
      key = WRITE_CUSTOMMEDIA_INFO2;
      break;
    case 128:
      key = WRITE_CUSTOMMEDIA_INFO3;
      break;
    default:
      RAVIK_ASSERT(false);
  }
  APPLICATION_ERROR error = ERROR_COMMAND;
  if (!CPrinterController::Write(key, printer, in, out, error)) return error;
  ParameterMapVO readBack;
  return AwaitAgreement([&] {
    readBack.clear();
    if (GetCustomMediaInfo(printer, in, readBack) != 0) return ReadBack::kFailed;
    return in.isContain(readBack) ? ReadBack::kAgrees : ReadBack::kDiffers;
  });
}

long PrinterProcess::SetMediaInitialize(const PrinterVO& printer, const ParameterMapVO& in,
                                        ParameterMapVO& out) {
  APPLICATION_ERROR error = ERROR_COMMAND;
  if (!CPrinterController::Write(WRITE_MEDIA_INITIALIZE, printer, in, out, error)) return error;
  value number;
  if (!in.find(kInitializeCustomMedia, number) || !number.is<int>()) return error;

  ParameterMapVO request;
  request.insert(kCommandVersion, 0);
  request.insert(CUSTOMMEDIA_NUMBER, number);
  ParameterMapVO readBack;
  return AwaitAgreement([&] {
    readBack.clear();
    if (GetCustomMediaInfo(printer, request, readBack) != 0) return ReadBack::kFailed;
    value flag;
    const bool cleared = readBack.find(CUSTOMMEDIA_REGISTRATION_FLAG, flag) && flag.is<int>() &&
                         flag.get<int>() == 0;
    return cleared ? ReadBack::kAgrees : ReadBack::kDiffers;
  });
}

long PrinterProcess::GetFWVersion(const PrinterVO& printer, const ParameterMapVO& in,
                                  ParameterMapVO& out) {
  return ReadReply(READ_FW_VERSION, printer, in, out);
}

}  // namespace Ravik
