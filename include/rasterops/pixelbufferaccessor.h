/// \file
/// Row access to the pixels of one plane.
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

/// Row access to pixels. When rows of a writable accessor were taken, its release makes the mask follow
/// the pixels (if the plane has a NODATA value and the mask no primacy) and the condition the mask.
class RASTEROPS_API PixelBufferAccessor : public BufferAccessor {
public:
  /// Taken through IPixelBlock::getPixelAccessor().
  PixelBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly);
  PixelBufferAccessor(const PixelBufferAccessor&) = delete;
  PixelBufferAccessor& operator=(const PixelBufferAccessor&) = delete;

  const int GetWidth() const override;
  const int GetHeight() const override;
  void* GetRowPtr(int row) override;
  long GetPitch() override;
  _Rbuf_BaseData* CloneBuffer() override;
  ~PixelBufferAccessor() override;

  /// Pixel type of the block.
  Rbuf_PixelType GetPixelType();
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
