/// \file
/// Slow twins of the mask computations and of the operations that keep mask, fill and condition in line.
#pragma once

#include "reference/model.h"

namespace reference {

/// Condition from a mask: 255 is valid, every other byte is not.
tilx::DataContentsCondition ScanMask(const Bytes& mask);

/// What tilx::ComputeMask makes of a plane that is known to be `incoming`.
struct MaskResult {
  Bytes mask;
  tilx::DataContentsCondition condition;
};
MaskResult ComputeMask(const Plane& plane, tilx::DataContentsCondition incoming);

/// What tilx::ComputeCompositeMask makes of masks of `size` bytes.
MaskResult ComputeCompositeMask(const std::vector<Bytes>& masks, std::size_t size);

/// PixelBlock::getCondition(): an UNKNOWN plane with NODATA value and current mask is scanned.
tilx::DataContentsCondition GetCondition(Plane& plane);

/// PixelBlock::setCondition().
void SetCondition(Plane& plane, tilx::DataContentsCondition condition);

/// PixelBlock::computeMask(). \throws MaskNotComputable
void ComputePlaneMask(Block& block, std::size_t index);

/// PixelBlock::getMask(), by which accessors reach a mask. \throws MaskNotComputable
Bytes& GetMask(Block& block, std::size_t index);

/// PixelBlock::computeCondition().
void ComputeCondition(Plane& plane);

/// PixelBlock::syncMaskWithNODATAFill().
void SyncMaskWithNODATAFill(Block& block, std::size_t index);

/// PixelBlock::syncNODATAFillWithMask(plane, strict). \throws FillContradictsCondition if `strict`
bool SyncNODATAFillWithMask(Block& block, std::size_t index, bool strict);

/// What the release of a writable mask accessor does once a row was taken.
void ReleaseWrittenMask(Block& block, std::size_t index);

/// What the release of a writable pixel accessor does once a row was taken.
void ReleaseWrittenPixels(Block& block, std::size_t index);

} // namespace reference
