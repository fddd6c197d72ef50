// The figures of a status reply, well formed and not.
#include "printer_control/StatusReply.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
constexpr std::size_t kMaxInkEntries = 63;
using InkArray = std::array<int, kMaxInkEntries>;

Bytes Field(unsigned char id, const Bytes& data) {
  Bytes field = {id, static_cast<unsigned char>(data.size())};
  field.insert(field.end(), data.begin(), data.end());
  return field;
}

Bytes Join(std::initializer_list<Bytes> fields) {
  Bytes area;
  for (const Bytes& field : fields) area.insert(area.end(), field.begin(), field.end());
  return area;
}

// Hands over a heap copy of exactly the bytes that may be read.
bool Store(StatusReply& reply, const Bytes& area) {
  const auto size = area.size();
  const auto exact = std::make_unique<unsigned char[]>(size + 2);
  exact[0] = static_cast<unsigned char>(size & 0xFF);
  exact[1] = static_cast<unsigned char>(size >> 8);
  std::copy(area.begin(), area.end(), exact.get() + 2);
  return reply.SetReply(exact.get());
}

TEST(StatusReply, WithoutAReply) {
  StatusReply reply;
  InkArray ink{};
  EXPECT_EQ(reply.GetStatus(), -1);
  EXPECT_EQ(reply.GetErrorCode(), -1);
  EXPECT_FALSE(reply.IsStatusReady());
  EXPECT_FALSE(reply.IsStatusError());
  EXPECT_EQ(reply.GetWarning(), Bytes{});
  EXPECT_EQ(reply.GetSerialNumber(), "");
  EXPECT_EQ(reply.GetMaintTankRemain(), std::vector<int>{});
  EXPECT_EQ(reply.GetInkColorCount(), 8);
  EXPECT_EQ(reply.GetInkRemain(ink.data(), ink.data(), ink.data()), -1);
  EXPECT_EQ(reply.GetUSBStatus(), -1);
  EXPECT_EQ(reply.GetHeater(), Bytes{});
}

TEST(StatusReply, WithoutTheField) {
  StatusReply reply;
  InkArray ink{};
  ASSERT_TRUE(Store(reply, Field(0x7E, {1, 2, 3})));
  EXPECT_EQ(reply.GetStatus(), -1);
  EXPECT_EQ(reply.GetErrorCode(), -1);
  EXPECT_FALSE(reply.IsStatusError());
  EXPECT_EQ(reply.GetWarning(), Bytes{});
  EXPECT_EQ(reply.GetSerialNumber(), "");
  EXPECT_EQ(reply.GetMaintTankRemain(), std::vector<int>{});
  EXPECT_EQ(reply.GetInkColorCount(), 8);
  EXPECT_EQ(reply.GetInkRemain(ink.data(), ink.data(), ink.data()), 0);
  EXPECT_EQ(reply.GetUSBStatus(), 0);
  EXPECT_EQ(reply.GetHeater(), Bytes{});
}

TEST(StatusReply, ReadsEveryFigure) {
  StatusReply reply;
  ASSERT_TRUE(Store(reply, Join({Field(0x01, {4}), Field(0x02, {0x80}), Field(0x04, {7, 0xFF}),
                                 Field(0x2E, {1, 2}), Field(0x0D, {50, 200}),
                                 Field(0x1F, {'A', 'B', 0xC3, ' ', ' '}), Field(0x28, {0x40}),
                                 Field(0x2E, {3, 4, 5}), Field(0x01, {0})})));
  EXPECT_EQ(reply.GetStatus(), 4);
  EXPECT_TRUE(reply.IsStatusReady());
  EXPECT_FALSE(reply.IsStatusError());
  EXPECT_EQ(reply.GetErrorCode(), 0x80);
  EXPECT_EQ(reply.GetWarning(), (Bytes{7, 0xFF}));
  EXPECT_EQ(reply.GetMaintTankRemain(), (std::vector<int>{50, 200}));
  EXPECT_EQ(reply.GetSerialNumber(), "AB\xC3  ");
  EXPECT_EQ(reply.GetUSBStatus(), 1);
  EXPECT_EQ(reply.GetHeater(), (Bytes{1, 2, 3, 4, 5}));
}

