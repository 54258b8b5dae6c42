// The state of a block: its arrays, how they come into being, and the masks that are made on demand.
#include "rasterops/computecompositemask.h"
#include "rasterops/computemask.h"
#include "rasterops/frame/failure.h"
#include "rasterops/pixelblock.h"

#include <boost/make_shared.hpp>
#include <boost/numeric/conversion/cast.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tilx {

using quent::rasterops::PixelRectDeleter;
using quent::rasterops::RaiseFault;

namespace {

constexpr char file[] = "pixelblock";
constexpr char initName[] = "tilx::PixelBlock::pixelBlockData::Init";

/// The storage of all planes of a new block, zeroed, with a tail as every rectangle has it.
unsigned char* allocatePlanes(std::size_t step, long planes, std::size_t rowBytes) {
  const std::size_t tail = rowBytes + 64;
  constexpr std::size_t greatest = std::numeric_limits<std::size_t>::max();
  void* const memory = step > (greatest - tail) / static_cast<std::size_t>(planes)
                           ? nullptr
                           : rsys_HeapCalloc(1, step * static_cast<std::size_t>(planes) + tail);
  if (!memory)
    RaiseFault(file, initName, "No Memory");
  return static_cast<unsigned char*>(memory);
}

/// A rectangle over `address` whose rows lie `padding` pixels further apart than they are long.
boost::shared_ptr<_Rbuf_BaseData> wrapRectangle(int height, int width, int padding, Rbuf_PixelType type,
                                                unsigned char* address) {
  RfaultException ex(file, initName);
  RbufBaseData rect(
      rbuf_BaseDataCreate(height, width + padding, type, rbuf_RowMajor, address, ex.GetErrorSlot()));
  ex.Check(__LINE__);
  if (padding != 0) {
    RbufBaseData wide(rect.Release());
    rect = rbuf_BaseDataReDerive(wide, nullptr, 0, 0, height, width, ex.GetErrorSlot());
    ex.Check(__LINE__);
  }
  return boost::shared_ptr<_Rbuf_BaseData>(rect.Release(), PixelRectDeleter());
}

/// Pixels between the end of a row and the start of the next.
int paddingOf(long pitch, long pixelBytes, long width) {
  const double padding = static_cast<double>(pitch - pixelBytes * width) / static_cast<double>(pixelBytes);
  if (padding != std::floor(padding))
    RaiseFault(file, initName, "Inter-row pitch is not an even multiple of the pixel size");
  return boost::numeric_cast<int>(padding);
}

} // namespace

PixelBlock::pixelBlockData::pixelBlockData() {
  MaskOperator();
  CompositeMaskOperator();
}

PixelBlock::pixelBlockData::~pixelBlockData() = default;

PixelBlock::pixelBlockData::pixelBlockData(long planes, long width, long height, Rbuf_PixelType type,
                                           unsigned char* data, long planeStride, long pitch,
                                           unsigned char* const* noData,
                                           const DataContentsCondition* conditions)
    : pixelBlockData() {
  if (planes < 1)
    RaiseFault(file, initName, "Invalid noOfPlanes");
  Allocate(planes);

  RfaultException ex(file, initName);
  const int rows = boost::numeric_cast<int>(height);
  const int columns = boost::numeric_cast<int>(width);
  // Also checks type and size, so that what follows may index tables and multiply.
  const std::size_t step =
      rbuf_BaseDataStackDataSize(1, rows, columns, type, rbuf_RowMajor, ex.GetErrorSlot());
  ex.Check(__LINE__);
  const long pixelBytes = rsys_AddressOf_rbuf_NumBytesPerPixel()[type];
  const int padding = data ? paddingOf(pitch, pixelBytes, width) : 0;
  const long stride = data ? planeStride : static_cast<long>(step);

  LegacyHelperTemplate<unsigned char> storage;
  if (!data)
    storage.Reset(allocatePlanes(step, planes, static_cast<std::size_t>(width * pixelBytes)));
  unsigned char* address = data ? data : storage.get();
  for (long i = 0; i < planes; ++i, address += stride) {
    m_Planes[i] = wrapRectangle(rows, columns, padding, type, address);
    StoreNODATAValue(i, noData ? noData[i] : nullptr);
    if (!data && i == 0) {
      m_Planes[0]->external = 0; // plane 0 owns the whole allocation from here on
      storage.Release();
    }
    m_PlanesCondition[i] = conditions ? conditions[i] : data ? UNKNOWN : NODATA;
    if (m_PlanesCondition[i] == NODATA && m_NoDataValues[i]) {
      rbuf_FillPixels(address, type, m_NoDataValues[i].get(), static_cast<std::size_t>(width * height),
                      ex.GetErrorSlot());
      ex.Check(__LINE__);
    }
  }
}

