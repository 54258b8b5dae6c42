/// \file
/// Row access to the mask of one plane.
#pragma once

#include "rasterops/bufferaccessor.h"
#include "rasterops/datacontentscondition.h"
#include "rasterops/ipixelblock.h"
#include "rasterops/tilxpixelrectstack.h"

// "const int" is the declared return type of the size queries.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-qualifiers"
#endif

namespace tilx {

class PixelBlock;

/// Row access to a mask. When rows of a writable accessor were taken, its release takes the condition
/// from the mask and writes the NODATA value, if there is one, to every pixel whose mask byte is 0. A
/// plane whose mask is all valid must then not hold the NODATA value: that ends the process.
class RASTEROPS_API MaskBufferAccessor : public BufferAccessor {
public:
  /// Taken through IPixelBlock::getMaskAccessor().
  MaskBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly);
  MaskBufferAccessor(const MaskBufferAccessor&) = delete;
  MaskBufferAccessor& operator=(const MaskBufferAccessor&) = delete;

  const int GetWidth() const override;
  const int GetHeight() const override;
  void* GetRowPtr(int row) override;
  long GetPitch() override;
  _Rbuf_BaseData* CloneBuffer() override;
  ~MaskBufferAccessor() override;

  /// Condition of the plane.
  DataContentsCondition GetCondition() const;
  /// States the condition, so that nothing is recomputed at release. Call it after the last GetRowPtr().
  /// \param markDirty true if the mask does not reflect the plane
  /// \throws QuentLog::CPPException<std::runtime_error> "SetCondition was called on a Read-Only
  /// MaskBufferAccessor"
  void SetCondition(DataContentsCondition condition, bool markDirty);

private:
  boost::shared_ptr<IPixelBlock> m_Block;
  boost::shared_ptr<PixelBlock> m_View;
  TilxPixelRectStack m_RectStack;
  int m_Plane;
  bool m_ReadOnly;
  bool m_Written = false;
  bool m_ConditionSet = false;
};

} // namespace tilx

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