TEST(StatusReply, OnlyTheUsbBitCounts) {
  StatusReply reply;
  ASSERT_TRUE(Store(reply, Field(0x28, {0xBF})));
  EXPECT_EQ(reply.GetUSBStatus(), 0);
}

TEST(StatusReply, StoresAnotherReplyOrNone) {
  StatusReply reply;
  ASSERT_TRUE(Store(reply, Field(0x01, {0})));
  EXPECT_TRUE(reply.IsStatusError());
  EXPECT_FALSE(reply.SetReply(nullptr));
  EXPECT_EQ(reply.GetStatus(), 0) << "a null pointer keeps the old reply";
  ASSERT_TRUE(Store(reply, Field(0x01, {9})));
  EXPECT_EQ(reply.GetStatus(), 9);
  EXPECT_FALSE(Store(reply, {}));
  EXPECT_EQ(reply.GetStatus(), -1);
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
  } kCases[] = {
      {3, 19, 6}, {3, 13, 4}, {3, 14, 6}, {3, 12, 4}, {0xFF, 1, 6}, {0x80, 1, 6}, {0x7F, 255, 4},
  };
  for (const auto& c : kCases) {
    Bytes data(c.length);
    data[0] = c.entry_size;
    StatusReply reply;
    ASSERT_TRUE(Store(reply, Field(0x0F, data)));
    EXPECT_EQ(reply.GetInkColorCount(), c.colours) << +c.entry_size << ' ' << c.length;
  }
}

TEST(StatusReply, ReadsInkEntriesAtAStrideOfFour) {
  StatusReply reply;
  ASSERT_TRUE(Store(reply, Field(0x0F, {3, 10, 11, 12, 13, 20, 21, 22, 0xFF})));
  InkArray second{};
  InkArray first{};
  InkArray third{};
  ASSERT_EQ(reply.GetInkRemain(first.data(), second.data(), third.data()), 2);
  EXPECT_EQ((std::array{first[0], second[0], third[0]}), (std::array{12, 10, 13}));
  EXPECT_EQ((std::array{first[1], second[1], third[1]}), (std::array{22, 20, 0xFF}));
  EXPECT_EQ(reply.GetInkRemain(nullptr, second.data(), third.data()), -1);
  EXPECT_EQ(reply.GetInkRemain(first.data(), nullptr, third.data()), -1);
  EXPECT_EQ(reply.GetInkRemain(first.data(), second.data(), nullptr), -1);
}

// With a length that is a multiple of four, the last entry ends one byte behind its field: in the
// next field if there is one, and behind the reply if there is none.
TEST(StatusReply, LastInkEntryMayEndBehindItsField) {
  InkArray first{};
  InkArray second{};
  InkArray third;
  third.fill(-1);
  StatusReply reply;
  ASSERT_TRUE(Store(reply, Join({Field(0x0F, {3, 10, 11, 12}), Field(0x77, {})})));
  ASSERT_EQ(reply.GetInkRemain(first.data(), second.data(), third.data()), 1);
  EXPECT_EQ(third[0], 0x77);
  ASSERT_TRUE(Store(reply, Field(0x0F, {3, 10, 11, 12})));
  ASSERT_EQ(reply.GetInkRemain(first.data(), second.data(), third.data()), 1);
  EXPECT_EQ(first[0], 12);
  EXPECT_EQ(third[0], 0);
}

TEST(StatusReply, DataByteOfAnEmptyFieldIsMissing) {
  StatusReply reply;
  for (const Bytes& tail : {Bytes{}, Bytes{4, 4}}) {
    ASSERT_TRUE(Store(reply, Join({Field(0x01, {}), tail})));
    EXPECT_EQ(reply.GetStatus(), -1);
    EXPECT_FALSE(reply.IsStatusError());
    ASSERT_TRUE(Store(reply, Join({Field(0x02, {}), tail})));
    EXPECT_EQ(reply.GetErrorCode(), -1);
    ASSERT_TRUE(Store(reply, Join({Field(0x0F, {}), tail})));
    EXPECT_EQ(reply.GetInkColorCount(), 8);
    ASSERT_TRUE(Store(reply, Join({Field(0x28, {}), tail})));
    EXPECT_EQ(reply.GetUSBStatus(), 0);
  }
}

