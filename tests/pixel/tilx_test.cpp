/// The C functions of the block layer.
#include "rasterops/tilx.h"

#include "reference/conversion.h"
#include "support/blocks.h"
#include "support/errorslot.h"
#include "support/randomblock.h"

namespace {

using namespace testsupport;
using reference::Bytes;

/// Expects a report of a tilx function around the report of the base library.
void ExpectWrapped(const ErrorSlot& slot, const char* function, const char* message, long line) {
  ASSERT_TRUE(slot.Failed());
  EXPECT_STREQ(rfault_FunctionName(slot.Report()), function);
  EXPECT_STREQ(rfault_Message(slot.Report()), message);
  EXPECT_EQ(rfault_Line(slot.Report()), line);
  EXPECT_EQ(rfault_Severity(slot.Report()), 2);
  EXPECT_NE(rfault_Inner(slot.Report()), nullptr);
}

TEST(Tilx, PixelRectCreateTakesColumnsBeforeRows) {
  ErrorSlot slot;
  _Rbuf_BaseData* rect = tilx_PixelRectCreate(5, 3, U16, slot);
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(rect->columns, 5);
  EXPECT_EQ(rect->rows, 3);
  EXPECT_EQ(rect->objectType, rbuf_RowMajor);
  EXPECT_EQ(rect->external, 0);
  tilx_PixelRectDelete(rect, slot);
  EXPECT_FALSE(slot.Failed());
}

TEST(Tilx, PixelRectStackCreateTakesColumnsBeforeRows) {
  ErrorSlot slot;
  _Rbuf_BaseDataStack* stack = tilx_PixelRectStackCreate(2, 5, 3, F32, slot);
  ASSERT_FALSE(slot.Failed());
  EXPECT_EQ(stack->count, 2);
  EXPECT_EQ(stack->layers[1]->columns, 5);
  EXPECT_EQ(stack->layers[1]->rows, 3);
  tilx_PixelRectStackDelete(stack, slot);
  EXPECT_FALSE(slot.Failed());
}

TEST(Tilx, FailuresWrapTheReportOfTheBaseLibrary) {
  ErrorSlot slot;
  EXPECT_EQ(tilx_PixelRectCreate(-1, 1, U8, slot), nullptr);
  ExpectWrapped(slot, "tilx_PixelRectCreate", "rbuf_BaseDataCreate failed", 80);
  EXPECT_EQ(tilx_PixelRectStackCreate(1, -1, 1, U8, slot), nullptr);
  ExpectWrapped(slot, "tilx_PixelRectStackCreate", "rbuf_BaseDataStackCreate failed", 222);
}

TEST(Tilx, FailuresToCopyWrapTheReportOfTheBaseLibrary) {
  ErrorSlot slot;
  _Rbuf_BaseData* one = tilx_PixelRectCreate(1, 1, U8, slot);
  _Rbuf_BaseData* two = tilx_PixelRectCreate(2, 1, U8, slot);
  tilx_PixelRectCopy(one, two, slot);
  ExpectWrapped(slot, "tilx_PixelRectCopy", "rbuf_BaseDataCopy failed", 126);
  tilx_PixelRectDelete(one, nullptr);
  tilx_PixelRectDelete(two, nullptr);

  _Rbuf_BaseDataStack* single = tilx_PixelRectStackCreate(1, 1, 1, U8, slot);
  _Rbuf_BaseDataStack* pair = tilx_PixelRectStackCreate(2, 1, 1, U8, slot);
  tilx_PixelRectStackCopy(single, pair, slot);
  ExpectWrapped(slot, "tilx_PixelRectStackCopy", "rbuf_BaseDataStackCopy failed", 270);
  tilx_PixelRectStackDelete(single, nullptr);
  tilx_PixelRectStackDelete(pair, nullptr);
}

TEST(Tilx, WithANullSlotFailuresAreSilent) {
  EXPECT_EQ(tilx_PixelRectCreate(-1, 1, U8, nullptr), nullptr);
  EXPECT_EQ(tilx_PixelRectStackCreate(1, -1, 1, U8, nullptr), nullptr);
}

TEST(Tilx, SuccessEmptiesTheSlot) {
  Rfault_ErrorReport* slot = reinterpret_cast<Rfault_ErrorReport*>(&slot);
  _Rbuf_BaseData* rect = tilx_PixelRectCreate(1, 1, U8, &slot);
  EXPECT_EQ(slot, nullptr);
  slot = reinterpret_cast<Rfault_ErrorReport*>(&slot);
  tilx_PixelRectDelete(rect, &slot);
  EXPECT_EQ(slot, nullptr);
}

TEST(Tilx, CopiesAreDeep) {
  ErrorSlot slot;
  _Rbuf_BaseDataStack* stack = tilx_PixelRectStackCreate(1, 2, 1, U8, slot);
  SetPixelBytes(stack->layers[0], {1, 2});
  _Rbuf_BaseData* rect = tilx_PixelRectCopy(stack->layers[0], nullptr, slot);
  _Rbuf_BaseDataStack* copy = tilx_PixelRectStackCopy(stack, nullptr, slot);
  SetPixelBytes(stack->layers[0], {7, 7});
  EXPECT_EQ(PixelBytesOf(rect), (Bytes{1, 2}));
  EXPECT_EQ(PixelBytesOf(copy->layers[0]), (Bytes{1, 2}));
  tilx_PixelRectDelete(rect, nullptr);
  tilx_PixelRectStackDelete(copy, nullptr);
  tilx_PixelRectStackDelete(stack, nullptr);
}

TEST(Tilx, StringToTypeOfANameInTheTableIsItsIndex) {
  constexpr const wchar_t* names[] = {L"U1",  L"U2",  L"U4",  L"U8",  L"S8",  L"U16", L"S16",
                                      L"U32", L"S32", L"F32", L"F64", L"C64", L"C128"};
  for (int i = 0; i < rbuf_PixelTypeCount; ++i) {
    ErrorSlot slot;
    EXPECT_EQ(tilx_StringToType(names[i], slot), static_cast<Rbuf_PixelType>(i));
    EXPECT_FALSE(slot.Failed());
  }
}

TEST(Tilx, StringToTypeOfAnUnknownNameIsMinusOneAndAReportThatHoldsTheName) {
  ErrorSlot slot;
  EXPECT_EQ(static_cast<int>(tilx_StringToType(L"U1\u20ac", slot)), -1);
  ASSERT_TRUE(slot.Failed());
  EXPECT_EQ(slot.Text(), "Invalid pixel type:  U1\u20ac");
  EXPECT_STREQ(rfault_FunctionName(slot.Report()), "tilx_StringToType");
  EXPECT_EQ(rfault_Line(slot.Report()), 1);
  EXPECT_EQ(rfault_Severity(slot.Report()), 2);
  EXPECT_EQ(rfault_Inner(slot.Report()), nullptr);
}

TEST(Tilx, TablesAreThoseOfTheBaseLibrary) {
  EXPECT_EQ(rsys_AddressOf_tilx_Convert(), rsys_AddressOf_rbuf_Convert());
  EXPECT_EQ(rsys_AddressOf_tilx_ConvertInc(), rsys_AddressOf_rbuf_ConvertInc());
  EXPECT_EQ(rsys_AddressOf_tilx_Fill(), rsys_AddressOf_rbuf_Fill());
  EXPECT_EQ(rsys_AddressOf_tilx_FillInc(), rsys_AddressOf_rbuf_FillInc());
}

TEST(Tilx, ForwardersPassEveryArgumentOn) {
  ErrorSlot slot;
  const float source[] = {1.5f, -3.0f};
  std::int16_t converted[2] = {};
  tilx_ConvertPixels(converted, S16, source, F32, 2, slot);
  EXPECT_EQ(converted[0], 2);
  EXPECT_EQ(converted[1], -3);
  const std::int16_t value = 5;
  tilx_FillPixels(converted, S16, &value, 2, slot);
  EXPECT_EQ(converted[1], 5);
  tilx_FillPixels(converted, static_cast<Rbuf_PixelType>(99), &value, 2, slot);
  EXPECT_TRUE(slot.Failed());
  tilx_ConvertPixels(converted, static_cast<Rbuf_PixelType>(99), source, F32, 2, slot);
  EXPECT_TRUE(slot.Failed());

  _Rbuf_BaseData* a = tilx_PixelRectCreate(2, 1, U8, slot);
  _Rbuf_BaseData* b = tilx_PixelRectCreate(2, 1, U8, slot);
  SetPixelBytes(a, {255, 255});
  SetPixelBytes(b, {0, 255});
  tilx_MaskOperation(a, b, rbuf_MaskAnd, slot);
  EXPECT_FALSE(slot.Failed());
  EXPECT_EQ(PixelBytesOf(a), (Bytes{0, 255}));
  tilx_PixelRectDelete(a, nullptr);
  tilx_PixelRectDelete(b, nullptr);
}

} // namespace
