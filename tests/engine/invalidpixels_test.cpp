#include "engine/invalidpixels.h"

#include "engine/pixeltypes.h"
#include "rcommon/rbufbasedata.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

namespace quent::rasterops::engine {

namespace {

/// A rectangle with some padding between its rows.
struct Rectangle {
  std::vector<unsigned char> bytes;
  _Rbuf_BaseData record{};

  Rectangle(Rbuf_PixelType type, int rows, int columns) {
    const int size = rsys_AddressOf_rbuf_NumBytesPerPixel()[type];
    const int pitch = (columns + 3) * size;
    bytes.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(pitch), 0xAB);
    record.rows = rows;
    record.columns = columns;
    record.pixelType = type;
    record.data = record.storage = bytes.data();
    record.pitch = pitch;
    record.pixelBytes = size;
  }
  unsigned char* at(int row, int column) {
    return bytes.data() + static_cast<std::ptrdiff_t>(row) * record.pitch + column * record.pixelBytes;
  }
};

constexpr int rows = 5;
constexpr int columns = 37;

class AllTypes : public testing::TestWithParam<int> {
protected:
  Rbuf_PixelType type = static_cast<Rbuf_PixelType>(GetParam());
};

} // namespace

TEST_P(AllTypes, FillsAndCountsWhereTheMaskSays) {
  Rectangle plane(type, rows, columns);
  Rectangle mask(U8, rows, columns);
  const PixelValue one = *EncodeValue(1, type);
  const PixelValue zero = *EncodeValue(0, type);
  std::size_t invalid = 0;
  for (int r = 0; r < rows; ++r)
    for (int c = 0; c < columns; ++c) {
      std::memcpy(plane.at(r, c), zero.data(), PixelBytes(type));
      *mask.at(r, c) = (r * columns + c) % 3 == 0 ? 0 : 255;
      invalid += *mask.at(r, c) == 0 ? 1 : 0;
    }
  const std::vector<unsigned char> before = plane.bytes;
  FillInvalid(plane.record, &mask.record, one);
  EXPECT_EQ(CountEqual(plane.record, nullptr, one), invalid);
  EXPECT_EQ(CountEqual(plane.record, &mask.record, one), 0U) << "only valid pixels count";
  EXPECT_EQ(CountEqual(plane.record, &mask.record, zero), rows * columns - invalid);
  FillInvalid(plane.record, nullptr, one);
  EXPECT_EQ(CountEqual(plane.record, nullptr, one), static_cast<std::size_t>(rows * columns));
  FillInvalid(plane.record, nullptr, zero);
  EXPECT_EQ(plane.bytes, before) << "the padding between rows is left alone";
}

INSTANTIATE_TEST_SUITE_P(InvalidPixels, AllTypes, testing::Range(0, 13));

TEST(CountEqual, FloatsCompareAsReadersDo) {
  Rectangle plane(F32, 1, 5);
  const float values[5] = {0.0F, -0.0F, std::nanf("3"), -std::nanf(""), 1.0F};
  std::memcpy(plane.at(0, 0), values, sizeof(values));
  EXPECT_EQ(CountEqual(plane.record, nullptr, *EncodeValue(0, F32)), 2U) << "-0.0 equals 0.0";
  EXPECT_EQ(CountEqual(plane.record, nullptr, NaNValue(F32)), 2U) << "any NaN equals NaN";
}

TEST(CountEqual, ComplexPixelsCompareByTheirBits) {
  Rectangle plane(C64, 1, 3);
  const float values[6] = {0.0F, 0.0F, -0.0F, 0.0F, 0.0F, 1.0F};
  std::memcpy(plane.at(0, 0), values, sizeof(values));
  EXPECT_EQ(CountEqual(plane.record, nullptr, *EncodeValue(0, C64)), 1U);
}

} // namespace quent::rasterops::engine
