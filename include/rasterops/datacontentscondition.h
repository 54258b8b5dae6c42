/// \file
/// What is known about the contents of a plane.
#pragma once

#include <cstdint>

namespace tilx {

/// What is known about the pixels of a plane. Other values mean nothing.
enum DataContentsCondition : std::int32_t {
  UNKNOWN = -1, ///< nothing: the pixels or the NODATA value changed and nobody has looked yet
  NODATA = 0,   ///< no pixel is valid
  ALLDATA = 1,  ///< every pixel is valid
  SOMEDATA = 2  ///< valid and invalid pixels both occur, or at least one invalid pixel is known of
};

} // namespace tilx