TEST(StatusReply, DataEndsWithTheReply) {
  StatusReply reply;
  ASSERT_TRUE(Store(reply, {0x1F, 0xFF, 'A', 'B'}));
  EXPECT_EQ(reply.GetSerialNumber(), "AB");
  EXPECT_FALSE(reply.IsStatusReady()) << "a length that overshoots leads to no further field";
  ASSERT_TRUE(Store(reply, {0x04, 0x09, 0x01, 0x04}));
  EXPECT_EQ(reply.GetWarning(), (Bytes{1, 4}));
  EXPECT_EQ(reply.GetStatus(), -1);
  ASSERT_TRUE(Store(reply, {0x2E, 1, 7, 0x2E, 9, 8}));
  EXPECT_EQ(reply.GetHeater(), (Bytes{7, 8}));
  ASSERT_TRUE(Store(reply, {0x0F, 0xFF, 3, 42}));
  InkArray first{};
  InkArray second{};
  InkArray third{};
  EXPECT_EQ(reply.GetInkRemain(first.data(), second.data(), third.data()), 63);
  EXPECT_EQ(second[0], 42);
  EXPECT_EQ(third[62], 0);
}

TEST(StatusReply, FieldAreaOfOneByteHoldsAnEmptyField) {
  StatusReply reply;
  for (const unsigned char id : Bytes{0x01, 0x02, 0x04, 0x0D, 0x0F, 0x1F, 0x28, 0x2E, 0x55}) {
    ASSERT_TRUE(Store(reply, {id}));
    EXPECT_EQ(reply.GetStatus(), -1);
    EXPECT_EQ(reply.GetWarning(), Bytes{});
    EXPECT_EQ(reply.GetSerialNumber(), "");
    EXPECT_EQ(reply.GetInkColorCount(), 8);
    EXPECT_EQ(reply.GetHeater(), Bytes{});
  }
}

// Whatever a printer sends, every reader ends and stays inside the reply (the sanitizers watch).
TEST(StatusReply, ReadersSurviveRandomFieldAreas) {
  std::mt19937 random(20240229);
  const Bytes ids = {0x01, 0x02, 0x04, 0x0D, 0x0F, 0x1F, 0x28, 0x2E};
  for (int round = 0; round < 20000; ++round) {
    Bytes area(1 + random() % 24);
    for (unsigned char& byte : area) {
      byte = random() % 2 == 0 ? ids[random() % ids.size()]
                               : static_cast<unsigned char>(random() % (round % 2 == 0 ? 6 : 256));
    }
    StatusReply reply;
    ASSERT_TRUE(Store(reply, area));
    InkArray first{};
    InkArray second{};
    InkArray third{};
    EXPECT_EQ(reply.IsStatusReady(), reply.GetStatus() == 4);
    EXPECT_EQ(reply.IsStatusError(), reply.GetStatus() == 0);
    EXPECT_LT(reply.GetErrorCode(), 256);
    EXPECT_LE(reply.GetWarning().size(), area.size());
    EXPECT_LE(reply.GetMaintTankRemain().size(), area.size());
    EXPECT_LE(reply.GetSerialNumber().size(), area.size());
    EXPECT_LE(reply.GetHeater().size(), area.size());
    EXPECT_LE(reply.GetInkRemain(first.data(), second.data(), third.data()), 63);
    EXPECT_EQ(reply.GetUSBStatus() & ~1, 0);
    EXPECT_NE(reply.GetInkColorCount(), 0);
  }
}

TEST(StatusReply, LargestFieldArea) {
  Bytes area(0xFFFF, 0);
  area[0xFFFC] = 0x01;
  area[0xFFFD] = 1;
  area[0xFFFE] = 4;
  StatusReply reply;
  ASSERT_TRUE(Store(reply, area));
  EXPECT_EQ(reply.GetStatus(), 4) << "32766 empty fields stand in front";
}

}  // namespace
