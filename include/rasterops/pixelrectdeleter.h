/// \file
/// Deleter of shared pixel rectangles.
#pragma once

#include "rcommon/rbuf.h"

namespace quent {
namespace rasterops {

/// The deleter that shared pointers to `_Rbuf_BaseData` carry. It calls rbuf_BaseDataDelete() and
/// swallows a failure.
struct RASTEROPS_API PixelRectDeleter {
  void operator()(_Rbuf_BaseData* rect) const noexcept;
};

} // namespace rasterops
} // namespace quent
