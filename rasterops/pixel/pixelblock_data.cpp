// The state of a block: its arrays, how they come into being, and the masks that are made on demand.
#include "rasterops/computecompositemask.h"
#include "rasterops/computemask.h"
#include "rasterops/frame/failure.h"
#include "rasterops/pixel/planerows.h"
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

/// A rectangle over `address` with a pitch.
boost::shared_ptr<_Rbuf_BaseData> wrapRectangle(int height, int width, int pitch, Rbuf_PixelType type,
                                                unsigned char* address) {
  RfaultException ex(file, initName);
  _Rbuf_BaseData* const rect =
      rbuf_BaseDataCreate(height, width, type, rbuf_RowMajor, address, ex.GetErrorSlot());
  ex.Check(__LINE__);
  rect->pitch = pitch;
  return boost::shared_ptr<_Rbuf_BaseData>(rect, PixelRectDeleter());
}

/// A number that fits the 32 bits of a record.
int checkedInt(long value, const char* message) {
  if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
    RaiseFault(file, initName, message);
  return static_cast<int>(value);
}

/// A pitch that leaves whole pixels, and no fewer than none, between the rows.
int checkedPitch(long pitch, long pixelBytes, long width) {
  const double padding =
      (static_cast<double>(pitch) - static_cast<double>(pixelBytes) * static_cast<double>(width)) /
      static_cast<double>(pixelBytes);
  if (padding != std::floor(padding))
    RaiseFault(file, initName, "Inter-row pitch is not an even multiple of the pixel size");
  if (padding < 0)
    RaiseFault(file, initName, "Inter-row pitch is shorter than a row");
  return checkedInt(pitch, "Inter-row pitch does not fit 32 bits");
}

long pixelBytesOf(Rbuf_PixelType type) {
  if (type < 0 || type >= rbuf_PixelTypeCount)
    RaiseFault(file, initName, "Invalid pixel type");
  return rsys_AddressOf_rbuf_NumBytesPerPixel()[type];
}

} // namespace

PixelBlock::pixelBlockData::pixelBlockData() {
  MaskOperator();
  CompositeMaskOperator();
}

PixelBlock::pixelBlockData::~pixelBlockData() = default;

PixelBlock::pixelBlockData::pixelBlockData(long planes, long width, long height, Rbuf_PixelType type,
                                           unsigned char* data, std::ptrdiff_t planeStride, long pitch,
                                           unsigned char* const* noData,
                                           const DataContentsCondition* conditions)
    : pixelBlockData() {
  if (planes < 1)
    RaiseFault(file, initName, "Invalid noOfPlanes");
  Allocate(planes);

  const long pixelBytes = pixelBytesOf(type);
  const int wrappedPitch = data ? checkedPitch(pitch, pixelBytes, width) : 0;
  const int rows = checkedInt(height, "The height does not fit 32 bits");
  const int columns = checkedInt(width, "The width does not fit 32 bits");
  RfaultException ex(file, initName);
  const std::size_t step =
      rbuf_BaseDataStackDataSize(1, rows, columns, type, rbuf_RowMajor, ex.GetErrorSlot());
  ex.Check(__LINE__);
  const auto rowBytes = static_cast<int>(width * pixelBytes); // fits, or there would be no data size

  LegacyHelperTemplate<unsigned char> storage;
  if (!data)
    storage.Reset(allocatePlanes(step, planes, static_cast<std::size_t>(rowBytes)));
  const std::ptrdiff_t stride = data ? planeStride : static_cast<std::ptrdiff_t>(step);
  unsigned char* address = data ? data : storage.get();
  for (long i = 0; i < planes; ++i, address += stride) {
    m_Planes[i] = wrapRectangle(rows, columns, data ? wrappedPitch : rowBytes, type, address);
    StoreNODATAValue(i, noData ? noData[i] : nullptr);
    if (!data && i == 0) {
      m_Planes[0]->external = 0; // plane 0 owns the whole allocation from here on
      storage.Release();
    }
    m_PlanesCondition[i] = conditions ? conditions[i] : data ? UNKNOWN : NODATA;
    if (m_PlanesCondition[i] == NODATA && m_NoDataValues[i])
      FillPlane(*m_Planes[i], m_NoDataValues[i].get(), file, initName);
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
    : m_Planes(other.m_Planes), m_NoDataValues(other.m_NoDataValues),
      m_PlanesCondition(other.m_PlanesCondition), m_MaskDirty(other.m_MaskDirty),
      m_MaskHasPrimacy(other.m_MaskHasPrimacy), m_NumOfPlanes(other.m_NumOfPlanes), m_Source(other.m_Source) {
  const std::lock_guard guard(other.m_MaskLock);
  m_Masks = other.m_Masks;
}

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

boost::shared_ptr<_Rbuf_BaseData> PixelBlock::pixelBlockData::Mask(long plane) const {
  const std::lock_guard guard(m_MaskLock);
  return m_Masks ? m_Masks[plane] : boost::shared_ptr<_Rbuf_BaseData>();
}

bool PixelBlock::pixelBlockData::HasMasks() const {
  const std::lock_guard guard(m_MaskLock);
  return m_Masks.get() != nullptr;
}

void PixelBlock::pixelBlockData::StoreMask(long plane, const boost::shared_ptr<_Rbuf_BaseData>& mask) {
  const std::lock_guard guard(m_MaskLock);
  if (!m_Masks)
    m_Masks.reset(new boost::shared_ptr<_Rbuf_BaseData>[m_NumOfPlanes]);
  m_Masks[plane] = mask;
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
