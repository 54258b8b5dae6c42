/// \file
/// Row access to the pixels of one plane.
#pragma once

#include "rasterops/planebufferaccessor.h"

namespace tilx {

/// Row access to pixels. When rows of a writable accessor were taken, its release makes the mask follow
/// the pixels (if the plane has a NODATA value and the mask no primacy) and the condition the mask.
class RASTEROPS_API PixelBufferAccessor : public PlaneBufferAccessor {
public:
  /// Taken through IPixelBlock::getPixelAccessor().
  PixelBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly);
  ~PixelBufferAccessor() override;

  /// Pixel type of the block.
  Rbuf_PixelType GetPixelType();
};

} // namespace tilx
