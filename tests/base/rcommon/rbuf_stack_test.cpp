/// Stacks of pixel rectangles.
#include "rcommon/rbuf.h"

#include "rasterops/legacyhelpertemplate.h"
#include "support/blocks.h"
#include "support/errorslot.h"

#include <limits>

namespace {

using namespace testsupport;
using reference::Bytes;

_Rbuf_BaseData* Wrap(Bytes& bytes, std::size_t offset, int columns) {
  return rbuf_BaseDataCreate(1, columns, U8, rbuf_RowMajor, bytes.data() + offset, nullptr);
}

TEST(RbufStackCreate, MakesLayersOfOneSizeThatItOwns) {
  ErrorSlot slot;
  RbufBaseDataStack stack(rbuf_BaseDataStackCreate(3, 2, 4, S16, rbuf_RowMajor, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(stack->count, 3);
  EXPECT_EQ(stack->shared, 0);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(stack->layers[i]->rows, 2);
    EXPECT_EQ(stack->layers[i]->columns, 4);
    EXPECT_EQ(stack->layers[i]->pixelType, S16);
    EXPECT_EQ(stack->layers[i]->external, 0);
  }
}

TEST(RbufStackCreate, RejectsWhatNoStackCanHold) {
  ErrorSlot slot;
  EXPECT_EQ(rbuf_BaseDataStackCreate(-1, 1, 1, U8, rbuf_RowMajor, slot), nullptr);
  EXPECT_TRUE(slot.Failed());
  EXPECT_EQ(rbuf_BaseDataStackCreate(1, -1, 1, U8, rbuf_RowMajor, slot), nullptr);
  EXPECT_TRUE(slot.Failed());
}

TEST(RbufStackPtrCreate, MakesNullLayers) {
  ErrorSlot slot;
  RbufBaseDataStack stack(rbuf_BaseDataStackPtrCreate(2, slot));
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(stack->count, 2);
  EXPECT_EQ(stack->layers[0], nullptr);
  EXPECT_EQ(stack->layers[1], nullptr);
}

TEST(RbufStackCopy, IsDeepLayerByLayer) {
  ErrorSlot slot;
  RbufBaseDataStack stack(rbuf_BaseDataStackCreate(2, 1, 3, U8, rbuf_RowMajor, slot));
  SetPixelBytes(stack->layers[0], {1, 2, 3});
  SetPixelBytes(stack->layers[1], {4, 5, 6});
  RbufBaseDataStack copy(rbuf_BaseDataStackCopy(stack, nullptr, slot));
  ASSERT_FALSE(slot.Failed());
  SetPixelBytes(stack->layers[1], {7, 7, 7});
  EXPECT_EQ(PixelBytesOf(copy->layers[0]), (Bytes{1, 2, 3}));
  EXPECT_EQ(PixelBytesOf(copy->layers[1]), (Bytes{4, 5, 6}));
  EXPECT_EQ(rbuf_BaseDataStackCopy(stack, copy, slot), static_cast<_Rbuf_BaseDataStack*>(copy));
  EXPECT_EQ(PixelBytesOf(copy->layers[1]), (Bytes{7, 7, 7}));
}

TEST(RbufStackCopy, IntoAnotherNumberOfLayersIsReported) {
  ErrorSlot slot;
  RbufBaseDataStack two(rbuf_BaseDataStackCreate(2, 1, 3, U8, rbuf_RowMajor, slot));
  RbufBaseDataStack three(rbuf_BaseDataStackCreate(3, 1, 3, U8, rbuf_RowMajor, slot));
  rbuf_BaseDataStackCopy(two, three, slot);
  EXPECT_TRUE(slot.Failed());
}

TEST(RbufStackDelete, AcceptsNullAndLeavesSharedLayersAlone) {
  ErrorSlot slot;
  rbuf_BaseDataStackDelete(nullptr, slot);
  EXPECT_FALSE(slot.Failed());
  Bytes bytes{1, 2, 3};
  _Rbuf_BaseData* layer = Wrap(bytes, 0, 3);
  _Rbuf_BaseDataStack* stack = rbuf_BaseDataStackPtrCreate(1, slot);
  stack->layers[0] = layer;
  stack->shared = 1;
  rbuf_BaseDataStackDelete(stack, slot);
  EXPECT_FALSE(slot.Failed());
  EXPECT_EQ(layer->columns, 3);
  rbuf_BaseDataDelete(layer, slot);
}

TEST(RbufStackDataSize, CountsAllLayersAndIsAMultipleOfTheirNumber) {
  ErrorSlot slot;
  const std::size_t size = rbuf_BaseDataStackDataSize(3, 5, 7, S32, rbuf_RowMajor, slot);
  EXPECT_FALSE(slot.Failed());
  EXPECT_GE(size, 3u * 5 * 7 * 4);
  EXPECT_EQ(size % 3, 0u);
}

TEST(RbufStackDataSize, ThatOverflowsIsReported) {
  constexpr int large = std::numeric_limits<int>::max();
  ErrorSlot slot;
  EXPECT_EQ(rbuf_BaseDataStackDataSize(large, large, large, C128, rbuf_RowMajor, slot), 0u);
  EXPECT_TRUE(slot.Failed());
  EXPECT_EQ(rbuf_BaseDataStackDataSize(1, -1, 1, U8, rbuf_RowMajor, slot), 0u);
  EXPECT_TRUE(slot.Failed());
}

TEST(RbufStackIsContiguous, AsksForEvenSpacing) {
  Bytes bytes(64);
  const auto contiguous = [&](std::size_t second, std::size_t third) {
    RbufBaseDataStack stack(rbuf_BaseDataStackPtrCreate(3, nullptr));
    stack->layers[0] = Wrap(bytes, 0, 4);
    stack->layers[1] = Wrap(bytes, second, 4);
    stack->layers[2] = Wrap(bytes, third, 4);
    return rbuf_BaseDataStackIsContiguous(stack);
  };
  EXPECT_TRUE(contiguous(4, 8));
  EXPECT_TRUE(contiguous(10, 20));
  EXPECT_FALSE(contiguous(10, 21));
}

TEST(RbufStackIsContiguous, AsksForOneAllocation) {
  RbufBaseDataStack stack(rbuf_BaseDataStackCreate(2, 4, 4, U8, rbuf_RowMajor, nullptr));
  EXPECT_FALSE(rbuf_BaseDataStackIsContiguous(stack)); // each layer has an allocation of its own
}

TEST(RbufStackElement, IsTheAddressOfOnePixel) {
  RbufBaseDataStack stack(rbuf_BaseDataStackCreate(2, 3, 4, U16, rbuf_RowMajor, nullptr));
  EXPECT_EQ(stack.Element(1, 2, 3), stack->layers[1]->data + 2 * 8 + 3 * 2);
}

} // namespace
