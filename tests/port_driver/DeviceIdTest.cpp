// Device identifiers as printers send them.
#include "port_driver/DeviceId.h"

#include <gtest/gtest.h>

namespace ZIOP {
namespace {

std::string Describe(std::string_view bytes) {
  const DeviceId id = DeviceId::Parse(bytes);
  return id.manufacturer + "|" + id.model + "|" + id.commandSet + "|" + id.serial + "|" +
         id.description;
}

TEST(DeviceIdTest, IsReadAsPrintersSendIt) {
  using namespace std::string_literals;
  const struct {
    std::string bytes;
    const char* result;  // maker, model, command set, serial number, description
  } kRows[] = {
      {"\0\x4DMFG:ZARMO;CMD:RL,BDC;MDL:QM-R410 Series;CLS:PRINTER;DES:ZARMO QM-R410;SN:X1;"s,
       "ZARMO|QM-R410 Series|RL,BDC|X1|ZARMO QM-R410"},
      {"\x1F\0MANUFACTURER:ZARMO;MODEL:M"s, "ZARMO|M|||"},  // little-endian, no last semicolon
      {"\x01\x0AMFG:Z;"s, "Z||||"},
      {"MM\x02MFG:Z;MDL:M"s, "|M|||"},  // a control byte past the length is a blank
      {" mfg : Z ;\tMdl:\tA  B\x01 C\x7F;command set:x;SerialNumber: 7 ;description:d;"s,
       "Z|A B C|x|7|d"},
      {"MFG:Z\r\nMDL:M\nSERN:1"s, "Z|M||1|"},
      {"MFG:;MANUFACTURER: ;MFG:Z;MFG:Y;MDL:M;MODEL:N;"s, "Z|M|||"},
      {"DES:a:b::c;MDL::;;;:;SN"s, "|:|||a:b::c"},
      {"MDL:\xE9\xFF;XMDL:N;MDLX:O"s, "|\xE9\xFF|||"},
      {""s, "||||"},
      {"\0"s, "||||"},
      {"\0\x10"s, "||||"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(Describe(row.bytes), row.result) << row.bytes;
  }
}

}  // namespace
}  // namespace ZIOP
