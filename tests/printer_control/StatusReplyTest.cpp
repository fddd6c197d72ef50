// The figures of a status reply, well formed and not.
#include "printer_control/StatusReply.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "GantryCore/DataConverter.h"

namespace {

using Bytes = std::vector<unsigned char>;

// Hands over a heap copy of exactly the bytes that may be read.
bool Store(StatusReply& reply, const Bytes& area) {
  const auto exact = std::make_unique<unsigned char[]>(area.size() + 2);
  exact[0] = static_cast<unsigned char>(area.size() & 0xFF);
  exact[1] = static_cast<unsigned char>(area.size() >> 8);
  std::copy(area.begin(), area.end(), exact.get() + 2);
  return reply.SetReply(exact.get());
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
  for (int i = 0; i < entries; ++i) {
    const auto at = static_cast<std::size_t>(i);
    out << inks[0][at] << '/' << inks[1][at] << '/' << inks[2][at] << ' ';
  }
  add("usb ", reply.GetUSBStatus(), 0);
  add_bytes("heater ", reply.GetHeater());
  return out.str();
}

TEST(StatusReply, Figures) {
  const struct {
    Bytes area;
    std::string figures;
  } kCases[] = {
      {{}, "inks -1 usb -1 "},  // nothing is stored
      // Every field, heaters and status twice.
      {{0x01, 1,  4,   0x02, 1, 0x80, 0x04, 2,   7,   0xFF, 0x2E, 2, 1,    2,    0x0D,
        2,    50, 200, 0x1F, 5, 'A',  'B',  'C', ' ', ' ',  0x28, 1, 0x40, 0x2E, 3,
        3,    4,  5,   0x0F, 5, 3,    10,   11,  12,  13,   0x01, 1, 0},
       "status 4 ready error 128 warnings 07FF serial 'ABC  ' tank 50 tank 200 colours 4 "
       "inks 1 12/10/13 usb 1 heater 0102030405 "},
      {{0x01, 1, 0, 0x28, 2, 0xBF, 0xFF}, "status 0 failed "},
      // With a length that is a multiple of four, the last ink entry ends one byte behind its
      // field: in the next field if there is one, and behind the reply if there is none.
      {{0x0F, 4, 3, 10, 11, 12, 0x77, 0}, "colours 4 inks 1 12/10/119 "},
      {{0x0F, 4, 3, 10, 11, 12}, "colours 4 inks 1 12/10/0 "},
      {{0x0F, 8, 1, 10}, "colours 6 inks 2 0/10/0 0/0/0 "},
      {{0x0F, 3, 0xFF, 10, 11}, "colours 6 "},
      // Empty fields have no data byte 0, whatever is behind them.
      {{0x01, 0, 0x02, 0, 0x0F, 0, 0x28, 0, 0x01, 1, 4}, ""},
      {{0x01, 0}, ""},
      {{0x01}, ""},
      {{0x7E, 0, 0x28}, ""},
      // Data cut at the end, and an overshoot that wraps a 16-bit count of what remains.
      {{0x04, 9, 0x01, 1, 4}, "warnings 010104 "},
      {{0x2E, 1, 7, 0x2E, 255, 8}, "heater 0708 "},
      {{0x7E, 255, 0x01, 1, 4}, ""},
  };
  for (const auto& c : kCases) {
    StatusReply reply;
    EXPECT_EQ(Store(reply, c.area), !c.area.empty());
    EXPECT_EQ(Figures(reply), c.figures) << testing::PrintToString(c.area);
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

// Whatever a printer sends, the readers stay inside the reply and the heaters are those of a plain
// walk by index.
TEST(StatusReply, ReadersSurviveRandomFieldAreas) {
  std::mt19937 random(20240229);
  const Bytes ids = {0x01, 0x02, 0x04, 0x0D, 0x0F, 0x1F, 0x28, 0x2E};
  for (unsigned int round = 0; round < 20000; ++round) {
    Bytes area(1 + random() % 24);
    for (unsigned char& byte : area) {
      const auto any = static_cast<unsigned char>(random() % (round % 2 == 0 ? 6 : 256));
      byte = random() % 2 == 0 ? ids[random() % ids.size()] : any;
    }
    Bytes heater;
    for (std::size_t i = 0; i + 1 < area.size(); i += 2U + area[i + 1]) {
      const std::size_t end = std::min<std::size_t>(i + 2 + area[i + 1], area.size());
      for (std::size_t j = i + 2; j < end && area[i] == 0x2E; ++j) heater.push_back(area[j]);
    }
    StatusReply reply;
    ASSERT_TRUE(Store(reply, area));
    Figures(reply);
    ASSERT_EQ(reply.GetHeater(), heater) << testing::PrintToString(area);
  }
}

}  // namespace
