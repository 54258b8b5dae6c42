/// \file
/// The interface of pixel blocks.
#pragma once

#include "rasterops/bufferaccessor.h"
#include "rasterops/datacontentscondition.h"
#include "rcommon/rbuf.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace tilx {

/// A stack of equally sized planes of one pixel type. Each plane has a validity mask that exists on
/// demand (255 valid, 0 NODATA), an optional NODATA value and a condition.
///
/// PixelBlock documents what each operation does and raises. Planes are numbered from 0.
/// Threads: a block may be read by many threads once its masks are computed; writers hold it alone.
class RASTEROPS_API IPixelBlock : private boost::noncopyable,
                                  public boost::enable_shared_from_this<IPixelBlock> {
  friend class PlaneBufferAccessor;

  virtual void setConditionWithoutMarkingDirty(long plane, DataContentsCondition condition) = 0;

public:
  virtual void SetFrom(const IPixelBlock& source) = 0;
  virtual boost::shared_ptr<IPixelBlock> Clone() const = 0;
  virtual boost::shared_ptr<IPixelBlock> CloneFromPlanes(const std::vector<long>& planes) const = 0;
  virtual long getNumOfPlanes() const = 0;
  virtual long getHeight() const = 0;
  virtual long getWidth() const = 0;
  virtual Rbuf_PixelType getDataType() const = 0;
  virtual long getNumBytes() const = 0;
  virtual void getPlane(long plane, IPixelBlock& out) const = 0;
  virtual const _Rbuf_BaseData* getPlaneData(long plane) const = 0;
  virtual _Rbuf_BaseDataStack* asPixelRectStack() = 0;
  virtual void setPixelToNODATA(long plane, long column, long row) = 0;
  virtual void setPlaneToNODATA(long plane) = 0;
  virtual void setBlockToNODATA() = 0;
  virtual DataContentsCondition getCondition(long plane) const = 0;
  virtual DataContentsCondition getCompositeCondition() const = 0;
  virtual void setCompositeCondition(DataContentsCondition condition) = 0;
  virtual void setCondition(long plane, DataContentsCondition condition) = 0;
  virtual void computeCondition(long plane) = 0;
  virtual void syncMaskWithNODATAFill(long plane) = 0;
  virtual bool syncNODATAFillWithMask(long plane, bool strict) = 0;
  virtual void getMask(long plane, IPixelBlock& out) const = 0;
  virtual void setMask(long plane, const std::vector<boost::shared_ptr<IPixelBlock>>& masks) = 0;
  virtual void setMask(long plane, const boost::shared_ptr<IPixelBlock>& mask) = 0;
  virtual void getCompositeMask(IPixelBlock& out) = 0;
  virtual const _Rbuf_BaseData* getMaskData(long plane) const = 0;
  virtual bool canComputeMask(long plane) = 0;
  virtual void setPlaneFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) = 0;
  virtual void setMaskFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) = 0;
  virtual boost::shared_ptr<BufferAccessor> getPixelAccessor(long plane, bool readOnly) = 0;
  virtual boost::shared_ptr<BufferAccessor> getPixelAccessor(long plane) = 0;
  virtual boost::shared_ptr<BufferAccessor> getMaskAccessor(long plane, bool readOnly) = 0;
  virtual boost::shared_ptr<BufferAccessor> getMaskAccessor(long plane) = 0;
  virtual void ToString(std::wstring& out) = 0;
  virtual ~IPixelBlock();

  /// PixelBlock::ToDebugString(), or "not an tilx::PixelBlock" for a block of another class.
  std::wstring ToDebugString() const;

protected:
  IPixelBlock();
};

} // namespace tilx
