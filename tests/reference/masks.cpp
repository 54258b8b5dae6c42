#include "reference/masks.h"

#include <algorithm>
#include <cmath>

namespace reference {

using tilx::ALLDATA;
using tilx::DataContentsCondition;
using tilx::NODATA;
using tilx::SOMEDATA;
using tilx::UNKNOWN;

namespace {

bool SameBytes(const Plane& plane, std::size_t index, const Bytes& value) {
  return std::memcmp(plane.Pixel(index), value.data(), value.size()) == 0;
}

template <class T> bool EqualsNoData(T pixel, T value) {
  return pixel == value;
}

template <class T> bool EqualsNoDataFloating(T pixel, T value) {
  if (std::isnan(value))
    return std::isnan(pixel);
  return pixel == value;
}

bool EqualsNoData(float pixel, float value) {
  return EqualsNoDataFloating(pixel, value);
}
bool EqualsNoData(double pixel, double value) {
  return EqualsNoDataFloating(pixel, value);
}

template <class T> bool EqualsNoData(Complex<T> pixel, Complex<T> value) {
  return std::memcmp(&pixel, &value, sizeof pixel) == 0;
}

void CreateMask(Block& block, std::size_t index) {
  block.hasMaskArray = true;
  Plane& plane = block.planes[index];
  if (!plane.mask)
    plane.mask = Bytes(plane.PixelCount());
}

void WriteNoData(Plane& plane, std::size_t index) {
  std::copy(plane.noData->begin(), plane.noData->end(), plane.Pixel(index));
}

} // namespace

DataContentsCondition ScanMask(const Bytes& mask) {
  bool sawValid = false;
  bool sawInvalid = false;
  for (const unsigned char byte : mask) {
    if (byte == 255)
      sawValid = true;
    else
      sawInvalid = true;
    if (sawValid && sawInvalid)
      return SOMEDATA;
  }
  return sawValid ? ALLDATA : NODATA;
}

MaskResult ComputeMask(const Plane& plane, DataContentsCondition incoming) {
  MaskResult result{Bytes(plane.PixelCount()), incoming};
  if (!plane.noData && result.condition != NODATA)
    result.condition = ALLDATA;
  if (result.condition == NODATA)
    return result;
  if (result.condition == ALLDATA) {
    std::fill(result.mask.begin(), result.mask.end(), 255);
    return result;
  }
  bool sawValid = false;
  bool sawInvalid = false;
  Visit(plane.type, [&](auto tag) {
    using T = typename decltype(tag)::Type;
    const T value = Load<T>(plane.noData->data());
    for (std::size_t i = 0; i < plane.PixelCount(); ++i) {
      const bool invalid = EqualsNoData(Load<T>(plane.Pixel(i)), value);
      result.mask[i] = invalid ? 0 : 255;
      (invalid ? sawInvalid : sawValid) = true;
    }
  });
  result.condition = UNKNOWN;
  if (sawValid)
    result.condition = sawInvalid ? SOMEDATA : ALLDATA;
  else if (sawInvalid)
    result.condition = NODATA;
  return result;
}

MaskResult ComputeCompositeMask(const std::vector<Bytes>& masks, std::size_t size) {
  MaskResult result{Bytes(size, 255), UNKNOWN};
  if (masks.empty())
    return result;
  for (const Bytes& mask : masks)
    for (std::size_t i = 0; i < size; ++i)
      result.mask[i] = std::min(result.mask[i], mask[i]);
  bool sawValid = false;
  bool sawInvalid = false;
  for (const unsigned char byte : result.mask) {
    if (byte == 0)
      sawInvalid = true;
    else
      sawValid = true;
    if (byte != 0 && byte < 255)
      sawInvalid = true;
  }
  if (sawValid)
    result.condition = sawInvalid ? SOMEDATA : ALLDATA;
  else if (sawInvalid)
    result.condition = NODATA;
  return result;
}

DataContentsCondition GetCondition(Plane& plane) {
  if (plane.condition == UNKNOWN && plane.noData && !plane.maskDirty)
    plane.condition = ScanMask(*plane.mask);
  return plane.condition;
}

void SetCondition(Plane& plane, DataContentsCondition condition) {
  plane.condition = condition;
  plane.maskDirty = true;
}

void ComputePlaneMask(Block& block, std::size_t index) {
  Plane& plane = block.planes[index];
  if (!plane.maskDirty)
    return;
  if (plane.condition != NODATA && plane.condition != ALLDATA && (plane.maskHasPrimacy || !plane.noData))
    throw MaskNotComputable();
  CreateMask(block, index);
  MaskResult result = ComputeMask(plane, plane.condition);
  plane.mask = std::move(result.mask);
  plane.condition = result.condition;
  plane.maskDirty = false;
}

Bytes& GetMask(Block& block, std::size_t index) {
  Plane& plane = block.planes[index];
  if (!plane.mask)
    plane.maskDirty = true;
  ComputePlaneMask(block, index);
  return *plane.mask;
}

void ComputeCondition(Plane& plane) {
  if (!plane.mask)
    return;
  plane.condition = ScanMask(*plane.mask);
  plane.maskDirty = false;
}

void SyncMaskWithNODATAFill(Block& block, std::size_t index) {
  Plane& plane = block.planes[index];
  if (plane.maskHasPrimacy || !plane.noData)
    return;
  if (!block.hasMaskArray)
    CreateMask(block, index);
  if (!plane.mask)
    return;
  const DataContentsCondition condition = GetCondition(plane);
  for (std::size_t i = 0; i < plane.PixelCount(); ++i) {
    if (condition == NODATA)
      (*plane.mask)[i] = 0;
    else if (condition == ALLDATA)
      (*plane.mask)[i] = 255;
    else
      (*plane.mask)[i] = SameBytes(plane, i, *plane.noData) ? 0 : 255;
  }
}

bool SyncNODATAFillWithMask(Block& block, std::size_t index, bool strict) {
  Plane& plane = block.planes[index];
  bool inLine = true;
  if (!plane.noData)
    return inLine;
  const DataContentsCondition condition = GetCondition(plane);
  if (condition == NODATA) {
    for (std::size_t i = 0; i < plane.PixelCount(); ++i)
      WriteNoData(plane, i);
  } else if (condition == ALLDATA) {
    for (std::size_t i = 0; i < plane.PixelCount() && !plane.maskHasPrimacy; ++i) {
      if (!SameBytes(plane, i, *plane.noData))
        continue;
      if (strict)
        throw FillContradictsCondition();
      inLine = false;
    }
  } else {
    const Bytes& mask = GetMask(block, index);
    for (std::size_t i = 0; i < plane.PixelCount(); ++i)
      if (mask[i] == 0)
        WriteNoData(plane, i);
  }
  return inLine;
}

void ReleaseWrittenMask(Block& block, std::size_t index) {
  ComputeCondition(block.planes[index]);
  SyncNODATAFillWithMask(block, index, true);
}

void ReleaseWrittenPixels(Block& block, std::size_t index) {
  Plane& plane = block.planes[index];
  if (plane.noData && !plane.maskHasPrimacy) {
    SetCondition(plane, UNKNOWN);
    SyncMaskWithNODATAFill(block, index);
  }
  ComputeCondition(plane);
}

} // namespace reference
