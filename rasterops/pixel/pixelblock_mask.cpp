// Conditions and masks of a block.
#include "rasterops/computecompositemask.h"
#include "rasterops/computemask.h"
#include "rasterops/frame/failure.h"
#include "rasterops/pixel/mask_kernels.h"
#include "rasterops/pixel/planerows.h"
#include "rasterops/pixelblock.h"

#include <boost/make_shared.hpp>
#include <boost/numeric/conversion/cast.hpp>

namespace tilx {

using quent::rasterops::PixelRectDeleter;
using quent::rasterops::RaiseFault;

namespace {

constexpr char file[] = "pixelblock";

boost::shared_ptr<_Rbuf_BaseData> newMask(const _Rbuf_BaseData& like, const char* function) {
  RfaultException ex(file, function);
  _Rbuf_BaseData* const mask = tilx_PixelRectCreate(like.columns, like.rows, U8, ex.GetErrorSlot());
  ex.Check(__LINE__);
  return boost::shared_ptr<_Rbuf_BaseData>(mask, PixelRectDeleter());
}

/// Layer 0 of a stack, which must be a mask of the size of a plane.
const _Rbuf_BaseData& maskLayer(const TilxPixelRectStack& stack, const _Rbuf_BaseData& plane,
                                const char* function) {
  const _Rbuf_BaseData* const layer = !stack || stack->count < 1 ? nullptr : stack.datalayer(0);
  if (!layer || layer->pixelBytes != 1 || layer->rows != plane.rows || layer->columns != plane.columns)
    RaiseFault(file, function, "The mask block must be U8 and of this block's size");
  return *layer;
}

void copyMask(const _Rbuf_BaseData& from, const _Rbuf_BaseData& to, const char* function) {
  ConvertPlane(from, to, file, function);
}

} // namespace

DataContentsCondition PixelBlock::ScanMask(long plane) const {
  return kernels::ConditionOfMask(*m_Data->Mask(plane));
}

DataContentsCondition PixelBlock::getCondition(long plane) const {
  CheckIndex(plane, "tilx::PixelBlock::getCondition", __LINE__);
  DataContentsCondition& condition = m_Data->m_PlanesCondition[plane];
  if (condition == UNKNOWN && m_Data->m_NoDataValues[plane] && !m_Data->m_MaskDirty[plane] &&
      m_Data->Mask(plane))
    condition = ScanMask(plane);
  return condition;
}

void PixelBlock::setCondition(long plane, DataContentsCondition condition) {
  CheckIndex(plane, "tilx::PixelBlock::setCondition", __LINE__);
  m_Data->m_PlanesCondition[plane] = condition;
  m_Data->m_MaskDirty[plane] = true;
}

void PixelBlock::setConditionWithoutMarkingDirty(long plane, DataContentsCondition condition) {
  if (!HasPlane(plane))
    quent::rasterops::Raise(file, "tilx::PixelBlock::setConditionWithoutMarkingDirty", "Invalid Index");
  m_Data->m_PlanesCondition[plane] = condition;
  m_Data->m_MaskDirty[plane] = false;
}

void PixelBlock::computeCondition(long plane) {
  if (!HasPlane(plane))
    quent::rasterops::Raise(file, "tilx::PixelBlock::computeCondition", "Invalid Index");
  if (!m_Data->Mask(plane))
    return;
  m_Data->m_PlanesCondition[plane] = ScanMask(plane);
  m_Data->m_MaskDirty[plane] = false;
}

DataContentsCondition PixelBlock::getCompositeCondition() const {
  if (m_Data->m_NumOfPlanes < 1)
    return UNKNOWN;
  const DataContentsCondition first = getCondition(0);
  if (first == NODATA)
    return NODATA;
  for (long i = 1; i < m_Data->m_NumOfPlanes; ++i)
    if (const DataContentsCondition next = getCondition(i); next != first)
      return next == NODATA ? NODATA : UNKNOWN;
  // How the valid pixels of several planes overlap is not known.
  return first == SOMEDATA && m_Data->m_NumOfPlanes > 1 ? UNKNOWN : first;
}

void PixelBlock::setCompositeCondition(DataContentsCondition condition) {
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i)
    setCondition(i, condition);
}

