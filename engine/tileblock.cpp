#include "engine/tileblock.h"

#include "engine/pixeltypes.h"

#include <boost/make_shared.hpp>

namespace quent::rasterops::engine {

TileBlock::TileBlock(Rbuf_PixelType type, std::vector<std::optional<PixelValue>> noData)
    : m_Type(type), m_NoData(std::move(noData)) {}

const boost::shared_ptr<tilx::PixelBlock>& TileBlock::Shape(Size size) {
  if (m_Block && m_Block->getWidth() == size.width && m_Block->getHeight() == size.height)
    return m_Block;
  m_Block.reset(); // first, so that the new block can have its memory
  std::vector<unsigned char*> values;
  for (auto& value : m_NoData)
    values.push_back(value ? value->data() : nullptr);
  m_Block = boost::make_shared<tilx::PixelBlock>(static_cast<long>(values.size()), size.width, size.height,
                                                 m_Type, values.data());
  return m_Block;
}

std::size_t TileBlockBytes(Rbuf_PixelType type, std::size_t planes, Size size) {
  // The heap rounds large blocks up and adds a tail of rows; 64 KiB a plane covers both for common sizes.
  const auto width = static_cast<std::size_t>(size.width);
  const std::size_t pixels = width * static_cast<std::size_t>(size.height + 1);
  return planes * (pixels * (PixelBytes(type) + 1) + (std::size_t{64} << 10));
}

std::ptrdiff_t PlaneStride(const tilx::PixelBlock& block) {
  return block.getNumOfPlanes() < 2 ? 0 : block.getPlaneData(1)->data - block.getPlaneData(0)->data;
}

} // namespace quent::rasterops::engine
