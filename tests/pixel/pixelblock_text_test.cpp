/// Blocks as text, to the letter.
#include "rasterops/pixelblock.h"
#include "rcommon/rtext.h"

#include "support/blocks.h"
#include "support/errorslot.h"
#include "support/failures.h"
#include "support/foreignblock.h"
#include "support/simdtest.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

namespace {

using namespace testsupport;
using tilx::PixelBlock;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::wstring TextOf(PixelBlock& block) {
  std::wstring text = L"replaced";
  block.ToString(text);
  return text;
}

/// What ToFileAsString writes.
std::string FileTextOf(PixelBlock& block) {
  const std::string path = testing::TempDir() + "pixelblock_text_" + std::to_string(::getpid()) + ".txt";
  ErrorSlot slot;
  _rfile_FdRec* file = rfile_OpenForWriting(path.c_str(), slot);
  block.ToFileAsString(file);
  rfile_Close(file, slot);
  EXPECT_FALSE(slot.Failed()) << slot.Text();
  std::ifstream stream(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  std::filesystem::remove(path);
  return text;
}

RASTEROPS_SIMD_SUITE(PixelBlockText);

TEST_P(PixelBlockText, HasALineForARowAndBracesForAPlane) {
  const BlockPtr block = MakeBlock(S16, 2, 2, {1, -2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(TextOf(*block), L"{\n\t1,\t-2\n\t3,\t4\n}\n{\n\t5,\t6\n\t7,\t8\n}\n");
}

TEST_P(PixelBlockText, PrintsWholeNumbersWithoutAndOthersWithDecimals) {
  const BlockPtr block = MakeBlock(F64, 3, 2, {2, 2.5, -0.125, kNan, 1234567, 1e-7});
  EXPECT_EQ(TextOf(*block), L"{\n\t2,\t2.5,\t-0.125\n\tnan,\t1234567,\t1e-07\n}\n");
}

TEST_P(PixelBlockText, PrintsWholeNumbersThatNoLongHoldsAsDoubles) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const BlockPtr block = MakeBlock(F64, 3, 1, {infinity, -infinity, 1e30});
  EXPECT_EQ(TextOf(*block), L"{\n\tinf,\t-inf,\t1e+30\n}\n");
}

TEST_P(PixelBlockText, PrintsTheRealPartOfComplexPixels) {
  const BlockPtr block = MakeBlock(C64, 2, 1, {1.5, -3});
  EXPECT_EQ(TextOf(*block), L"{\n\t1.5,\t-3\n}\n");
}

TEST_P(PixelBlockText, OfAnEmptyBlockIsEmpty) {
  PixelBlock block;
  EXPECT_EQ(TextOf(block), L"");
  EXPECT_EQ(FileTextOf(block), "");
}

TEST_P(PixelBlockText, HasNoLineBreaksBetweenRowsInAFile) {
  const BlockPtr block = MakeBlock(F32, 2, 2, {1, -2.5, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(FileTextOf(*block), "{\n\t1,\t-2.5\t3,\t4}\n{\n\t5,\t6\t7,\t8}\n");
}

TEST_P(PixelBlockText, ToAFileThatCannotBeWrittenRaises) {
  if (!std::filesystem::exists("/dev/full"))
    GTEST_SKIP() << "needs /dev/full";
  const BlockPtr block = MakeBlock(F64, 300, 300, std::vector<double>(90000, 0.123456));
  _rfile_FdRec* file = rfile_OpenForWriting("/dev/full", nullptr);
  EXPECT_EQ(FailureOf([&] { block->ToFileAsString(file); }).kind, Kind::Rfault);
  rfile_Close(file, nullptr);
}

TEST_P(PixelBlockText, DebugTextOfASmallBlockShowsAllOfIt) {
  const BlockPtr block = MakeBlockWithNoData(U8, 2, 2, {1, 2, 3, 7, 5, 6, 7, 8}, 7);
  block->computeMask(0);
  block->setNODATAValue(1, nullptr);
  block->setCondition(1, tilx::ALLDATA);
  EXPECT_EQ(block->ToDebugString(), L"m_NumOfPlanes: 2\n"
                                    L"m_Planes: \n"
                                    L"{ \t1,\t2\n\t3,\t7 }\n"
                                    L"{ \t5,\t6\n\t7,\t8 }\n"
                                    L"m_Masks: \n"
                                    L"{ \t255,\t255\n\t255,\t0 }\n"
                                    L"{ null }\n"
                                    L"m_NoDataValues: 7\tnull\t\n"
                                    L"m_PlanesCondition: SOMEDATA\tALLDATA\t\n"
                                    L"m_MaskDirty: false\ttrue\t\n"
                                    L"m_MaskHasPrimacy: false\tfalse\t\n");
}

TEST_P(PixelBlockText, DebugTextNamesEveryCondition) {
  const BlockPtr block = MakeBlock(U8, 1, 1, {1, 2, 3, 4, 5});
  block->setCondition(0, tilx::ALLDATA);
  block->setCondition(1, tilx::NODATA);
  block->setCondition(2, tilx::SOMEDATA);
  block->setCondition(3, tilx::UNKNOWN);
  block->setCondition(4, static_cast<tilx::DataContentsCondition>(3));
  const std::wstring text = block->ToDebugString();
  EXPECT_NE(text.find(L"m_PlanesCondition: ALLDATA\tNODATA\tSOMEDATA\tUNKNOWN\tINVALID\t\n"),
            std::wstring::npos);
  EXPECT_NE(text.find(L"m_Masks: null\n"), std::wstring::npos);
}

TEST_P(PixelBlockText, DebugTextOfALargerBlockShowsItsSize) {
  for (const auto& [width, height, shown] :
       {std::tuple{11, 3, L"11 x 3"}, std::tuple{3, 11, L"3 x 11"}, std::tuple{40, 20, L"40 x 20"}}) {
    PixelBlock block(2, width, height, U8, nullptr);
    block.computeMask(0);
    const std::wstring text = block.ToDebugString();
    EXPECT_NE(text.find(std::wstring(L"m_Planes: ") + shown + L"\nm_Masks: " + shown + L"\nm_NoDataValues: "),
              std::wstring::npos)
        << rtext::narrow(text.c_str());
  }
}

TEST_P(PixelBlockText, DebugTextOfTenByTenShowsPixels) {
  PixelBlock block(1, 10, 10, U8, nullptr);
  EXPECT_NE(block.ToDebugString().find(L"m_Planes: \n{ \t0,"), std::wstring::npos);
}

TEST_P(PixelBlockText, DebugTextShowsTheFirstByteOfANoDataValueAndPrimacy) {
  const BlockPtr block = MakeBlockWithNoData(S16, 1, 1, {300, 1}, 511);
  block->setMaskHasNODATAPrimacy(1, true);
  const std::wstring text = block->ToDebugString();
  EXPECT_NE(text.find(L"m_NoDataValues: 255\t255\t\n"), std::wstring::npos);
  EXPECT_NE(text.find(L"m_MaskHasPrimacy: false\ttrue\t\n"), std::wstring::npos);
}

TEST_P(PixelBlockText, DebugTextOfAnEmptyBlockSaysNull) {
  const std::wstring text = PixelBlock().ToDebugString();
  EXPECT_EQ(text.rfind(L"m_NumOfPlanes: 0\nm_Planes: null\nm_Masks: null\nm_NoDataValues: null\n", 0), 0u)
      << rtext::narrow(text.c_str());
}

TEST_P(PixelBlockText, DebugTextThroughTheInterfaceIsThatOfThePixelBlock) {
  const BlockPtr block = MakeBlock(U8, 2, 1, {1, 2});
  const tilx::IPixelBlock& interface = *block;
  EXPECT_EQ(interface.ToDebugString(), block->ToDebugString());
  EXPECT_EQ(ForeignBlock(block).ToDebugString(), L"not an tilx::PixelBlock");
}

} // namespace
