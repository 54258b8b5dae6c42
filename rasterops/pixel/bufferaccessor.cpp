// Row accessors. What their destructors do is their point: see the headers.
#include "rasterops/bufferaccessor.h"

#include "rasterops/frame/failure.h"
#include "rasterops/maskbufferaccessor.h"
#include "rasterops/pixel/planerows.h"
#include "rasterops/pixelblock.h"
#include "rasterops/pixelbufferaccessor.h"

#include <boost/make_shared.hpp>
#include <boost/numeric/conversion/cast.hpp>

#include <cstring>

// "const int" is the declared return type of the size queries.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wignored-qualifiers"
#endif

namespace tilx {

namespace {

constexpr char file[] = "bufferaccessor";

} // namespace

BufferAccessor::~BufferAccessor() = default;

boost::shared_ptr<BufferAccessor> PixelBlock::getPixelAccessor(long plane, bool readOnly) {
  CheckIndex(plane, "tilx::PixelBlock::getPixelAccessor", __LINE__);
  return boost::make_shared<PixelBufferAccessor>(boost::numeric_cast<int>(plane),
                                                 boost::make_shared<PixelBlock>(m_Data), readOnly);
}

boost::shared_ptr<BufferAccessor> PixelBlock::getPixelAccessor(long plane) {
  return getPixelAccessor(plane, false);
}

boost::shared_ptr<BufferAccessor> PixelBlock::getMaskAccessor(long plane, bool readOnly) {
  CheckIndex(plane, "tilx::PixelBlock::getMaskAccessor", __LINE__);
  return boost::make_shared<MaskBufferAccessor>(boost::numeric_cast<int>(plane),
                                                boost::make_shared<PixelBlock>(m_Data), readOnly);
}

boost::shared_ptr<BufferAccessor> PixelBlock::getMaskAccessor(long plane) {
  return getMaskAccessor(plane, false);
}

PlaneBufferAccessor::PlaneBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly)
    : m_Block(std::move(block)), m_View(boost::make_shared<PixelBlock>()), m_Plane(plane),
      m_ReadOnly(readOnly) {
  if (!m_Block)
    quent::rasterops::RaiseFault(file, "tilx::PlaneBufferAccessor::PlaneBufferAccessor", "The block is null");
}

PlaneBufferAccessor::~PlaneBufferAccessor() = default;

void PlaneBufferAccessor::LookAtView() {
  m_RectStack = m_View->asPixelRectStack();
}

const int PlaneBufferAccessor::GetWidth() const {
  return m_RectStack.datalayer(0)->columns;
}

const int PlaneBufferAccessor::GetHeight() const {
  return m_RectStack.datalayer(0)->rows;
}

long PlaneBufferAccessor::GetPitch() {
  return m_RectStack.datalayer(0)->pitch;
}

void* PlaneBufferAccessor::GetRowPtr(int row) {
  if (!m_ReadOnly && !m_ConditionSet)
    m_Written.store(true, std::memory_order_relaxed);
  return RowOf(*m_RectStack.datalayer(0), row);
}

_Rbuf_BaseData* PlaneBufferAccessor::CloneBuffer() {
  const _Rbuf_BaseData& rect = *m_RectStack.datalayer(0);
  RfaultException ex(file, "tilx::PlaneBufferAccessor::CloneBuffer");
  _Rbuf_BaseData* const copy =
      rbuf_BaseDataCreate(rect.rows, rect.columns, rect.pixelType, rbuf_RowMajor, nullptr, ex.GetErrorSlot());
  ex.Check(__LINE__);
  for (int r = 0; r < rect.rows; ++r)
    std::memcpy(RowOf(*copy, r), RowOf(rect, r), static_cast<std::size_t>(copy->pitch));
  return copy;
}

DataContentsCondition PlaneBufferAccessor::GetCondition() const {
  return m_Block->getCondition(m_Plane);
}

void PlaneBufferAccessor::SetCondition(DataContentsCondition condition, bool markDirty) {
  if (m_ReadOnly) // the same words for both kinds
    quent::rasterops::Raise(file, "tilx::PlaneBufferAccessor::SetCondition",
                            "SetCondition was called on a Read-Only MaskBufferAccessor");
  m_Written = false;
  m_ConditionSet = true;
  if (markDirty)
    m_Block->setCondition(m_Plane, condition);
  else
    m_Block->setConditionWithoutMarkingDirty(m_Plane, condition);
}

PixelBufferAccessor::PixelBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly)
    : PlaneBufferAccessor(plane, std::move(block), readOnly) {
  m_Block->getPlane(plane, *m_View);
  LookAtView();
}

PixelBufferAccessor::~PixelBufferAccessor() {
  if (!m_Written)
    return;
  if (auto* const block = dynamic_cast<PixelBlock*>(m_Block.get());
      block && block->getNODATAValue(m_Plane) && !block->getMaskHasNODATAPrimacy(m_Plane)) {
    block->setCondition(m_Plane, UNKNOWN);
    block->syncMaskWithNODATAFill(m_Plane);
  }
  m_Block->computeCondition(m_Plane);
}

Rbuf_PixelType PixelBufferAccessor::GetPixelType() {
  return m_Block->getDataType();
}

MaskBufferAccessor::MaskBufferAccessor(int plane, boost::shared_ptr<IPixelBlock> block, bool readOnly)
    : PlaneBufferAccessor(plane, std::move(block), readOnly) {
  m_Block->getMask(plane, *m_View);
  LookAtView();
}

MaskBufferAccessor::~MaskBufferAccessor() {
  if (!m_Written)
    return;
  m_Block->computeCondition(m_Plane);
  m_Block->syncNODATAFillWithMask(m_Plane, true);
}

} // namespace tilx
