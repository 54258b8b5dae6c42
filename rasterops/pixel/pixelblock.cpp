// Making, sharing and copying blocks, and what they tell of themselves.
#include "rasterops/pixelblock.h"

#include "rasterops/frame/failure.h"
#include "rasterops/pixel/planerows.h"

#include <boost/make_shared.hpp>
#include <boost/numeric/conversion/cast.hpp>

#include <stdexcept>

namespace tilx {

using quent::rasterops::PixelRectDeleter;
using quent::rasterops::RaiseFault;

namespace {

constexpr char file[] = "pixelblock";

/// A shared copy of a record and its pixels.
boost::shared_ptr<_Rbuf_BaseData> copyRectangle(const _Rbuf_BaseData* rect, const char* function) {
  RfaultException ex(file, function);
  _Rbuf_BaseData* const copy = rbuf_BaseDataCopy(rect, nullptr, ex.GetErrorSlot());
  ex.Check(__LINE__);
  return boost::shared_ptr<_Rbuf_BaseData>(copy, PixelRectDeleter());
}

/// The state of a copy of a stack: all data, of the size and type of the first layer.
boost::shared_ptr<PixelBlock::pixelBlockData> stateForStack(const _Rbuf_BaseDataStack* stack) {
  if (!stack || stack->count == 0)
    RaiseFault(file, "tilx::PixelBlock::PixelBlock", "Base data stack is null or contains no layers.");
  if (stack->count < 0)
    RaiseFault(file, "tilx::PixelBlock::pixelBlockData::Init", "Invalid noOfPlanes");
  for (int i = 0; i < stack->count; ++i)
    if (!stack->layers[i])
      RaiseFault(file, "tilx::PixelBlock::PixelBlock", "Base data stack has a null layer.");
  const _Rbuf_BaseData& first = *stack->layers[0];
  const std::vector<DataContentsCondition> conditions(static_cast<std::size_t>(stack->count), ALLDATA);
  return boost::make_shared<PixelBlock::pixelBlockData>(
      stack->count, first.columns, first.rows, first.pixelType, nullptr, 0L, 0L, nullptr, conditions.data());
}

/// Copies a layer into a plane. A column-major layer is transposed element by element.
void copyLayer(const _Rbuf_BaseData& layer, _Rbuf_BaseData& plane) {
  RfaultException ex(file, "tilx::PixelBlock::PixelBlock");
  if (layer.objectType != rbuf_ColumnMajor) {
    plane.objectType = layer.objectType;
    rbuf_BaseDataCopy(&layer, &plane, ex.GetErrorSlot());
    plane.objectType = rbuf_RowMajor;
    ex.Check(__LINE__);
    return;
  }
  if (layer.rows != plane.rows || layer.columns != plane.columns || layer.pixelType != plane.pixelType)
    ex.Throw(__LINE__, "A layer differs from the first one in size or type");
  for (std::ptrdiff_t r = 0; r < plane.rows; ++r)
    for (std::ptrdiff_t c = 0; c < plane.columns; ++c) {
      const unsigned char* const from = layer.data + c * layer.pitch + r * layer.pixelBytes;
      std::copy_n(from, plane.pixelBytes, plane.data + r * plane.pitch + c * plane.pixelBytes);
    }
}

} // namespace

IPixelBlock::IPixelBlock() = default;
IPixelBlock::~IPixelBlock() = default;

std::wstring IPixelBlock::ToDebugString() const {
  const auto* const block = dynamic_cast<const PixelBlock*>(this);
  return block ? block->ToDebugString() : L"not an tilx::PixelBlock";
}

PixelBlock::PixelBlock() : m_Data(boost::make_shared<pixelBlockData>()) {}

PixelBlock::PixelBlock(long planes, long width, long height, Rbuf_PixelType type, unsigned char** noData)
    : PixelBlock(planes, width, height, type, nullptr, 0, 0, noData) {}

PixelBlock::PixelBlock(long planes, long width, long height, Rbuf_PixelType type, unsigned char* data,
                       long planeStride, long pitch, unsigned char** noData)
    : m_Data(boost::make_shared<pixelBlockData>(planes, width, height, type, data, planeStride, pitch, noData,
                                                nullptr)) {}

PixelBlock::PixelBlock(const _Rbuf_BaseDataStack* stack) : m_Data(stateForStack(stack)) {
  for (int i = 0; i < stack->count; ++i)
    copyLayer(*stack->layers[i], *m_Data->m_Planes[i]);
}

PixelBlock::PixelBlock(const PixelBlock& other)
    : IPixelBlock(), m_Data(boost::make_shared<pixelBlockData>(*other.m_Data)) {}

PixelBlock::PixelBlock(const IPixelBlock& other) : m_Data(boost::make_shared<pixelBlockData>()) {
  constexpr char function[] = "tilx::PixelBlock::PixelBlock";
  const long planes = other.getNumOfPlanes();
  if (planes < 1)
    return;
  m_Data->Allocate(planes);
  for (long i = 0; i < planes; ++i) {
    m_Data->m_Planes[i] = copyRectangle(other.getPlaneData(i), function);
    if (const _Rbuf_BaseData* const mask = other.getMaskData(i))
      m_Data->StoreMask(i, copyRectangle(mask, function));
    m_Data->m_PlanesCondition[i] = other.getCondition(i);
    m_Data->m_MaskDirty[i] = false;
    m_Data->m_MaskHasPrimacy[i] = true;
  }
}

PixelBlock::PixelBlock(boost::shared_ptr<pixelBlockData> data)
    : m_Data(data ? std::move(data) : boost::make_shared<pixelBlockData>()) {}

PixelBlock::~PixelBlock() = default;

PixelBlock& PixelBlock::operator=(const PixelBlock& other) {
  if (this != &other)
    m_Data = boost::make_shared<pixelBlockData>(*other.m_Data);
  return *this;
}

void PixelBlock::SetFrom(const IPixelBlock& source) {
  if (&source == this)
    return;
  if (const auto* const block = dynamic_cast<const PixelBlock*>(&source)) {
    *this = *block;
    return;
  }
  const long planes = source.getNumOfPlanes();
  if (planes < 1) {
    *this = PixelBlock();
    return;
  }
  *this = PixelBlock(planes, source.getWidth(), source.getHeight(), source.getDataType(), nullptr);
  throw std::runtime_error("tilx::PixelBlock::SetFrom TODO");
}

boost::shared_ptr<IPixelBlock> PixelBlock::Clone() const {
  std::vector<long> planes(static_cast<std::size_t>(m_Data->m_NumOfPlanes));
  for (std::size_t i = 0; i < planes.size(); ++i)
    planes[i] = static_cast<long>(i);
  return CloneFromPlanes(planes);
}

boost::shared_ptr<IPixelBlock> PixelBlock::CloneFromPlanes(const std::vector<long>& planes) const {
  constexpr char function[] = "tilx::PixelBlock::CloneFromPlanes";
  const auto count = boost::numeric_cast<std::int32_t>(planes.size());
  for (const long plane : planes)
    if (!HasPlane(plane))
      RaiseFault(file, function, "Plane index out of range");
  auto data = boost::make_shared<pixelBlockData>();
  if (count > 0)
    data->Allocate(count);
  for (std::int32_t i = 0; i < count; ++i) {
    const long from = planes[static_cast<std::size_t>(i)];
    data->m_Planes[i] = copyRectangle(m_Data->m_Planes[from].get(), function);
    if (const boost::shared_ptr<_Rbuf_BaseData> mask = m_Data->Mask(from))
      data->StoreMask(i, copyRectangle(mask.get(), function));
    data->StoreNODATAValue(i, m_Data->m_NoDataValues[from].get());
    data->m_PlanesCondition[i] = m_Data->m_PlanesCondition[from];
    data->m_MaskDirty[i] = m_Data->m_MaskDirty[from];
    data->m_MaskHasPrimacy[i] = m_Data->m_MaskHasPrimacy[from];
  }
  return boost::make_shared<PixelBlock>(data);
}

boost::shared_ptr<PixelBlock> PixelBlock::Convert(Rbuf_PixelType type) const {
  // The planes of the whole block, also when a window is laid over it.
  const PixelBlock whole(m_Data);
  auto out = boost::make_shared<PixelBlock>(whole.getNumOfPlanes(), whole.getWidth(), whole.getHeight(), type,
                                            nullptr);
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i)
    out->setPlaneFromPixelBlock(i, whole, i);
  return out;
}

