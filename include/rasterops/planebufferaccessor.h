/// \file
/// What the accessors of pixels and of masks share.
#pragma once

#include "rasterops/bufferaccessor.h"
#include "rasterops/datacontentscondition.h"
#include "rasterops/ipixelblock.h"
#include "rasterops/tilxpixelrectstack.h"

#include <atomic>

// "const int" is the declared return type of the size queries.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-qualifiers"
#endif

namespace tilx {

class PixelBlock;

/// Row access through a one-plane view of a block. The two classes that derive from it differ in what
/// they look at and in what their release does.
class RASTEROPS_API PlaneBufferAccessor : public BufferAccessor {
public:
  PlaneBufferAccessor(const PlaneBufferAccessor&) = delete;
  PlaneBufferAccessor& operator=(const PlaneBufferAccessor&) = delete;

  const int GetWidth() const override;
  const int GetHeight() const override;
  void* GetRowPtr(int row) override;
  long GetPitch() override;
  _Rbuf_BaseData* CloneBuffer() override;
  ~PlaneBufferAccessor() override;

  /// Condition of the plane.
  DataContentsCondition GetCondition() const;
  /// States the condition, so that nothing is recomputed at release. Call it after the last GetRowPtr().
  /// \param markDirty true if the mask does not reflect the plane
  /// \throws QuentLog::CPPException<std::runtime_error> "SetCondition was called on a Read-Only
  /// MaskBufferAccessor", for pixels as well
  void SetCondition(DataContentsCondition condition, bool markDirty);

protected:
  /// \param block the block, which is kept alive; the view is to be filled and looked at next
  PlaneBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly);
  /// Takes the rectangle that all calls use from the view.
  void LookAtView();

  boost::shared_ptr<IPixelBlock> m_Block;
  boost::shared_ptr<PixelBlock> m_View;
  TilxPixelRectStack m_RectStack;
  int m_Plane;
  bool m_ReadOnly;
  std::atomic<bool> m_Written{false}; ///< row tasks may set it at once
  bool m_ConditionSet = false;
};

} // namespace tilx

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
