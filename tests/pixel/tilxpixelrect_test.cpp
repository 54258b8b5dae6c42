/// Owners of single records.
#include "rasterops/tilxpixelrect.h"

#include "rasterops/legacyhelpertemplate.h"
#include "rasterops/pixelrectdeleter.h"
#include "rcommon/rsys.h"
#include "support/blocks.h"

namespace {

using namespace testsupport;
using reference::Bytes;

_Rbuf_BaseData* NewRect(unsigned char value) {
  _Rbuf_BaseData* rect = tilx_PixelRectCreate(1, 1, U8, nullptr);
  *rect->data = value;
  return rect;
}

TEST(TilxPixelRectOwner, IsEmptyAtFirst) {
  TilxPixelRect rect;
  EXPECT_FALSE(static_cast<bool>(rect));
  EXPECT_TRUE(!rect);
  EXPECT_EQ(static_cast<_Rbuf_BaseData*>(rect), nullptr);
  rect.Free();
}

TEST(TilxPixelRectOwner, AdoptsARecord) {
  _Rbuf_BaseData* record = NewRect(7);
  TilxPixelRect rect(record);
  EXPECT_TRUE(static_cast<bool>(rect));
  EXPECT_FALSE(!rect);
  EXPECT_EQ(static_cast<_Rbuf_BaseData*>(rect), record);
  EXPECT_EQ(*rect->data, 7);
}

TEST(TilxPixelRectOwner, FreesTheHeldRecordWhenAnotherIsAssigned) {
  TilxPixelRect rect(NewRect(1));
  rect = NewRect(2);
  EXPECT_EQ(*rect->data, 2);
  rect.Free();
  EXPECT_TRUE(!rect);
}

TEST(TilxPixelRectOwner, AssignedItsOwnPointerKeepsItAndFreesNothing) {
  TilxPixelRect rect(NewRect(9));
  rect = static_cast<_Rbuf_BaseData*>(rect);
  ASSERT_TRUE(static_cast<bool>(rect));
  EXPECT_EQ(*rect->data, 9);
  EXPECT_NE(rsys_HeapBlockOf(rect->data), nullptr);
}

TEST(TilxPixelRectOwner, CopiesThePointerWithoutCounting) {
  _Rbuf_BaseData* record = NewRect(4);
  TilxPixelRect first(record);
  {
    TilxPixelRect second;
    second = first;
    EXPECT_EQ(static_cast<_Rbuf_BaseData*>(second), record);
  } // deletes the record
  new (&first) TilxPixelRect();
}

TEST(TilxPixelRectOwner, SlotForACFunctionIsFreedFirst) {
  TilxPixelRect rect(NewRect(1));
  _Rbuf_BaseData** slot = rect;
  EXPECT_EQ(*slot, nullptr);
  EXPECT_TRUE(!rect);
  *slot = NewRect(3);
  EXPECT_EQ(*rect->data, 3);
}

TEST(PixelRectDeleterClass, DeletesTheRecordOfASharedPointer) {
  Bytes pixels{5};
  boost::shared_ptr<_Rbuf_BaseData> own(NewRect(1), quent::rasterops::PixelRectDeleter());
  boost::shared_ptr<_Rbuf_BaseData> wrapping(
      rbuf_BaseDataCreate(1, 1, U8, rbuf_RowMajor, pixels.data(), nullptr),
      quent::rasterops::PixelRectDeleter());
  own.reset();
  wrapping.reset();
  EXPECT_EQ(pixels[0], 5);
  quent::rasterops::PixelRectDeleter()(nullptr);
}

TEST(LegacyHelper, FreesHeapMemory) {
  LegacyHelperTemplate<unsigned char> memory(static_cast<unsigned char*>(rsys_HeapMalloc(10)));
  unsigned char* first = memory;
  EXPECT_EQ(rsys_HeapBlockOf(first), first);
  memory.Free();
  EXPECT_EQ(memory.get(), nullptr);
  memory.Reset(static_cast<unsigned char*>(rsys_HeapMalloc(20)));
  unsigned char* released = memory.Release();
  EXPECT_EQ(memory.get(), nullptr);
  EXPECT_EQ(rsys_HeapBlockOf(released), released);
  rsys_HeapFree(released);
}

TEST(LegacyHelper, DeletesAStack) {
  LegacyHelperTemplate<_Rbuf_BaseDataStack> stack(tilx_PixelRectStackCreate(2, 3, 1, U8, nullptr));
  EXPECT_EQ(stack->count, 2);
  stack.Free();
  EXPECT_EQ(stack.get(), nullptr);
  stack.Free();
}

} // namespace