long PixelBlock::getNumOfPlanes() const {
  return m_Data->m_NumOfPlanes;
}

long PixelBlock::getHeight() const {
  return m_Data->m_NumOfPlanes > 0 ? getPlaneData(0)->rows : 0;
}

long PixelBlock::getWidth() const {
  return m_Data->m_NumOfPlanes > 0 ? getPlaneData(0)->columns : 0;
}

Rbuf_PixelType PixelBlock::getDataType() const {
  return m_Data->m_NumOfPlanes > 0 ? getPlaneData(0)->pixelType : static_cast<Rbuf_PixelType>(-1);
}

long PixelBlock::getNumBytes() const {
  return m_Data->m_NumOfPlanes > 0 ? getPlaneData(0)->pixelBytes : -1;
}

long PixelBlock::getPlanePitch() const {
  if (m_Data->m_NumOfPlanes < 2)
    return 0;
  return static_cast<std::int32_t>(getPlaneData(1)->storage - getPlaneData(0)->storage);
}

const _Rbuf_BaseData* PixelBlock::getPlaneData(long plane) const {
  CheckIndex(plane, "tilx::PixelBlock::getPlaneData", __LINE__);
  return m_Data->m_Planes[plane].get();
}

boost::shared_ptr<_Rbuf_BaseData>& PixelBlock::getPlane(long plane) {
  CheckIndex(plane, "tilx::PixelBlock::getPlane", __LINE__);
  return m_Data->m_Planes[plane];
}

