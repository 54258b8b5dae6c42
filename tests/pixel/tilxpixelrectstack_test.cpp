/// Owners of stacks.
#include "rasterops/tilxpixelrectstack.h"

#include "rasterops/tilxpixelrect.h"
#include "rasterops/tilxpixelrectstackarray.h"
#include "support/blocks.h"
#include "support/failures.h"

#include <new>
#include <type_traits>

namespace {

using namespace testsupport;
using reference::Bytes;

_Rbuf_BaseDataStack* NewStack(int layers) {
  return tilx_PixelRectStackCreate(layers, 2, 1, U8, nullptr);
}

TEST(TilxPixelRectStackOwner, IsEmptyAtFirst) {
  TilxPixelRectStack stack;
  EXPECT_FALSE(static_cast<bool>(stack));
  EXPECT_TRUE(!stack);
  EXPECT_EQ(static_cast<_Rbuf_BaseDataStack*>(stack), nullptr);
  EXPECT_TRUE(std::has_virtual_destructor_v<TilxPixelRectStack>);
}

TEST(TilxPixelRectStackOwner, OfACountHasLayersOfOneOneBitPixel) {
  TilxPixelRectStack stack(3);
  ASSERT_TRUE(static_cast<bool>(stack));
  EXPECT_EQ(stack->count, 3);
  EXPECT_EQ(stack.datalayer(2)->rows, 1);
  EXPECT_EQ(stack.datalayer(2)->columns, 1);
  EXPECT_EQ(stack.datalayer(2)->pixelType, U1);
}

TEST(TilxPixelRectStackOwner, OfANegativeCountRaises) {
  EXPECT_EQ(FailureOf([] { TilxPixelRectStack stack(-1); }).kind, Kind::Rfault);
}

TEST(TilxPixelRectStackOwner, SharingARectangleSeesItsPixelsChange) {
  TilxPixelRect rect(tilx_PixelRectCreate(2, 1, U8, nullptr));
  SetPixelBytes(rect, {1, 2});
  {
    TilxPixelRectStack stack(rect, 1);
    EXPECT_EQ(stack->count, 1);
    EXPECT_EQ(stack->shared, 1);
    EXPECT_EQ(stack.datalayer(0), static_cast<_Rbuf_BaseData*>(rect));
    stack.datalayer(0)->data[1] = 9;
  }
  EXPECT_EQ(PixelBytesOf(rect), (Bytes{1, 9}));
}

TEST(TilxPixelRectStackOwner, NotSharingARectangleHasAPrivateCopy) {
  TilxPixelRect rect(tilx_PixelRectCreate(2, 1, U8, nullptr));
  SetPixelBytes(rect, {1, 2});
  TilxPixelRectStack stack(rect, 0);
  EXPECT_EQ(stack->shared, 0);
  EXPECT_EQ(PixelBytesOf(stack.datalayer(0)), (Bytes{1, 2}));
  stack.datalayer(0)->data[1] = 9;
  EXPECT_EQ(PixelBytesOf(rect), (Bytes{1, 2}));
}

TEST(TilxPixelRectStackOwner, OfANullRectangleRaises) {
  ExpectFailure(Kind::Rfault, "TilxPixelRectStack::Invalid arguments for constructor",
                [] { TilxPixelRectStack stack(static_cast<_Rbuf_BaseData*>(nullptr), 1); });
}

TEST(TilxPixelRectStackOwner, AssignmentDeletesTheHeldStackUnlessItIsTheSame) {
  TilxPixelRectStack stack(NewStack(1));
  stack = NewStack(2);
  EXPECT_EQ(stack->count, 2);
  stack = static_cast<_Rbuf_BaseDataStack*>(stack);
  EXPECT_EQ(stack->count, 2);
  stack = static_cast<_Rbuf_BaseDataStack*>(nullptr);
  EXPECT_TRUE(!stack);
}

TEST(TilxPixelRectStackOwner, ReleaseLeavesTheWrapperNullAndItsDestructorFreesNothing) {
  _Rbuf_BaseDataStack* released = nullptr;
  {
    TilxPixelRectStack stack(NewStack(2));
    released = stack.Release();
    EXPECT_TRUE(!stack);
    EXPECT_EQ(stack.Release(), nullptr);
  }
  EXPECT_EQ(released->count, 2);
  EXPECT_EQ(released->layers[1]->columns, 2);
  tilx_PixelRectStackDelete(released, nullptr);
}

TEST(TilxPixelRectStackOwner, CopiesShareThePointer) {
  TilxPixelRectStack first(NewStack(1));
  TilxPixelRectStack second(first);
  EXPECT_EQ(static_cast<_Rbuf_BaseDataStack*>(second), static_cast<_Rbuf_BaseDataStack*>(first));
  second.Release();
  second = first;
  EXPECT_EQ(static_cast<_Rbuf_BaseDataStack*>(second), static_cast<_Rbuf_BaseDataStack*>(first));
  second.Release();
}

TEST(TilxPixelRectStackOwner, AddressOfTheSlotFreesNothing) {
  TilxPixelRectStack stack(NewStack(1));
  _Rbuf_BaseDataStack** slot = stack;
  EXPECT_EQ(*slot, static_cast<_Rbuf_BaseDataStack*>(stack));
  EXPECT_TRUE(static_cast<bool>(stack));
}

TEST(TilxPixelRectStackArrayOwner, PresentsTheStacksThatWereAdded) {
  TilxPixelRectStackArray array;
  EXPECT_EQ(array.count, 0);
  EXPECT_TRUE(std::has_virtual_destructor_v<TilxPixelRectStackArray>);
  for (int i = 1; i <= 20; ++i) {
    _Rbuf_BaseDataStack* stack = NewStack(i);
    array.AddStack(stack);
    ASSERT_EQ(array.count, i);
    EXPECT_EQ(array.stacks[i - 1], stack);
  }
  EXPECT_EQ(array.stacks[0]->count, 1);
}

} // namespace
