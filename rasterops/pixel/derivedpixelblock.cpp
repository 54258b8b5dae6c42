// Windows that share the pixels of a block and live as long as it does.
#include "rasterops/pixelblock.h"

#include <boost/make_shared.hpp>

#include <stdexcept>

namespace tilx {

using quent::rasterops::PixelRectDeleter;

namespace {

/// Where a window lies in its source.
struct Window {
  int columnOffset;
  int rowOffset;
  int width;
  int height;
};

/// A view of the window in a rectangle of the source. Raises if the window runs past its end.
_Rbuf_BaseData* deriveWindow(const _Rbuf_BaseData* rect, const Window& window) {
  RfaultException ex("derivedpixelblock", "tilx::PixelBlock::Derive");
  _Rbuf_BaseData* const view = rbuf_BaseDataReDerive(rect, nullptr, window.rowOffset, window.columnOffset,
                                                     window.height, window.width, ex.GetErrorSlot());
  ex.Check(__LINE__);
  return view;
}

class DerivedPixelBlock : public PixelBlock {
public:
  /// \param source keeps the pixels and is not looked at otherwise than through its interface
  /// \param first  plane 0 of the source, which all other planes follow at `planeStride`
  DerivedPixelBlock(const boost::shared_ptr<IPixelBlock>& source, const PixelBlock* asPixelBlock,
                    const _Rbuf_BaseData& first, const Window& window, std::ptrdiff_t planeStride,
                    unsigned char** noData)
      : PixelBlock(boost::make_shared<pixelBlockData>(
            source->getNumOfPlanes(), window.width, window.height, source->getDataType(),
            first.storage + static_cast<std::ptrdiff_t>(first.pitch) * window.rowOffset +
                static_cast<std::ptrdiff_t>(first.pixelBytes) * window.columnOffset,
            planeStride, first.pitch, noData, nullptr)) {
    // In the state and not here, so that accessors of a window keep the pixels as well.
    m_Data->m_Source = source;
    for (long i = 0; i < m_Data->m_NumOfPlanes; ++i) {
      const _Rbuf_BaseData* const mask = source->getMaskData(i);
      m_Data->m_MaskHasPrimacy[i] = asPixelBlock && asPixelBlock->getMaskHasNODATAPrimacy(i);
      m_Data->m_MaskDirty[i] = false;
      if (mask) {
        m_Data->StoreMask(i,
                          boost::shared_ptr<_Rbuf_BaseData>(deriveWindow(mask, window), PixelRectDeleter()));
        m_Data->m_PlanesCondition[i] = ScanMask(i);
      } else {
        m_Data->m_PlanesCondition[i] = source->getCondition(i);
      }
    }
  }
};

Window checkedWindow(const IPixelBlock& block, long columnOffset, long rowOffset, long width, long height) {
  if (width < 1 || width > block.getWidth())
    throw std::runtime_error("Invalid width");
  if (height < 1 || height > block.getHeight())
    throw std::runtime_error("Invalid height");
  if (columnOffset < 0 || columnOffset >= block.getWidth())
    throw std::runtime_error("Invalid columnOffset");
  if (rowOffset < 0 || rowOffset >= block.getHeight())
    throw std::runtime_error("Invalid rowOffset");
  return {static_cast<int>(columnOffset), static_cast<int>(rowOffset), static_cast<int>(width),
          static_cast<int>(height)};
}

} // namespace

boost::shared_ptr<IPixelBlock> PixelBlock::Derive(const boost::shared_ptr<IPixelBlock>& block,
                                                  long columnOffset, long rowOffset, long width,
                                                  long height) {
  if (!block)
    throw std::runtime_error("Invalid block");
  const Window window = checkedWindow(*block, columnOffset, rowOffset, width, height);
  const RbufBaseDataStack stack(block->asPixelRectStack());
  if (!rbuf_BaseDataStackIsContiguous(stack))
    return boost::shared_ptr<IPixelBlock>();
  const _Rbuf_BaseData& first = *stack->layers[0];
  // Tried before any address is formed: the pixels of the window must lie inside the source.
  const RbufBaseData tried(deriveWindow(&first, window));
  const std::ptrdiff_t planeStride = stack->count > 1 ? stack->layers[1]->storage - first.storage : 0;

  const auto* const asPixelBlock = dynamic_cast<const PixelBlock*>(block.get());
  std::vector<unsigned char*> noData(static_cast<std::size_t>(stack->count), nullptr);
  for (int i = 0; asPixelBlock && i < stack->count; ++i)
    noData[static_cast<std::size_t>(i)] = asPixelBlock->getNODATAValue(i).get();
  return boost::make_shared<DerivedPixelBlock>(block, asPixelBlock, first, window, planeStride,
                                               noData.data());
}

} // namespace tilx