PixelBlock::pixelBlockData::pixelBlockData(const boost::shared_ptr<_Rbuf_BaseData>& plane,
                                           const boost::shared_array<unsigned char>& noData,
                                           DataContentsCondition condition)
    : pixelBlockData() {
  Allocate(1);
  m_Planes[0] = plane;
  m_NoDataValues[0] = noData;
  m_PlanesCondition[0] = condition;
}

PixelBlock::pixelBlockData::pixelBlockData(const pixelBlockData& other)
    : m_Planes(other.m_Planes), m_Masks(other.m_Masks), m_NoDataValues(other.m_NoDataValues),
      m_PlanesCondition(other.m_PlanesCondition), m_MaskDirty(other.m_MaskDirty),
      m_MaskHasPrimacy(other.m_MaskHasPrimacy), m_NumOfPlanes(other.m_NumOfPlanes) {}

const boost::shared_ptr<ComputeMask>& PixelBlock::pixelBlockData::MaskOperator() {
  static const auto operation = boost::make_shared<ComputeMask>();
  return operation;
}

const boost::shared_ptr<ComputeCompositeMask>& PixelBlock::pixelBlockData::CompositeMaskOperator() {
  static const auto operation = boost::make_shared<ComputeCompositeMask>();
  return operation;
}

void PixelBlock::pixelBlockData::Allocate(long planes) {
  const auto count = boost::numeric_cast<std::int32_t>(planes);
  m_Planes.reset(new boost::shared_ptr<_Rbuf_BaseData>[count]);
  m_NoDataValues.reset(new boost::shared_array<unsigned char>[count]);
  m_PlanesCondition.reset(new DataContentsCondition[count]);
  m_MaskDirty.reset(new bool[count]);
  m_MaskHasPrimacy.reset(new bool[count]);
  for (std::int32_t i = 0; i < count; ++i) {
    m_PlanesCondition[i] = UNKNOWN;
    m_MaskDirty[i] = true;
    m_MaskHasPrimacy[i] = false;
  }
  m_NumOfPlanes = count;
}

bool PixelBlock::pixelBlockData::InitMask(long plane) {
  const std::lock_guard guard(m_MaskLock);
  if (!m_Masks)
    m_Masks.reset(new boost::shared_ptr<_Rbuf_BaseData>[m_NumOfPlanes]);
  if (m_Masks[plane])
    return false;
  RfaultException ex(file, "tilx::PixelBlock::pixelBlockData::InitMask");
  const _Rbuf_BaseData& first = *m_Planes[0];
  _Rbuf_BaseData* const mask = tilx_PixelRectCreate(first.columns, first.rows, U8, ex.GetErrorSlot());
  ex.Check(__LINE__);
  m_Masks[plane].reset(mask, PixelRectDeleter());
  return true;
}

_Rbuf_BaseData* PixelBlock::pixelBlockData::Mask(long plane) const {
  return m_Masks ? m_Masks[plane].get() : nullptr;
}

bool PixelBlock::pixelBlockData::StoreNODATAValue(long plane, const unsigned char* value) {
  boost::shared_array<unsigned char>& stored = m_NoDataValues[plane];
  if (!value) {
    const bool changed = stored.get() != nullptr;
    stored.reset();
    return changed;
  }
  const _Rbuf_BaseData& rect = *m_Planes[plane];
  if (stored && std::equal(value, value + rect.pixelBytes, stored.get()))
    return false;
  stored.reset(new unsigned char[rect.pixelBytes]); // new bytes: earlier sharers keep the old ones
  rsys_AddressOf_rbuf_Convert()[rect.pixelType][rect.pixelType](value, stored.get(), 1);
  return true;
}

} // namespace tilx
