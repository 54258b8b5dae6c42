/// Records of pixel rectangles: made, copied, looked at through windows, resized.
#include "rcommon/rbuf.h"

#include "rcommon/rbufbasedata.h"
#include "support/blocks.h"
#include "support/errorslot.h"
#include "support/failures.h"

#include <limits>
#include <numeric>

namespace {

using namespace testsupport;
using reference::Bytes;

_Rbuf_BaseData* Numbered(int rows, int columns) {
  _Rbuf_BaseData* rect = rbuf_BaseDataCreate(rows, columns, U8, rbuf_RowMajor, nullptr, nullptr);
  std::iota(rect->data, rect->data + rows * columns, static_cast<unsigned char>(1));
  return rect;
}

TEST(RbufBaseDataCreate, OfNewPixelsOwnsThem) {
  ErrorSlot slot;
  RbufBaseData rect(rbuf_BaseDataCreate(3, 5, U16, rbuf_RowMajor, nullptr, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(rect->rows, 3);
  EXPECT_EQ(rect->columns, 5);
  EXPECT_EQ(rect->pixelType, U16);
  EXPECT_EQ(rect->objectType, rbuf_RowMajor);
  EXPECT_EQ(rect->data, rect->storage);
  EXPECT_NE(rect->data, nullptr);
  EXPECT_EQ(rect->pitch, 10);
  EXPECT_EQ(rect->external, 0);
  EXPECT_EQ(rect->numElements, 15);
  EXPECT_EQ(rect->pixelBytes, 2);
}

TEST(RbufBaseDataCreate, OfNewPixelsIsFollowedByAZeroedRow) {
  RbufBaseData rect(rbuf_BaseDataCreate(3, 5, U16, rbuf_RowMajor, nullptr, nullptr));
  for (int i = 0; i < rect->pitch; ++i)
    EXPECT_EQ(rect->data[3 * rect->pitch + i], 0);
}

TEST(RbufBaseDataCreate, OverGivenPixelsLeavesThemToTheCaller) {
  Bytes pixels(12, 9);
  ErrorSlot slot;
  _Rbuf_BaseData* rect = rbuf_BaseDataCreate(3, 4, S8, rbuf_RowMajor, pixels.data(), slot);
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(rect->data, pixels.data());
  EXPECT_EQ(rect->storage, pixels.data());
  EXPECT_NE(rect->external, 0);
  EXPECT_EQ(rect->pitch, 4);
  rbuf_BaseDataDelete(rect, slot);
  EXPECT_FALSE(slot.Failed());
  EXPECT_EQ(pixels, Bytes(12, 9));
}

TEST(RbufBaseDataCreate, OfAColumnMajorRecordHasColumnsOneAfterTheOther) {
  RbufBaseData rect(rbuf_BaseDataCreate(3, 5, U16, rbuf_ColumnMajor, nullptr, nullptr));
  EXPECT_EQ(rect->pitch, 6);
  EXPECT_EQ(rect->objectType, rbuf_ColumnMajor);
}

TEST(RbufBaseDataCreate, OfNoRowsOrNoColumnsIsAnEmptyRecord) {
  ErrorSlot slot;
  RbufBaseData noRows(rbuf_BaseDataCreate(0, 5, F32, rbuf_RowMajor, nullptr, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(noRows->numElements, 0);
  RbufBaseData noColumns(rbuf_BaseDataCreate(5, 0, F32, rbuf_RowMajor, nullptr, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(noColumns->numElements, 0);
}

TEST(RbufBaseDataCreate, RejectsWhatNoRecordCanHold) {
  constexpr int large = std::numeric_limits<int>::max();
  const auto fails = [](int rows, int columns, int type, int order) {
    ErrorSlot slot;
    _Rbuf_BaseData* rect = rbuf_BaseDataCreate(rows, columns, static_cast<Rbuf_PixelType>(type),
                                               static_cast<Rbuf_ObjectType>(order), nullptr, slot);
    EXPECT_EQ(rect, nullptr);
    return slot.Failed();
  };
  EXPECT_TRUE(fails(-1, 1, U8, 3));
  EXPECT_TRUE(fails(1, -1, U8, 3));
  EXPECT_TRUE(fails(1, 1, 13, 3));
  EXPECT_TRUE(fails(1, 1, -1, 3));
  EXPECT_TRUE(fails(1, 1, U8, 4));
  EXPECT_TRUE(fails(1, large, C128, 3));   // pitch
  EXPECT_TRUE(fails(large, large, U8, 3)); // number of elements
}

TEST(RbufBaseDataCreate, WithANullSlotFailsSilently) {
  EXPECT_EQ(rbuf_BaseDataCreate(-1, 1, U8, rbuf_RowMajor, nullptr, nullptr), nullptr);
}

TEST(RbufBaseDataCreate, EmptiesTheSlotWhenItSucceeds) {
  Rfault_ErrorReport* slot = reinterpret_cast<Rfault_ErrorReport*>(&slot);
  RbufBaseData rect(rbuf_BaseDataCreate(1, 1, U8, rbuf_RowMajor, nullptr, &slot));
  EXPECT_EQ(slot, nullptr);
}

TEST(RbufBaseDataCopy, OfAWindowOwnsPixelsWithoutPadding) {
  ErrorSlot slot;
  RbufBaseData whole(Numbered(4, 5));
  RbufBaseData window(rbuf_BaseDataReDerive(whole, nullptr, 1, 2, 2, 3, slot));
  RbufBaseData copy(rbuf_BaseDataCopy(window, nullptr, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(copy->pitch, 3);
  EXPECT_EQ(copy->external, 0);
  EXPECT_EQ(PixelBytesOf(copy), (Bytes{8, 9, 10, 13, 14, 15}));
  whole->data[7] = 99;
  EXPECT_EQ(copy->data[0], 8);
}

TEST(RbufBaseDataCopy, IntoAWindowLeavesThePixelsAroundItAlone) {
  ErrorSlot slot;
  RbufBaseData whole(Numbered(3, 4));
  RbufBaseData window(rbuf_BaseDataReDerive(whole, nullptr, 0, 1, 2, 2, slot));
  RbufBaseData source(Numbered(2, 2));
  EXPECT_EQ(rbuf_BaseDataCopy(source, window, slot), static_cast<_Rbuf_BaseData*>(window));
  EXPECT_FALSE(slot.Failed());
  EXPECT_EQ(PixelBytesOf(whole), (Bytes{1, 1, 2, 4, 5, 3, 4, 8, 9, 10, 11, 12}));
}

TEST(RbufBaseDataCopy, IntoAnotherSizeOrTypeIsReported) {
  ErrorSlot slot;
  RbufBaseData source(Numbered(2, 2));
  RbufBaseData larger(Numbered(2, 3));
  rbuf_BaseDataCopy(source, larger, slot);
  EXPECT_TRUE(slot.Failed());
  RbufBaseData wider(rbuf_BaseDataCreate(2, 2, U16, rbuf_RowMajor, nullptr, nullptr));
  rbuf_BaseDataCopy(source, wider, slot);
  EXPECT_TRUE(slot.Failed());
}

TEST(RbufBaseDataDelete, AcceptsNull) {
  ErrorSlot slot;
  rbuf_BaseDataDelete(nullptr, slot);
  EXPECT_FALSE(slot.Failed());
}

TEST(RbufBaseDataReDerive, LooksAtAWindowOfTheSamePixels) {
  ErrorSlot slot;
  RbufBaseData whole(Numbered(4, 5));
  RbufBaseData window(rbuf_BaseDataReDerive(whole, nullptr, 1, 2, 2, 3, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(window->data, whole->data + 7);
  EXPECT_EQ(window->pitch, 5);
  EXPECT_EQ(window->rows, 2);
  EXPECT_EQ(window->columns, 3);
  EXPECT_EQ(window->numElements, 6);
  EXPECT_NE(window->external, 0);
}

TEST(RbufBaseDataReDerive, OfAMovingWindowDoesNotDependOnTheEarlierRecord) {
  ErrorSlot slot;
  RbufBaseData whole(Numbered(4, 5));
  _Rbuf_BaseData* earlier = rbuf_BaseDataReDerive(whole, nullptr, 0, 0, 2, 2, slot);
  RbufBaseData moved(rbuf_BaseDataReDerive(whole, earlier, 2, 3, 1, 1, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_NE(static_cast<_Rbuf_BaseData*>(moved), earlier);
  rbuf_BaseDataDelete(earlier, slot);
  EXPECT_EQ(PixelBytesOf(moved), Bytes{14});
}

TEST(RbufBaseDataReDerive, RejectsAWindowThatRunsPastTheSource) {
  RbufBaseData whole(Numbered(4, 5));
  const auto fails = [&](int row, int column, int rows, int columns) {
    ErrorSlot slot;
    return rbuf_BaseDataReDerive(whole, nullptr, row, column, rows, columns, slot) == nullptr &&
           slot.Failed();
  };
  EXPECT_TRUE(fails(0, 3, 1, 3));
  EXPECT_TRUE(fails(3, 0, 2, 1));
  EXPECT_TRUE(fails(-1, 0, 1, 1));
  EXPECT_TRUE(fails(0, -1, 1, 1));
  EXPECT_TRUE(fails(0, 0, -1, 1));
  EXPECT_TRUE(fails(std::numeric_limits<int>::max(), 0, 2, 1));
}

TEST(RbufBaseDataReallocate, KeepsThePixelsThatLieInBothSizes) {
  ErrorSlot slot;
  RbufBaseData rect(Numbered(2, 3));
  rbuf_BaseDataReallocate(rect, 3, 2, slot);
  ASSERT_FALSE(slot.Failed()) << slot.Text();
  EXPECT_EQ(rect->numElements, 6);
  EXPECT_EQ(PixelBytesOf(rect), (Bytes{1, 2, 4, 5, 0, 0}));
}

TEST(RbufBaseDataReallocate, OfExternalPixelsIsReported) {
  Bytes pixels(4);
  ErrorSlot slot;
  RbufBaseData rect(rbuf_BaseDataCreate(2, 2, U8, rbuf_RowMajor, pixels.data(), slot));
  rbuf_BaseDataReallocate(rect, 3, 3, slot);
  EXPECT_TRUE(slot.Failed());
  EXPECT_EQ(rect->rows, 2);
}

TEST(RbufBaseDataSetScalar, ConvertsTheDouble) {
  ErrorSlot slot;
  RbufBaseData rect(Numbered(2, 3));
  rbuf_BaseDataSetScalar(rect, 2.5, 0, 0, slot);
  rbuf_BaseDataSetScalar(rect, 1000, 1, 2, slot);
  EXPECT_FALSE(slot.Failed());
  EXPECT_EQ(PixelBytesOf(rect), (Bytes{3, 2, 3, 4, 5, 255}));
  rbuf_BaseDataSetScalar(rect, 1, 2, 0, slot);
  EXPECT_TRUE(slot.Failed());
}

TEST(RbufBaseDataWrapper, ConstructorRaisesWhatTheCallReports) {
  EXPECT_EQ(FailureOf([] { RbufBaseData(-1, 1, U8, rbuf_RowMajor, nullptr); }).kind, Kind::Rfault);
}

TEST(RbufBaseDataWrapper, ReleaseHandsTheRecordOn) {
  RbufBaseData rect(2, 2, U8, rbuf_RowMajor, nullptr);
  _Rbuf_BaseData* record = rect.Release();
  EXPECT_EQ(static_cast<_Rbuf_BaseData*>(rect), nullptr);
  EXPECT_EQ(rect.Release(), nullptr);
  rect = record;
  rect = record; // itself: nothing is freed
  EXPECT_EQ(rect->rows, 2);
  *static_cast<_Rbuf_BaseData**>(rect) = Numbered(1, 1);
  EXPECT_EQ(rect->rows, 1);
  EXPECT_EQ(*&rect, static_cast<_Rbuf_BaseData*>(rect));
}

} // namespace
