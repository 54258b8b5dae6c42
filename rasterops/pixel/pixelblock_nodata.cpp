// NODATA values, and keeping the mask and the NODATA fill in line.
#include "rasterops/frame/failure.h"
#include "rasterops/pixel/mask_kernels.h"
#include "rasterops/pixel/planerows.h"
#include "rasterops/pixelblock.h"

#include <cstring>

namespace tilx {

using quent::rasterops::RaiseFault;

namespace {

constexpr char file[] = "pixelblock";

bool holdsPixel(const _Rbuf_BaseData& plane, const unsigned char* value) {
  for (int r = 0; r < plane.rows; ++r)
    if (kernels::RowHoldsPixel(RowOf(plane, r), static_cast<std::size_t>(plane.columns), value,
                               plane.pixelBytes))
      return true;
  return false;
}

} // namespace

boost::shared_array<unsigned char> PixelBlock::getNODATAValue(long plane) const {
  CheckIndex(plane, "tilx::PixelBlock::getNODATAValue", __LINE__);
  return m_Data->m_NoDataValues[plane];
}

void PixelBlock::setNODATAValue(long plane, unsigned char* value) {
  CheckIndex(plane, "tilx::PixelBlock::setNODATAValue", __LINE__);
  if (m_Data->StoreNODATAValue(plane, value) && !m_Data->m_MaskHasPrimacy[plane])
    setCondition(plane, UNKNOWN);
}

bool PixelBlock::getMaskHasNODATAPrimacy(long plane) const {
  CheckIndex(plane, "tilx::PixelBlock::getMaskHasNODATAPrimacy", __LINE__);
  return m_Data->m_MaskHasPrimacy[plane];
}

void PixelBlock::setMaskHasNODATAPrimacy(long plane, bool primacy) {
  CheckIndex(plane, "tilx::PixelBlock::setMaskHasNODATAPrimacy", __LINE__);
  if (primacy)
    computeMask(plane); // the mask is valid at the moment it becomes the authority
  m_Data->m_MaskHasPrimacy[plane] = primacy;
}

void PixelBlock::FillWithNODATA(long plane) {
  if (m_Data->m_NoDataValues[plane])
    FillPlane(*getPlane(plane), m_Data->m_NoDataValues[plane].get(), file,
              "tilx::PixelBlock::FillWithNODATA");
}

void PixelBlock::setPlaneToNODATA(long plane) {
  if (!HasPlane(plane))
    RaiseFault(file, "tilx::PixelBlock::setPlaneToNODATA", "Invalid Index");
  setCondition(plane, NODATA);
  FillWithNODATA(plane);
}

void PixelBlock::setBlockToNODATA() {
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i) {
    m_Data->m_PlanesCondition[i] = NODATA; // unlike setPlaneToNODATA, without marking the mask dirty
    FillWithNODATA(i);
  }
}

void PixelBlock::setPixelToNODATA(long plane, long column, long row) {
  constexpr char function[] = "tilx::PixelBlock::setPixelToNODATA";
  const _Rbuf_BaseData& rect = *getPlane(plane);
  if (column < 0 || column >= rect.columns || row < 0 || row >= rect.rows)
    RaiseFault(file, function, "Invalid Pixel Position");
  DataContentsCondition& condition = m_Data->m_PlanesCondition[plane];
  if (condition == NODATA)
    return;
  const unsigned char* const value = m_Data->m_NoDataValues[plane].get();
  if (!value && m_Data->m_MaskDirty[plane]) {
    if (condition != ALLDATA)
      RaiseFault(file, function, "No Mask or NODATA value set for this plane");
    computeMask(plane);
  }
  if (value)
    std::memcpy(RowOf(rect, row) + column * rect.pixelBytes, value,
                static_cast<std::size_t>(rect.pixelBytes));
  const boost::shared_ptr<_Rbuf_BaseData> mask = m_Data->Mask(plane);
  if (!m_Data->m_MaskDirty[plane] && mask)
    RowOf(*mask, row)[column] = 0;
  if (rect.rows == 1 && rect.columns == 1)
    condition = NODATA;
  else if (condition == ALLDATA)
    condition = SOMEDATA;
  else
    condition = mask ? ScanMask(plane) : UNKNOWN;
}

void PixelBlock::syncMaskWithNODATAFill(long plane) {
  CheckIndex(plane, "tilx::PixelBlock::syncMaskWithNODATAFill", __LINE__);
  const unsigned char* const value = m_Data->m_NoDataValues[plane].get();
  if (m_Data->m_MaskHasPrimacy[plane] || !value)
    return;
  if (!m_Data->HasMasks())
    m_Data->InitMask(plane);
  const boost::shared_ptr<_Rbuf_BaseData> existing = m_Data->Mask(plane);
  if (!existing)
    return;
  const _Rbuf_BaseData& rect = *m_Data->m_Planes[plane];
  const _Rbuf_BaseData& mask = *existing;
  const DataContentsCondition condition = getCondition(plane);
  if (condition == NODATA || condition == ALLDATA) {
    FillMask(mask, condition == ALLDATA ? 255 : 0);
    return;
  }
  for (int r = 0; r < rect.rows; ++r)
    kernels::MaskFromFillRow(RowOf(rect, r), RowOf(mask, r), static_cast<std::size_t>(rect.columns), value,
                             rect.pixelBytes);
}

bool PixelBlock::syncNODATAFillWithMask(long plane, bool strict) {
  constexpr char function[] = "tilx::PixelBlock::syncNODATAFillWithMask";
  CheckIndex(plane, function, __LINE__);
  const unsigned char* const value = m_Data->m_NoDataValues[plane].get();
  if (!value)
    return true;
  const _Rbuf_BaseData& rect = *m_Data->m_Planes[plane];
  const DataContentsCondition condition = getCondition(plane);
  if (condition == NODATA) {
    FillPlane(rect, value, file, function);
    return true;
  }
  if (condition == ALLDATA) {
    if (m_Data->m_MaskHasPrimacy[plane] || !holdsPixel(rect, value))
      return true;
    if (strict)
      quent::rasterops::Raise(file, function, "Condition set to ALLDATA, but found NODATA pixel value");
    return false;
  }
  const boost::shared_ptr<BufferAccessor> mask = getMaskAccessor(plane, true);
  for (int r = 0; r < rect.rows; ++r)
    kernels::FillInvalidRow(RowOf(rect, r), static_cast<const unsigned char*>(mask->GetRowPtr(r)),
                            static_cast<std::size_t>(rect.columns), value, rect.pixelBytes);
  return true;
}

void PixelBlock::syncNODATAFillWithMask(long plane, unsigned char* value) {
  setMaskHasNODATAPrimacy(plane, true);
  m_Data->StoreNODATAValue(plane, value);
  syncNODATAFillWithMask(plane, true);
}

} // namespace tilx
