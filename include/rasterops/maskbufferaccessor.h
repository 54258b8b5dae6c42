/// \file
/// Row access to the mask of one plane.
#pragma once

#include "rasterops/planebufferaccessor.h"

namespace tilx {

/// Row access to a mask. When rows of a writable accessor were taken, its release takes the condition
/// from the mask and writes the NODATA value, if there is one, to every pixel whose mask byte is 0. A
/// plane whose mask is all valid must then not hold the NODATA value: that ends the process.
class RASTEROPS_API MaskBufferAccessor : public PlaneBufferAccessor {
public:
  /// Taken through IPixelBlock::getMaskAccessor().
  MaskBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly);
  ~MaskBufferAccessor() override;
};

} // namespace tilx
