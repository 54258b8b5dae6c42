#include "engine/nodata.h"

#include "engine/pixeltypes.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace quent::rasterops::engine {

TEST(EncodeValue, IntegersTakeWholeNumbersOfTheirRangeOnly) {
  const struct {
    Rbuf_PixelType type;
    double least, most;
  } ranges[] = {{U1, 0, 1},
                {U2, 0, 3},
                {U4, 0, 15},
                {U8, 0, 255},
                {S8, -128, 127},
                {U16, 0, 65535},
                {S16, -32768, 32767},
                {U32, 0, 4294967295.0},
                {S32, -2147483648.0, 2147483647.0}};
  for (const auto& [type, least, most] : ranges) {
    for (const double value : {least, most}) {
      const auto encoded = EncodeValue(value, type);
      ASSERT_TRUE(encoded) << type;
      EXPECT_EQ(DecodeValue(*encoded, type), value) << type;
    }
    EXPECT_FALSE(EncodeValue(least - 1, type)) << type;
    EXPECT_FALSE(EncodeValue(most + 1, type)) << type;
    EXPECT_FALSE(EncodeValue(0.5, type)) << type;
    EXPECT_FALSE(EncodeValue(std::nan(""), type)) << type;
    EXPECT_FALSE(EncodeValue(INFINITY, type)) << type;
  }
}

TEST(EncodeValue, SinglesTakeTheNearestOne) {
  EXPECT_EQ(DecodeValue(*EncodeValue(0.1, F32), F32), static_cast<double>(0.1F));
  EXPECT_TRUE(std::isnan(DecodeValue(*EncodeValue(std::nan(""), F32), F32)));
  EXPECT_EQ(DecodeValue(*EncodeValue(-INFINITY, F32), F32), -INFINITY);
}

TEST(EncodeValue, SinglesForgiveTextThatWasRoundedUp) {
  EXPECT_EQ(DecodeValue(*EncodeValue(-3.40282347e+38, F32), F32), -static_cast<double>(FLT_MAX));
  EXPECT_EQ(DecodeValue(*EncodeValue(3.4028235e+38, F32), F32), static_cast<double>(FLT_MAX));
  EXPECT_FALSE(EncodeValue(3.5e+38, F32));
  EXPECT_FALSE(EncodeValue(-1.7976931348623157e+308, F32));
}

TEST(EncodeValue, ComplexTypesGetNoImaginaryPart) {
  float pair[2] = {9, 9};
  std::memcpy(pair, EncodeValue(-1.5, C64)->data(), sizeof(pair));
  EXPECT_EQ(pair[0], -1.5F);
  EXPECT_EQ(pair[1], 0.0F);
  double wide[2] = {9, 9};
  std::memcpy(wide, EncodeValue(-1.5, C128)->data(), sizeof(wide));
  EXPECT_EQ(wide[0], -1.5);
  EXPECT_EQ(wide[1], 0.0);
}

TEST(EncodeValue, AnyNaNBecomesTheOneThatIsWritten) {
  // Complex NODATA is compared by its bits, so all NaN must have the same.
  for (const Rbuf_PixelType type : {F32, F64, C64, C128})
    EXPECT_EQ(*EncodeValue(-std::nan("5"), type), NaNValue(type)) << type;
}

TEST(HoldsExactly, AsksForTheSameNumber) {
  EXPECT_TRUE(HoldsExactly(-9999, F32));
  EXPECT_FALSE(HoldsExactly(0.1, F32));
  EXPECT_TRUE(HoldsExactly(0.1, F64));
  EXPECT_TRUE(HoldsExactly(std::nan(""), F32));
  EXPECT_FALSE(HoldsExactly(std::nan(""), U8));
  EXPECT_FALSE(HoldsExactly(256, U8));
  EXPECT_FALSE(HoldsExactly(16777217, F32));
}

TEST(ParseNumber, ReadsWhatUsersType) {
  EXPECT_EQ(ParseNumber("-9999"), -9999);
  EXPECT_EQ(ParseNumber("+1.5e3"), 1500);
  EXPECT_TRUE(std::isnan(ParseNumber("nan")));
  EXPECT_EQ(ParseNumber("-inf"), -INFINITY);
  for (const char* text : {"", "x", "1x", "1 ", "0x10", "1,5", "--1"})
    EXPECT_THROW(ParseNumber(text), std::invalid_argument) << text;
}

TEST(NumberText, ReadsAsTheSameNumber) {
  for (const double value : {0.0, -9999.0, 0.1, 1e300, 3.4028234663852886e38, 5e-324})
    EXPECT_EQ(ParseNumber(NumberText(value)), value);
  EXPECT_EQ(NumberText(-9999), "-9999");
  EXPECT_EQ(NumberText(std::numeric_limits<double>::quiet_NaN()), "nan");
}

} // namespace quent::rasterops::engine
