/// \file
/// Size of a rectangle in memory, checked. Not installed.
#pragma once

#include "rcommon/rbuf.h"

#include <cstddef>

namespace quent::base {

/// Pitch and bytes of a rectangle without padding. `problem` is null, or says why there is none.
struct Layout {
  Layout(int rows, int columns, Rbuf_PixelType pixelType, Rbuf_ObjectType objectType) {
    if (pixelType < 0 || pixelType >= rbuf_PixelTypeCount)
      problem = "Invalid pixel type";
    else if (objectType != rbuf_RowMajor && objectType != rbuf_ColumnMajor)
      problem = "Invalid object type";
    else if (rows < 0 || columns < 0)
      problem = "Negative size";
    if (problem)
      return;
    constexpr std::size_t limit = 0x7FFFFFFF;
    const std::size_t length = objectType == rbuf_ColumnMajor ? rows : columns;
    const std::size_t line = length * rsys_AddressOf_rbuf_NumBytesPerPixel()[pixelType];
    const std::size_t count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    if (line > limit || count > limit) {
      problem = "The size does not fit 32 bits";
      return;
    }
    pitch = static_cast<int>(line);
    bytes = line * (objectType == rbuf_ColumnMajor ? columns : rows);
  }

  /// Bytes behind the pixels that are allocated and zeroed: a row and one vector, so that reads one row
  /// or column past the end stay inside and see an invalid pixel.
  std::size_t tailBytes() const { return static_cast<std::size_t>(pitch) + 64; }

  const char* problem = nullptr;
  int pitch = 0;
  std::size_t bytes = 0;
};

} // namespace quent::base
