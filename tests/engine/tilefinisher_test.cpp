#include "engine/tilefinisher.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

namespace quent::rasterops::engine {

namespace {

using tilx::PixelBlock;

constexpr long width = 4;

/// U8 planes of one row, valid where the mask is not 0.
std::unique_ptr<PixelBlock> block(const std::vector<std::vector<unsigned char>>& pixels,
                                  const std::vector<std::vector<unsigned char>>& masks) {
  auto result = std::make_unique<PixelBlock>(static_cast<long>(pixels.size()), width, 1, U8, nullptr);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const auto plane = static_cast<long>(i);
    std::memcpy(result->getPlaneData(plane)->data, pixels[i].data(), width);
    const auto mask = boost::shared_ptr<PixelBlock>(new PixelBlock(1, width, 1, U8, nullptr));
    std::memcpy(mask->getPlaneData(0)->data, masks[i].data(), width);
    result->setMask(plane, boost::shared_ptr<tilx::IPixelBlock>(mask));
  }
  return result;
}

std::vector<int> row(const unsigned char* bytes) {
  return {bytes, bytes + width};
}

NoDataPlan value(unsigned char number) {
  return {NoDataPlan::Kind::Value, static_cast<double>(number), *EncodeValue(number, U8)};
}

} // namespace

TEST(TileFinisher, ValueGoesIntoInvalidPixels) {
  TileFinisher finisher(value(9));
  const auto tile = block({{1, 2, 3, 4}}, {{255, 0, 255, 0}});
  EXPECT_EQ(finisher.Finish(*tile), nullptr) << "a value needs no mask";
  EXPECT_EQ(row(tile->getPlaneData(0)->data), (std::vector<int>{1, 9, 3, 9}));
  EXPECT_EQ(finisher.Counts().equalToNoData, 0U);
}

TEST(TileFinisher, CountsValidPixelsThatHoldTheValue) {
  TileFinisher finisher(value(9));
  finisher.Finish(*block({{9, 9, 3, 4}}, {{255, 0, 255, 255}}));
  finisher.Finish(*block({{9, 9, 3, 4}}, {{255, 255, 255, 255}}));
  EXPECT_EQ(finisher.Counts().equalToNoData, 3U);
}

TEST(TileFinisher, APlaneWithoutDataIsFilled) {
  TileFinisher finisher(value(9));
  const auto tile = block({{1, 2, 3, 4}}, {{255, 255, 255, 255}});
  tile->setCondition(0, tilx::NODATA); // as an operator leaves it: the mask is dirty, the pixels are anything
  finisher.Finish(*tile);
  EXPECT_EQ(row(tile->getPlaneData(0)->data), (std::vector<int>{9, 9, 9, 9}));
}

TEST(TileFinisher, MaskIsTheMinimumOfAllBands) {
  TileFinisher finisher({NoDataPlan::Kind::Mask, 0.0, {}});
  const auto tile = block({{1, 2, 3, 4}, {5, 6, 7, 8}}, {{255, 255, 0, 0}, {255, 0, 255, 0}});
  const unsigned char* const mask = finisher.Finish(*tile);
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(row(mask), (std::vector<int>{255, 0, 0, 0}));
  EXPECT_EQ(finisher.Counts().hiddenByMask, 2U);
  EXPECT_EQ(row(tile->getPlaneData(0)->data), (std::vector<int>{1, 2, 0, 0})) << "valid pixels stay";
  EXPECT_EQ(row(tile->getPlaneData(1)->data), (std::vector<int>{5, 0, 7, 0}));
}

TEST(TileFinisher, AllValidBandsBeforeAndAfterAMaskedOneCount) {
  for (const std::size_t masked : {0U, 1U, 2U}) {
    TileFinisher finisher({NoDataPlan::Kind::Mask, 0.0, {}});
    std::vector<std::vector<unsigned char>> masks(3, {255, 255, 255, 255});
    masks[masked] = {255, 0, 255, 255};
    const auto tile = block({{1, 2, 3, 4}, {1, 2, 3, 4}, {1, 2, 3, 4}}, masks);
    const unsigned char* const mask = finisher.Finish(*tile);
    ASSERT_NE(mask, nullptr) << masked;
    EXPECT_EQ(row(mask), (std::vector<int>{255, 0, 255, 255})) << masked;
    EXPECT_EQ(finisher.Counts().hiddenByMask, 1U) << masked;
  }
}

TEST(TileFinisher, AnAllValidTileHasNoMask) {
  TileFinisher finisher({NoDataPlan::Kind::Mask, 0.0, {}});
  EXPECT_EQ(finisher.Finish(*block({{1, 2, 3, 4}}, {{255, 255, 255, 255}})), nullptr);
}

TEST(TileFinisher, AnyNonzeroMaskByteIsValid) {
  TileFinisher finisher({NoDataPlan::Kind::Mask, 0.0, {}});
  const unsigned char* const mask = finisher.Finish(*block({{1, 2, 3, 4}}, {{1, 254, 0, 255}}));
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(row(mask), (std::vector<int>{255, 255, 0, 255}));
}

} // namespace quent::rasterops::engine