void PixelBlock::getPlane(long plane, IPixelBlock& out) const {
  CheckIndex(plane, "tilx::PixelBlock::getPlane", __LINE__);
  // Through the virtual form, so that a window shows itself; it changes nothing.
  const boost::shared_ptr<_Rbuf_BaseData> rect = const_cast<PixelBlock*>(this)->getPlane(plane);
  ShareRectangle(rect, m_Data->m_NoDataValues[plane], m_Data->m_PlanesCondition[plane],
                 m_Data->m_MaskHasPrimacy[plane], out);
}

_Rbuf_BaseDataStack* PixelBlock::asPixelRectStack() {
  RfaultException ex(file, "getPixelRectStackFromPixelBlock");
  RbufBaseDataStack stack(rbuf_BaseDataStackPtrCreate(m_Data->m_NumOfPlanes, ex.GetErrorSlot()));
  ex.Check(__LINE__);
  for (int i = 0; i < m_Data->m_NumOfPlanes; ++i) {
    const _Rbuf_BaseData& plane = *getPlaneData(i);
    stack->layers[i] =
        rbuf_BaseDataReDerive(&plane, nullptr, 0, 0, plane.rows, plane.columns, ex.GetErrorSlot());
    ex.Check(__LINE__);
  }
  return stack.Release();
}

void PixelBlock::setPlane(long plane, PixelBlock& source) {
  constexpr char function[] = "tilx::PixelBlock::setPlane";
  if (source.m_Data->m_NumOfPlanes < 1)
    RaiseFault(file, function, "Invalid source PixelBlock");
  _Rbuf_BaseData& to = *getPlane(plane);
  const _Rbuf_BaseData& from = *source.getPlane(0);
  if (from.rows != to.rows || from.columns != to.columns || from.pixelType != to.pixelType)
    RaiseFault(file, function, "Invalid argument");
  m_Data->StoreNODATAValue(plane, source.m_Data->m_NoDataValues[0].get());
  m_Data->m_PlanesCondition[plane] = source.m_Data->m_PlanesCondition[0];
  m_Data->m_MaskHasPrimacy[plane] = source.m_Data->m_MaskHasPrimacy[0];
  m_Data->m_MaskDirty[plane] = true;
  if (from.data != to.data)
    ConvertPlane(from, to, file, function);
}

void PixelBlock::setPlaneFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) {
  constexpr char function[] = "tilx::PixelBlock::setPlaneFromPixelBlock";
  CheckIndex(plane, function, __LINE__);
  if (source.getWidth() != getWidth() || source.getHeight() != getHeight())
    RaiseFault(file, function, "Invalid dimensions");
  ConvertPlane(*source.getPlaneData(sourcePlane), *getPlane(plane), file, function);
  setMaskFromPixelBlock(plane, source, sourcePlane);
}

PixelBlock::operator _Rbuf_BaseData*() {
  if (m_Data->m_NumOfPlanes < 1)
    throw std::runtime_error("Empty Pixel Block");
  return getPlane(0).get();
}

_Rbuf_BaseData* PixelBlock::operator->() {
  return *this;
}

bool PixelBlock::HasPlane(long plane) const {
  return plane >= 0 && plane < m_Data->m_NumOfPlanes;
}

void PixelBlock::CheckIndex(long plane, const char* function, long line) const {
  if (!HasPlane(plane))
    RaiseFault(file, function, "Invalid index", line);
}

void PixelBlock::ShareRectangle(const boost::shared_ptr<_Rbuf_BaseData>& rect,
                                const boost::shared_array<unsigned char>& noData,
                                DataContentsCondition condition, bool primacy, IPixelBlock& out) {
  const auto data = boost::make_shared<pixelBlockData>(rect, noData, condition);
  data->m_MaskHasPrimacy[0] = primacy;
  out.SetFrom(PixelBlock(data));
}

} // namespace tilx
