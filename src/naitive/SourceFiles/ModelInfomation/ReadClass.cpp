#include "ModelInfomation/ReadClass.h"

#include <new>
#include <utility>

#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/DeviceName.h"
#include "ModelInfomation/PrinterClass/Corvel.h"
#include "ModelInfomation/PrinterClass/Lunde.h"
#include "ModelInfomation/PrinterClass/Ostrel.h"
#include "ModelInfomation/PrinterClass/Parvane.h"
#include "ModelInfomation/PrinterClass/Tamsk.h"
#include "ModelInfomation/PrinterClass/TamskST.h"

namespace Ravik {

namespace {

template <typename Family>
IPrinterClass* Create() {
  return new Family;
}

struct DeviceRow {
  const char* device_name;
  IPrinterClass* (*create)();
};

constexpr DeviceRow kDevices[] = {
    {kDevIdOstrel, Create<COstrel>},     {kDevIdMDLOstrel, Create<COstrel>},
    {kDevIdParvane, Create<CParvane>},   {kDevIdMDLParvane, Create<CParvane>},
    {kDevIdTamsk, Create<CTamsk>},       {kDevIdMDLTamsk, Create<CTamsk>},
    {kDevIdTamskST, Create<CTamskST>},   {kDevIdMDLTamskST, Create<CTamskST>},
    {kDevIDBrevik, Create<CTamskST>},    {kDevIdMDLBrevik, Create<CTamskST>},
    {kDevIDLunde44, Create<CLunde>},     {kDevIdMDLLunde44, Create<CLunde>},
    {kDevIDCorvel44, Create<CCorvel>},   {kDevIdMDLCorvel44, Create<CCorvel>},
    {kDevIDCorvel64, Create<CCorvel>},   {kDevIdMDLCorvel64, Create<CCorvel>},
    {kDevIDCorvelPS44, Create<CCorvel>}, {kDevIDCorvelPS64, Create<CCorvel>},
};

}  // namespace

IPrinterClass* GetPrinterObject(const std::string& deviceName) {
  for (const DeviceRow& row : kDevices) {
    if (deviceName == row.device_name) return row.create();
  }
  return nullptr;
}

IPrinterClass* CReadClass::GetPrinter(const std::string& deviceName) {
  const auto known = printers_.find(deviceName);
  if (known != printers_.end()) return known->second.get();
  std::unique_ptr<IPrinterClass> printer(GetPrinterObject(deviceName));
  const auto result = printers_.emplace(deviceName, std::move(printer));
  if (!result.second) {
    ReportAssertion("result.second", "GetPrinter",
                    "src/naitive/SourceFiles/ModelInfomation/ReadClass", 77);
  }
  return result.first->second.get();
}

bool CReadClass::ReadCommandInfo(const std::string& deviceName, COMMAND_KEY key,
                                 CommandInfoVO& info) {
  const IPrinterClass* const printer = GetPrinter(deviceName);
  if (printer == nullptr) return false;
  printer->ReadCommandInfo(key, info);
  return true;
}

bool CReadClass::ReadReplyInfo(const std::string& deviceName, COMMAND_KEY key, ReplyInfoVO& info) {
  const IPrinterClass* const printer = GetPrinter(deviceName);
  if (printer == nullptr) return false;
  printer->ReadReplyInfo(key, info);
  return true;
}

bool CReadClass::ReadStatusReplyInfo(const std::string& deviceName,
                                     std::vector<ReplyInfoVO>& infos) {
  const IPrinterClass* const printer = GetPrinter(deviceName);
  if (printer == nullptr) return false;
  printer->ReadStatusReplyInfo(infos);
  return true;
}

IReadModelInfomation* GetModelInfomationObject() {
  return new (std::nothrow) CReadClass;
}

}  // namespace Ravik