DataContentsCondition PixelBlock::getHomogenousCondition(const IPixelBlock& block, bool& homogenous) {
  const long planes = block.getNumOfPlanes();
  if (planes < 1)
    RaiseFault(file, "tilx::PixelBlock::getHomogenousCondition", "No planes on PixelBlock");
  const DataContentsCondition first = block.getCondition(0);
  for (long i = 1; i < planes; ++i)
    if (block.getCondition(i) != first) {
      homogenous = false;
      return UNKNOWN;
    }
  homogenous = true;
  return first;
}

void PixelBlock::computeMask(long plane) const {
  CheckIndex(plane, "tilx::PixelBlock::computeMask", __LINE__);
  BringMaskUpToDate(plane, false);
}

void PixelBlock::BringMaskUpToDate(long plane, bool required) const {
  const std::lock_guard guard(m_Data->m_ComputeLock);
  // Copies share flags, but not a mask that was made after the copy.
  if (required && !m_Data->Mask(plane))
    m_Data->m_MaskDirty[plane] = true;
  if (!m_Data->m_MaskDirty[plane])
    return;
  const DataContentsCondition condition = m_Data->m_PlanesCondition[plane];
  const bool uniform = condition == NODATA || condition == ALLDATA;
  if (!uniform && (m_Data->m_MaskHasPrimacy[plane] || !m_Data->m_NoDataValues[plane]))
    RaiseFault(file, "tilx::PixelBlock::computeMask",
               "Unable to compute the mask.  The condition requires a NoData value, and one isn't set.");
  m_Data->InitMask(plane);
  ComputeMask& operation = *pixelBlockData::MaskOperator();
  const auto params = operation.CreateParams();
  params->SetPixelBlock(m_Data->m_Planes[plane]);
  params->SetMaskBlock(m_Data->Mask(plane));
  params->SetNODATAValue(m_Data->m_NoDataValues[plane]);
  params->SetDataCondition(boost::make_shared<DataContentsCondition>(condition));
  if (operation(params)) {
    m_Data->m_PlanesCondition[plane] = *params->GetDataCondition();
    m_Data->m_MaskDirty[plane] = false;
  }
}

void PixelBlock::computeMasks() const {
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i)
    computeMask(i);
}

const _Rbuf_BaseData* PixelBlock::getMaskData(long plane) const {
  if (!HasPlane(plane))
    return nullptr;
  computeMask(plane);
  return m_Data->Mask(plane).get();
}

void PixelBlock::getMask(long plane, IPixelBlock& out) const {
  CheckIndex(plane, "tilx::PixelBlock::getMask", __LINE__);
  BringMaskUpToDate(plane, true);
  // All data: so is the mask seen as a plane of pixels, whatever it says of its own plane.
  ShareRectangle(m_Data->Mask(plane), boost::shared_array<unsigned char>(), ALLDATA, false, out);
}

void PixelBlock::setMask(long plane, const boost::shared_ptr<IPixelBlock>& mask) {
  constexpr char function[] = "tilx::PixelBlock::setMask";
  CheckIndex(plane, function, __LINE__);
  if (!mask)
    RaiseFault(file, function, "The mask block is null");
  const TilxPixelRectStack stack(mask->asPixelRectStack());
  const _Rbuf_BaseData& layer = maskLayer(stack, *m_Data->m_Planes[0], function);
  m_Data->InitMask(plane);
  copyMask(layer, *m_Data->Mask(plane), function);
  computeCondition(plane);
}

