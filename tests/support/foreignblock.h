/// \file
/// A block of another class than PixelBlock.
#pragma once

#include "support/blocks.h"

namespace testsupport {

/// Hands every operation on to a PixelBlock, without being one.
class ForeignBlock : public tilx::IPixelBlock {
public:
  explicit ForeignBlock(BlockPtr inner) : m_Inner(std::move(inner)) {}

  void SetFrom(const IPixelBlock& source) override { m_Inner->SetFrom(source); }
  boost::shared_ptr<IPixelBlock> Clone() const override { return m_Inner->Clone(); }
  boost::shared_ptr<IPixelBlock> CloneFromPlanes(const std::vector<long>& planes) const override {
    return m_Inner->CloneFromPlanes(planes);
  }
  long getNumOfPlanes() const override { return m_Inner->getNumOfPlanes(); }
  long getHeight() const override { return m_Inner->getHeight(); }
  long getWidth() const override { return m_Inner->getWidth(); }
  Rbuf_PixelType getDataType() const override { return m_Inner->getDataType(); }
  long getNumBytes() const override { return m_Inner->getNumBytes(); }
  void getPlane(long plane, IPixelBlock& out) const override { m_Inner->getPlane(plane, out); }
  const _Rbuf_BaseData* getPlaneData(long plane) const override { return m_Inner->getPlaneData(plane); }
  _Rbuf_BaseDataStack* asPixelRectStack() override { return m_Inner->asPixelRectStack(); }
  void setPixelToNODATA(long plane, long column, long row) override {
    m_Inner->setPixelToNODATA(plane, column, row);
  }
  void setPlaneToNODATA(long plane) override { m_Inner->setPlaneToNODATA(plane); }
  void setBlockToNODATA() override { m_Inner->setBlockToNODATA(); }
  tilx::DataContentsCondition getCondition(long plane) const override { return m_Inner->getCondition(plane); }
  tilx::DataContentsCondition getCompositeCondition() const override {
    return m_Inner->getCompositeCondition();
  }
  void setCompositeCondition(tilx::DataContentsCondition condition) override {
    m_Inner->setCompositeCondition(condition);
  }
  void setCondition(long plane, tilx::DataContentsCondition condition) override {
    m_Inner->setCondition(plane, condition);
  }
  void computeCondition(long plane) override { m_Inner->computeCondition(plane); }
  void syncMaskWithNODATAFill(long plane) override { m_Inner->syncMaskWithNODATAFill(plane); }
  bool syncNODATAFillWithMask(long plane, bool strict) override {
    return m_Inner->syncNODATAFillWithMask(plane, strict);
  }
  void getMask(long plane, IPixelBlock& out) const override { m_Inner->getMask(plane, out); }
  void setMask(long plane, const std::vector<boost::shared_ptr<IPixelBlock>>& masks) override {
    m_Inner->setMask(plane, masks);
  }
  void setMask(long plane, const boost::shared_ptr<IPixelBlock>& mask) override {
    m_Inner->setMask(plane, mask);
  }
  void getCompositeMask(IPixelBlock& out) override { m_Inner->getCompositeMask(out); }
  const _Rbuf_BaseData* getMaskData(long plane) const override { return m_Inner->getMaskData(plane); }
  bool canComputeMask(long plane) override { return m_Inner->canComputeMask(plane); }
  void setPlaneFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) override {
    m_Inner->setPlaneFromPixelBlock(plane, source, sourcePlane);
  }
  void setMaskFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) override {
    m_Inner->setMaskFromPixelBlock(plane, source, sourcePlane);
  }
  boost::shared_ptr<tilx::BufferAccessor> getPixelAccessor(long plane, bool readOnly) override {
    return m_Inner->getPixelAccessor(plane, readOnly);
  }
  boost::shared_ptr<tilx::BufferAccessor> getPixelAccessor(long plane) override {
    return m_Inner->getPixelAccessor(plane);
  }
  boost::shared_ptr<tilx::BufferAccessor> getMaskAccessor(long plane, bool readOnly) override {
    return m_Inner->getMaskAccessor(plane, readOnly);
  }
  boost::shared_ptr<tilx::BufferAccessor> getMaskAccessor(long plane) override {
    return m_Inner->getMaskAccessor(plane);
  }
  void ToString(std::wstring& out) override { m_Inner->ToString(out); }

private:
  void setConditionWithoutMarkingDirty(long plane, tilx::DataContentsCondition condition) override {
    m_Inner->setConditionWithoutMarkingDirty(plane, condition);
  }
  BlockPtr m_Inner;
};

} // namespace testsupport
