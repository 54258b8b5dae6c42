/// \file
/// What invalid pixels hold in a file, and valid pixels that look invalid there.
#pragma once

#include "engine/nodata.h"

#include <cstddef>

namespace quent::rasterops::engine {

/// Writes a value to all pixels of a plane whose mask byte is 0, or to all for a null mask.
RASTEROPS_ENGINE_API void FillInvalid(const _Rbuf_BaseData& plane, const _Rbuf_BaseData* mask,
                                      const PixelValue& value);

/// Number of pixels with a nonzero mask byte, or of all for a null mask, that a reader would take for the
/// NODATA value: integers of equal value, floats that compare equal, any NaN for a NaN, and complex
/// pixels of equal bits.
RASTEROPS_ENGINE_API std::size_t CountEqual(const _Rbuf_BaseData& plane, const _Rbuf_BaseData* mask,
                                            const PixelValue& value);

} // namespace quent::rasterops::engine
