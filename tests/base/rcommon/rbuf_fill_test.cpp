/// Fills: rbuf_FillPixels and the tables of fills, and the tables of sizes and names.
#include "rcommon/rbuf.h"

#include "reference/conversion.h"
#include "support/blocks.h"
#include "support/errorslot.h"
#include "support/randomblock.h"

namespace {

using namespace testsupport;
using reference::Bytes;

class RbufFill : public testing::TestWithParam<Rbuf_PixelType> {};
INSTANTIATE_TEST_SUITE_P(Of, RbufFill, testing::ValuesIn(kAllTypes),
                         [](const auto& type) { return reference::TypeName(type.param); });

TEST_P(RbufFill, WritesTheBytesOfTheValueToEveryPixelAndNothingElse) {
  Random random(FirstSeed());
  const auto bytes = static_cast<std::size_t>(reference::PixelBytes(GetParam()));
  for (const std::size_t count : {0, 1, 2, 15, 129, 4099}) {
    const Bytes value = RandomPixel(random, GetParam());
    Bytes filled(count * bytes + 16, 0xA5);
    ErrorSlot slot;
    rbuf_FillPixels(filled.data(), GetParam(), value.data(), count, slot);
    EXPECT_FALSE(slot.Failed());
    Bytes expected = reference::FillPixels(value, count);
    expected.resize(filled.size(), 0xA5);
    EXPECT_EQ(filled, expected) << count << " pixels";
  }
}

TEST_P(RbufFill, TableEntryFillsContiguousPixels) {
  Random random(FirstSeed());
  const Bytes value = RandomPixel(random, GetParam());
  Bytes filled(value.size() * 9);
  rsys_AddressOf_rbuf_Fill()[GetParam()](filled.data(), value.data(), 9);
  EXPECT_EQ(filled, reference::FillPixels(value, 9));
}

TEST_P(RbufFill, WithStepsTouchesOnlyThePixelsAtTheSteps) {
  Random random(FirstSeed());
  const Bytes value = RandomPixel(random, GetParam());
  Bytes filled = RandomPixels(random, GetParam(), 3 * 5);
  Bytes expected = filled;
  for (std::size_t i = 0; i < 5; ++i)
    std::copy(value.begin(), value.end(), expected.begin() + static_cast<long>(3 * i * value.size()));
  rsys_AddressOf_rbuf_FillInc()[GetParam()](filled.data(), static_cast<std::ptrdiff_t>(3 * value.size()),
                                            value.data(), 5);
  EXPECT_EQ(filled, expected);
}

TEST_P(RbufFill, BytesPerPixelAndNameAreThoseOfTheType) {
  EXPECT_EQ(rsys_AddressOf_rbuf_NumBytesPerPixel()[GetParam()], reference::PixelBytes(GetParam()));
  EXPECT_STREQ(rsys_AddressOf_rbuf_PixelTypeName()[GetParam()], reference::TypeName(GetParam()));
}

TEST(RbufFillFailures, AnUnknownTypeIsReportedAndWritesNothing) {
  unsigned char pixel[16] = {7};
  const unsigned char value[16] = {};
  ErrorSlot slot;
  rbuf_FillPixels(pixel, static_cast<Rbuf_PixelType>(13), value, 1, slot);
  EXPECT_TRUE(slot.Failed());
  EXPECT_EQ(pixel[0], 7);
}

TEST(RbufPixelTypeNames, AreEndedByANullPointer) {
  EXPECT_EQ(rsys_AddressOf_rbuf_PixelTypeName()[rbuf_PixelTypeCount], nullptr);
}

TEST(RbufMaskOperation, CombinesTwoMasksByteByByte) {
  ErrorSlot slot;
  const auto combined = [&](Rbuf_MaskOperator operation, unsigned char first, unsigned char second) {
    _Rbuf_BaseData* a = rbuf_BaseDataCreate(1, 1, U8, rbuf_RowMajor, nullptr, slot);
    _Rbuf_BaseData* b = rbuf_BaseDataCreate(1, 1, U8, rbuf_RowMajor, nullptr, slot);
    *a->data = first;
    *b->data = second;
    rbuf_MaskOperation(a, b, operation, slot);
    EXPECT_FALSE(slot.Failed()) << slot.Text();
    const int byte = *a->data;
    rbuf_BaseDataDelete(a, nullptr);
    rbuf_BaseDataDelete(b, nullptr);
    return byte;
  };
  EXPECT_EQ(combined(rbuf_MaskAnd, 255, 100), 100);
  EXPECT_EQ(combined(rbuf_MaskAnd, 0, 100), 0);
  EXPECT_EQ(combined(rbuf_MaskOr, 7, 100), 100);
  EXPECT_EQ(combined(rbuf_MaskXor, 7, 100), 0);
  EXPECT_EQ(combined(rbuf_MaskXor, 7, 0), 255);
  EXPECT_EQ(combined(rbuf_MaskNot, 3, 0), 255);
  EXPECT_EQ(combined(rbuf_MaskNot, 3, 9), 0);
}

TEST(RbufMaskOperation, OfTwoSizesIsReported) {
  ErrorSlot slot;
  _Rbuf_BaseData* a = rbuf_BaseDataCreate(1, 1, U8, rbuf_RowMajor, nullptr, slot);
  _Rbuf_BaseData* b = rbuf_BaseDataCreate(1, 2, U8, rbuf_RowMajor, nullptr, slot);
  rbuf_MaskOperation(a, b, rbuf_MaskAnd, slot);
  EXPECT_TRUE(slot.Failed());
  rbuf_BaseDataDelete(a, nullptr);
  rbuf_BaseDataDelete(b, nullptr);
}

} // namespace
