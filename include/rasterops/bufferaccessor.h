/// \file
/// Row access to one plane or one mask.
#pragma once

#include "rcommon/rbuf.h"

// "const int" is the declared return type of the size queries.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-qualifiers"
#endif

namespace tilx {

/// Hands out row pointers. A writable accessor whose rows were taken brings condition, mask and NODATA
/// fill of its plane back into line when it is destroyed. An accessor belongs to one thread at a time.
class RASTEROPS_API BufferAccessor {
public:
  virtual const int GetWidth() const = 0;
  virtual const int GetHeight() const = 0;
  /// Address of the first pixel of a row; the row is not checked. On a writable accessor this notes
  /// that the buffer was written.
  virtual void* GetRowPtr(int row) = 0;
  /// Bytes from row to row.
  virtual long GetPitch() = 0;
  /// A copy of the buffer, which the caller owns.
  virtual _Rbuf_BaseData* CloneBuffer() = 0;
  virtual ~BufferAccessor();
};

} // namespace tilx

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
