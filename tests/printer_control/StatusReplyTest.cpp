// The figures of a status reply, well formed and not.
#include "printer_control/StatusReply.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "GantryCore/DataConverter.h"

namespace {

using Bytes = std::vector<unsigned char>;

// Hands over a heap copy of exactly the bytes that may be read.
bool Store(StatusReply& reply, const Bytes& area) {
  Bytes exact =
      Ravik::CDataConverter::Integer2Byte(static_cast<unsigned int>(area.size()), 2, false);
  exact.insert(exact.end(), area.begin(), area.end());
  exact.shrink_to_fit();
  return reply.SetReply(exact.data());
}

// The figures that differ from those of a reply without fields; lists in hexadecimal digits, ink
// entries as the three arrays have them.
std::string Figures(const StatusReply& reply) {
  std::ostringstream out;
  const auto add = [&out](const char* name, int figure, int missing) {
    if (figure != missing) out << name << figure << ' ';
  };
  const auto add_bytes = [&out](const char* name, const Bytes& bytes) {
    if (!bytes.empty()) out << name << Ravik::CDataConverter::Byte2Ascii(bytes) << ' ';
  };
  add("status ", reply.GetStatus(), -1);
  if (reply.IsStatusReady()) out << "ready ";
  if (reply.IsStatusError()) out << "failed ";
  add("error ", reply.GetErrorCode(), -1);
  add_bytes("warnings ", reply.GetWarning());
  if (!reply.GetSerialNumber().empty()) out << "serial '" << reply.GetSerialNumber() << "' ";
  for (const int amount : reply.GetMaintTankRemain()) out << "tank " << amount << ' ';
  add("colours ", reply.GetInkColorCount(), 8);
  std::array<int, 63> inks[3];
  const int entries = reply.GetInkRemain(inks[0].data(), inks[1].data(), inks[2].data());
  add("inks ", entries, 0);
  for (std::size_t i = 0; static_cast<int>(i) < entries; ++i) {
    out << inks[0][i] << '/' << inks[1][i] << '/' << inks[2][i] << ' ';
  }
  add("usb ", reply.GetUSBStatus(), 0);
  add_bytes("heater ", reply.GetHeater());
  return out.str();
}

TEST(StatusReply, Figures) {
  const std::pair<std::string, std::string> kCases[] = {
      {"", "inks -1 usb -1 "},  // nothing is stored
      // Every field, heaters and status twice.
      {"010104020180040207FF2E0201020D0232C81F0541424320202801402E030304050F05030A0B0C0D010100",
       "status 4 ready error 128 warnings 07FF serial 'ABC  ' tank 50 tank 200 colours 4 "
       "inks 1 12/10/13 usb 1 heater 0102030405 "},
      {"0101002802BFFF", "status 0 failed "},
      // With a length that is a multiple of four, the last ink entry ends one byte behind its
      // field: in the next field if there is one, and behind the reply if there is none.
      {"0F04030A0B0C7700", "colours 4 inks 1 12/10/119 "},
      {"0F04030A0B0C", "colours 4 inks 1 12/10/0 "},
      {"0F08010A", "colours 6 inks 2 0/10/0 0/0/0 "},
      {"0F03FF0A0B", "colours 6 "},
      // Empty fields have no data byte 0, whatever is behind them.
      {"010002000F002800010104", ""},
      {"0100", ""},
      {"01", ""},
      {"7E0028", ""},
      // Data cut at the end, and an overshoot that wraps a 16-bit count of what remains.
      {"0409010104", "warnings 010104 "},
      {"2E01072EFF08", "heater 0708 "},
      {"7EFF010104", ""},
  };
  for (const auto& [area, figures] : kCases) {
    StatusReply reply;
    EXPECT_EQ(Store(reply, Ravik::CDataConverter::Ascii2Byte(area)), !area.empty());
    EXPECT_EQ(Figures(reply), figures) << area;
  }
}

TEST(StatusReply, StoresAnotherReplyOrNone) {
  StatusReply reply;
  ASSERT_TRUE(Store(reply, {0x01, 1, 7}));
  EXPECT_FALSE(reply.SetReply(nullptr));
  EXPECT_EQ(reply.GetStatus(), 7) << "a null pointer keeps the old reply";
  EXPECT_FALSE(Store(reply, {}));
  EXPECT_EQ(reply.GetStatus(), -1);
  Bytes largest(0xFFFC);
  largest.insert(largest.end(), {0x01, 1, 4});
  ASSERT_TRUE(Store(reply, largest));
  EXPECT_EQ(reply.GetStatus(), 4) << "32766 empty fields stand in front";
}

TEST(StatusReply, CountsWarningsAndInkByTheirLength) {
  StatusReply reply;
  Bytes area(62, 'w');
  area[0] = 0x04;
  area[1] = 60;
  area[2] = 'f';
  ASSERT_TRUE(Store(reply, area));
  EXPECT_EQ(reply.GetWarning(), Bytes(area.begin() + 2, area.begin() + 52));
  for (const auto& [entry_size, length, colours] :
       {std::array{3, 19, 6}, {3, 13, 4}, {3, 14, 6}, {0x80, 1, 6}, {0x7F, 255, 4}}) {
    area.assign({0x0F, static_cast<unsigned char>(length), static_cast<unsigned char>(entry_size)});
    area.resize(static_cast<std::size_t>(length) + 2);
    ASSERT_TRUE(Store(reply, area));
    EXPECT_EQ(reply.GetInkColorCount(), colours) << entry_size << ' ' << length;
  }
  std::array<int, 63> inks;
  EXPECT_EQ(reply.GetInkRemain(inks.data(), inks.data(), inks.data()), 63);
  EXPECT_EQ(reply.GetInkRemain(nullptr, inks.data(), inks.data()), -1);
  EXPECT_EQ(reply.GetInkRemain(inks.data(), nullptr, inks.data()), -1);
  EXPECT_EQ(reply.GetInkRemain(inks.data(), inks.data(), nullptr), -1);
}

}  // namespace
