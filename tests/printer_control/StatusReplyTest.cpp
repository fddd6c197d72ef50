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
using InkArray = std::array<int, 63>;

// Hands over a heap copy of exactly the bytes that may be read.
bool Store(StatusReply& reply, const Bytes& area) {
  const auto exact = std::make_unique<unsigned char[]>(area.size() + 2);
  exact[0] = static_cast<unsigned char>(area.size() & 0xFF);
  exact[1] = static_cast<unsigned char>(area.size() >> 8);
  std::copy(area.begin(), area.end(), exact.get() + 2);
  return reply.SetReply(exact.get());
}

Bytes Field(unsigned char id, const Bytes& data) {
  Bytes field = {id, static_cast<unsigned char>(data.size())};
  field.insert(field.end(), data.begin(), data.end());
  return field;
}

// All figures in one line; lists of bytes in hexadecimal digits.
std::string Figures(const StatusReply& reply) {
  InkArray ink{};
  std::ostringstream out;
  out << "status " << reply.GetStatus() << (reply.IsStatusReady() ? " ready" : "")
      << (reply.IsStatusError() ? " failed" : "") << ", error " << reply.GetErrorCode()
      << ", warnings " << Ravik::CDataConverter::Byte2Ascii(reply.GetWarning()) << ", serial "
      << reply.GetSerialNumber() << ", tanks";
  for (const int amount : reply.GetMaintTankRemain()) out << ' ' << amount;
  out << ", inks " << reply.GetInkColorCount() << ' '
      << reply.GetInkRemain(ink.data(), ink.data(), ink.data()) << ", usb " << reply.GetUSBStatus()
      << ", heater " << Ravik::CDataConverter::Byte2Ascii(reply.GetHeater());
  return out.str();
}

TEST(StatusReply, Figures) {
  const char* const kNone =
      "status -1, error -1, warnings , serial , tanks, inks 8 0, usb 0, heater ";
  const struct {
    const char* what;
    Bytes area;
    std::string figures;
  } kCases[] = {
      {"no reply is stored",
       {},
       "status -1, error -1, warnings , serial , tanks, inks 8 -1, usb -1, heater "},
      {"no known field", {0x7E, 3, 1, 1, 4}, kNone},
      {"every field, heaters and status twice",
       {0x01, 1,  4,   0x02, 1, 0x80, 0x04, 2,   7,   0xFF, 0x2E, 2, 1,    2,    0x0D,
        2,    50, 200, 0x1F, 5, 'A',  'B',  'C', ' ', ' ',  0x28, 1, 0x40, 0x2E, 3,
        3,    4,  5,   0x0F, 5, 3,    0,    0,   0,   0,    0x01, 1, 0},
       "status 4 ready, error 128, warnings 07FF, serial ABC  , tanks 50 200, inks 4 1, usb 1, "
       "heater 0102030405"},
      {"status 0, all USB bits but the one",
       {0x01, 1, 0, 0x28, 2, 0xBF, 0xFF},
       "status 0 failed, error -1, warnings , serial , tanks, inks 8 0, usb 0, heater "},
      {"data byte 0 of empty fields, others behind",
       {0x01, 0, 0x02, 0, 0x0F, 0, 0x28, 0, 0x01, 1, 4},
       kNone},
      {"an empty field at the end", {0x01, 0}, kNone},
      {"an area of one byte: status", {0x01}, kNone},
      {"an area of one byte: ink", {0x0F}, kNone},
      {"an area of one byte: heater", {0x2E}, kNone},
      {"a field without its length byte", {0x7E, 0, 0x28}, kNone},
      {"data cut at the end, with fields inside",
       {0x04, 9, 0x01, 1, 4},
       "status -1, error -1, warnings 010104, serial , tanks, inks 8 0, usb 0, heater "},
      {"a heater cut at the end",
       {0x2E, 1, 7, 0x2E, 255, 8},
       "status -1, error -1, warnings , serial , tanks, inks 8 0, usb 0, heater 0708"},
      {"an overshoot that wraps a 16-bit count", {0x7E, 255, 0x01, 1, 4}, kNone},
  };
  for (const auto& c : kCases) {
    StatusReply reply;
    EXPECT_EQ(Store(reply, c.area), !c.area.empty()) << c.what;
    EXPECT_EQ(Figures(reply), c.figures) << c.what;
  }
}

