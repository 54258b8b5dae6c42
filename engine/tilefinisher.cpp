#include "engine/tilefinisher.h"

#include "engine/invalidpixels.h"

#include <algorithm>

namespace quent::rasterops::engine {

namespace {

tilx::DataContentsCondition conditionOf(tilx::PixelBlock& block, long plane) {
  if (block.getCondition(plane) == tilx::UNKNOWN)
    block.computeMask(plane);
  return block.getCondition(plane);
}

} // namespace

TileFinisher::TileFinisher(const NoDataPlan& plan) : m_Plan(plan) {}

const unsigned char* TileFinisher::Finish(tilx::PixelBlock& block) {
  if (m_Plan.kind == NoDataPlan::Kind::AllValid)
    return nullptr;
  const long planes = block.getNumOfPlanes();
  const auto width = static_cast<std::size_t>(block.getWidth());
  const auto height = static_cast<std::size_t>(block.getHeight());
  bool allValid = true;
  for (long plane = 0; plane < planes; ++plane) {
    const _Rbuf_BaseData& pixels = *block.getPlaneData(plane);
    const tilx::DataContentsCondition condition = conditionOf(block, plane);
    const _Rbuf_BaseData* const mask = condition == tilx::ALLDATA ? nullptr : block.getMaskData(plane);
    if (mask)
      FillInvalid(pixels, mask, m_Plan.value);
    if (m_Plan.kind == NoDataPlan::Kind::Value && condition != tilx::NODATA)
      m_Counts.equalToNoData += CountEqual(pixels, mask, m_Plan.value);
    if (m_Plan.kind != NoDataPlan::Kind::Mask || (!mask && allValid))
      continue;
    if (allValid) { // the planes before had no invalid pixel
      m_Least.assign(width * height, 255);
      m_Most.assign(width * height, plane == 0 ? 0 : 255);
    }
    allValid = false;
    combine(mask, width, height);
  }
  if (allValid)
    return nullptr;
  for (std::size_t i = 0; i < m_Least.size(); ++i)
    m_Counts.hiddenByMask += m_Least[i] != m_Most[i] ? 1 : 0;
  return m_Least.data();
}

void TileFinisher::combine(const _Rbuf_BaseData* mask, std::size_t width, std::size_t height) {
  if (!mask) {
    std::fill(m_Most.begin(), m_Most.end(), static_cast<unsigned char>(255));
    return;
  }
  for (std::size_t row = 0; row < height; ++row) {
    const unsigned char* const from = mask->data + static_cast<std::ptrdiff_t>(row) * mask->pitch;
    unsigned char* const least = m_Least.data() + row * width;
    unsigned char* const most = m_Most.data() + row * width;
    for (std::size_t column = 0; column < width; ++column) {
      const unsigned char valid = from[column] != 0 ? 255 : 0;
      least[column] = std::min(least[column], valid);
      most[column] = std::max(most[column], valid);
    }
  }
}

} // namespace quent::rasterops::engine
