#include "NativeProcess/PrinterProcess.h"

#include <unistd.h>

#include <ctime>
#include <limits>
#include <stdexcept>
#include <vector>

#include "Library/RavikCommon/RavikAssert.h"
#include "Library/RavikCommon/RavikTemplate.h"
#include "ModelInfomation/ParameterName.h"
#include "NativeProcess/JsonReader.h"
#include "printer_control/PrinterController.h"

namespace Ravik {

namespace {

const std::string kCommand = "Command";
const std::string kPrinterName = "PrinterName";
const std::string kDeviceName = "DeviceName";
const std::string kParameter = "Parameter";
const std::string kReply = "Reply";
const std::string kFilePath = "FilePath";
const std::string kGetPrinterList = "GetPrinterList";
const std::string kGetStatusReply = "GetStatusReply";
const std::string kOpenHelpFile = "OpenHelpFile";
const std::string kGetFWVersion = "GetFWVersion";

const std::string kCommandVersion = "CommandVersion";
const std::string kInitializeCustomMedia = "InitializeCustomMedia";

// Truncation toward zero; what lies outside 32 bits becomes the smallest number.
int ToInteger(double number) {
  constexpr double kTooSmall = -2147483649.0;
  constexpr double kTooLarge = 2147483648.0;
  const bool fits = number > kTooSmall && number < kTooLarge;
  return fits ? static_cast<int>(number) : std::numeric_limits<int>::min();
}

// The status figures asked for, as keys without values.
bool InsertStatusKeys(const picojson::value& keys, ParameterMapVO& params) {
  if (!keys.is<picojson::array>()) return false;
  for (const picojson::value& key : keys.get<picojson::array>()) {
    if (key.is<std::string>()) params.insert(key.get<std::string>());
  }
  return true;
}

bool InsertParameters(const picojson::value& members, ParameterMapVO& params) {
  if (!members.is<picojson::object>()) return false;
  for (const auto& [key, member] : members.get<picojson::object>()) {
    if (member.is<double>()) {
      params.insert(key, ToInteger(member.get<double>()));
    } else if (member.is<std::string>()) {
      params.insert(key, member.get<std::string>());
    }
  }
  return true;
}

bool InsertFilePath(const picojson::value& path, ParameterMapVO& params) {
  if (!path.is<std::string>()) return false;
  params.insert(kFilePath, path.get<std::string>());
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

}  // namespace

const std::map<std::string, PrinterProcess::Handler> PrinterProcess::NativeProcessFunction =
    TCreateMap<std::string, PrinterProcess::Handler>(kGetPrinterList, GetPrinterList)(
        kGetStatusReply, GetPrinterStatus)("GetCustomMediaName", GetCustomMediaName)(
        "GetCustomMediaInfo", GetCustomMediaInfo)("SetCustomMediaInfo", SetCustomMediaInfo)(
        "SetMediaInitialize", SetMediaInitialize)(kGetFWVersion, GetFWVersion);

long PrinterProcess::doFunction(const std::string& request, std::ostream& out) {
  PrinterVO printer;
  ParameterMapVO params;
  ParameterMapVO reply;
  std::string command;
  if (!ParsePicojson(request, command, printer, params)) {
    out << "syntax error";
    return -1;
  }
  long code = -1;
  try {
    code = NativeProcessFunction.at(command)(printer, params, reply);
  } catch (const std::out_of_range&) {
    code = -1;
  }
  PrintJson(command, reply, code, out);
  return code;
}

bool PrinterProcess::ParsePicojson(const std::string& request, std::string& command,
                                   PrinterVO& printer, ParameterMapVO& params) {
  picojson::value json;
  if (!ReadJson(request, json) || json.is<picojson::null>()) return false;
  const picojson::value& name = json.get(kCommand);
  if (!name.is<std::string>()) return false;
  command = name.get<std::string>();
  if (command == kGetPrinterList) return true;
  if (command == kOpenHelpFile) return InsertFilePath(json.get(kFilePath), params);

  const picojson::value& printerName = json.get(kPrinterName);
  const picojson::value& deviceName = json.get(kDeviceName);
  if (!printerName.is<std::string>() || !deviceName.is<std::string>()) return false;
  printer.setPrinter(printerName.get<std::string>(), deviceName.get<std::string>());
  if (command == kGetFWVersion) return true;
  const picojson::value& parameter = json.get(kParameter);
  return command == kGetStatusReply ? InsertStatusKeys(parameter, params)
                                    : InsertParameters(parameter, params);
}

void PrinterProcess::PrintJson(const std::string& command, const ParameterMapVO& reply, long code,
                               std::ostream& out) {
  out << "{\"" << command << "\":" << code;
  if (code == 0 && reply.size() != 0) out << ",\"" << kReply << "\":" << reply;
  out << '}';
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
  return AwaitAgreement([&] {
    ParameterMapVO readBack;
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
  return AwaitAgreement([&] {
    ParameterMapVO readBack;
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