TEST(StatusReply, StoresAnotherReplyOrNone) {
  StatusReply reply;
  ASSERT_TRUE(Store(reply, {0x01, 1, 7}));
  EXPECT_FALSE(reply.SetReply(nullptr));
  EXPECT_EQ(reply.GetStatus(), 7) << "a null pointer keeps the old reply";
  ASSERT_TRUE(Store(reply, {0x01, 1, 9}));
  EXPECT_EQ(reply.GetStatus(), 9);
  EXPECT_FALSE(Store(reply, {}));
  EXPECT_EQ(reply.GetStatus(), -1);
  Bytes largest(0xFFFF);
  largest[0xFFFC] = 0x01;
  largest[0xFFFD] = 1;
  largest[0xFFFE] = 4;
  ASSERT_TRUE(Store(reply, largest));
  EXPECT_EQ(reply.GetStatus(), 4) << "32766 empty fields stand in front";
}

TEST(StatusReply, WarningsEndAtFifty) {
  Bytes warnings(60);
  for (std::size_t i = 0; i < warnings.size(); ++i) warnings[i] = static_cast<unsigned char>(i);
  StatusReply reply;
  ASSERT_TRUE(Store(reply, Field(0x04, warnings)));
  EXPECT_EQ(reply.GetWarning(), Bytes(warnings.begin(), warnings.begin() + 50));
}

TEST(StatusReply, CountsInkColoursByEntrySizeAndLength) {
  const struct {
    unsigned char entry_size;
    std::size_t length;
    int colours;
  } kCases[] = {{3, 19, 6}, {3, 13, 4}, {3, 14, 6}, {0xFF, 1, 6}, {0x80, 1, 6}, {0x7F, 255, 4}};
  for (const auto& c : kCases) {
    Bytes data(c.length);
    data[0] = c.entry_size;
    StatusReply reply;
    ASSERT_TRUE(Store(reply, Field(0x0F, data)));
    EXPECT_EQ(reply.GetInkColorCount(), c.colours) << +c.entry_size << ' ' << c.length;
  }
}

// With a length that is a multiple of four, the last entry ends one byte behind its field: in the
// next field if there is one, and behind the reply if there is none.
TEST(StatusReply, ReadsInkEntriesAtAStrideOfFour) {
  const struct {
    Bytes area;
    std::vector<std::array<int, 3>> entries;  // of the first, second and third array
  } kCases[] = {
      {{0x0F, 9, 3, 10, 11, 12, 13, 20, 21, 22, 0xFF}, {{12, 10, 13}, {22, 20, 0xFF}}},
      {{0x0F, 4, 3, 10, 11, 12, 0x77, 0}, {{12, 10, 0x77}}},
      {{0x0F, 4, 3, 10, 11, 12}, {{12, 10, 0}}},
      {{0x0F, 8, 3, 10}, {{0, 10, 0}, {0, 0, 0}}},
      {{0x0F, 3, 3, 10, 11}, {}},
      {{0x0F, 255, 3}, std::vector<std::array<int, 3>>(63)},
  };
  for (const auto& c : kCases) {
    InkArray first;
    InkArray second;
    InkArray third;
    for (InkArray* const ink : {&first, &second, &third}) ink->fill(-1);
    StatusReply reply;
    ASSERT_TRUE(Store(reply, c.area));
    EXPECT_EQ(reply.GetInkRemain(nullptr, second.data(), third.data()), -1);
    EXPECT_EQ(reply.GetInkRemain(first.data(), nullptr, third.data()), -1);
    EXPECT_EQ(reply.GetInkRemain(first.data(), second.data(), nullptr), -1);
    ASSERT_EQ(reply.GetInkRemain(first.data(), second.data(), third.data()),
              static_cast<int>(c.entries.size()));
    for (std::size_t i = 0; i < c.entries.size(); ++i) {
      EXPECT_EQ((std::array{first[i], second[i], third[i]}), c.entries[i]) << i;
    }
  }
}

// Whatever a printer sends, the readers agree with a plain walk by index and stay inside the reply.
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
    int status = -2;
    for (std::size_t i = 0; i < area.size(); i += 2U + (i + 1 < area.size() ? area[i + 1] : 0U)) {
      const std::size_t length = i + 1 < area.size() ? area[i + 1] : 0;
      const std::size_t end = std::min(i + 2 + length, area.size());
      if (area[i] == 0x01 && status == -2) status = i + 2 < end ? area[i + 2] : -1;
      for (std::size_t j = i + 2; j < end && area[i] == 0x2E; ++j) heater.push_back(area[j]);
    }
    StatusReply reply;
    ASSERT_TRUE(Store(reply, area));
    EXPECT_EQ(reply.GetStatus(), std::max(status, -1));
    EXPECT_EQ(reply.GetHeater(), heater);
    EXPECT_FALSE(Figures(reply).empty());
  }
}

}  // namespace