void PixelBlock::setMask(long plane, const std::vector<boost::shared_ptr<IPixelBlock>>& masks) {
  constexpr char function[] = "tilx::PixelBlock::setMask";
  CheckIndex(plane, function, __LINE__);
  if (masks.size() < 2) {
    if (!masks.empty())
      setMask(plane, masks.front());
    return;
  }
  const auto count = boost::numeric_cast<std::int32_t>(masks.size());
  boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>> copies(new boost::shared_ptr<_Rbuf_BaseData>[count]);
  for (std::int32_t i = 0; i < count; ++i) {
    if (!masks[static_cast<std::size_t>(i)])
      RaiseFault(file, function, "A mask block is null");
    const TilxPixelRectStack stack(masks[static_cast<std::size_t>(i)]->asPixelRectStack());
    const _Rbuf_BaseData& layer = maskLayer(stack, *m_Data->m_Planes[0], function);
    copies[i] = newMask(layer, function);
    copyMask(layer, *copies[i], function);
  }
  m_Data->InitMask(plane);
  ComputeCompositeMask& operation = *pixelBlockData::CompositeMaskOperator();
  const auto params = operation.CreateParams();
  params->SetMaskArraySize(count);
  params->SetMaskArray(copies);
  params->SetCompositeMask(m_Data->Mask(plane));
  params->SetDataCondition(boost::make_shared<DataContentsCondition>(NODATA));
  operation(params);
  setConditionWithoutMarkingDirty(plane, *params->GetDataCondition());
}

void PixelBlock::getCompositeMask(IPixelBlock& out) {
  constexpr char function[] = "tilx::PixelBlock::getCompositeMask";
  CheckIndex(0, function, __LINE__);
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i)
    BringMaskUpToDate(i, true);
  const auto composite = newMask(*m_Data->m_Planes[0], function);
  ComputeCompositeMask& operation = *pixelBlockData::CompositeMaskOperator();
  const auto params = operation.CreateParams();
  params->SetMaskArraySize(m_Data->m_NumOfPlanes);
  params->SetMaskArray(m_Data->m_Masks);
  params->SetCompositeMask(composite);
  params->SetDataCondition(boost::make_shared<DataContentsCondition>(NODATA));
  operation(params);
  ShareRectangle(composite, m_Data->m_NoDataValues[0], *params->GetDataCondition(), false, out);
}

bool PixelBlock::canComputeMask(long plane) {
  if (!HasPlane(plane))
    return false;
  const DataContentsCondition condition = m_Data->m_PlanesCondition[plane];
  if (condition == NODATA || condition == ALLDATA || !m_Data->m_MaskDirty[plane])
    return true;
  return !m_Data->m_MaskHasPrimacy[plane] && m_Data->m_NoDataValues[plane];
}

void PixelBlock::setMaskFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) {
  constexpr char function[] = "tilx::PixelBlock::setMaskFromPixelBlock";
  CheckIndex(plane, function, __LINE__);
  if (source.getWidth() != getWidth() || source.getHeight() != getHeight())
    RaiseFault(file, function, "Invalid dimensions");
  const DataContentsCondition condition = source.getCondition(sourcePlane);
  if (condition == NODATA || condition == ALLDATA) {
    setCondition(plane, condition);
    return;
  }
  const _Rbuf_BaseData* const mask = source.getMaskData(sourcePlane);
  const _Rbuf_BaseData& first = *m_Data->m_Planes[0];
  if (!mask)
    RaiseFault(file, function, "The source plane has no mask");
  // Masks are those of the whole block, also when a window is laid over its planes.
  if (mask->rows != first.rows || mask->columns != first.columns)
    RaiseFault(file, function, "Invalid dimensions");
  const boost::shared_ptr<_Rbuf_BaseData> copy = newMask(*mask, function);
  copyMask(*mask, *copy, function);
  m_Data->StoreMask(plane, copy);
  setConditionWithoutMarkingDirty(plane, source.getCondition(sourcePlane));
}

} // namespace tilx
