#include "rasterops/configurablepixelblock.h"

#include "rasterops/frame/failure.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>

namespace tilx {

using quent::rasterops::PixelRectDeleter;

namespace {

constexpr char file[] = "configurablepixelblock";

} // namespace

ConfigurablePixelBlock::ConfigurablePixelBlock() = default;

ConfigurablePixelBlock::ConfigurablePixelBlock(PixelBlock& source, long columnOffset, long rowOffset,
                                               long width, long height)
    : PixelBlock(source), m_Overlay(new boost::shared_ptr<_Rbuf_BaseData>[m_Data->m_NumOfPlanes]) {
  Reconfigure(columnOffset, rowOffset, width, height);
}

ConfigurablePixelBlock::ConfigurablePixelBlock(const ConfigurablePixelBlock& other)
    : PixelBlock(other), m_Overlay(other.m_Overlay) {}

ConfigurablePixelBlock::ConfigurablePixelBlock(const boost::shared_ptr<_Rbuf_BaseData>& plane,
                                               const boost::shared_array<unsigned char>& noData,
                                               DataContentsCondition condition)
    : PixelBlock(boost::make_shared<pixelBlockData>(plane, noData, condition)),
      m_Overlay(new boost::shared_ptr<_Rbuf_BaseData>[1]) {
  m_Overlay[0] = plane;
}

ConfigurablePixelBlock::~ConfigurablePixelBlock() = default;

ConfigurablePixelBlock& ConfigurablePixelBlock::operator=(const ConfigurablePixelBlock& other) {
  if (this != &other) {
    PixelBlock::operator=(other);
    m_Overlay = other.m_Overlay;
  }
  return *this;
}

ConfigurablePixelBlock& ConfigurablePixelBlock::operator=(const PixelBlock& other) {
  PixelBlock::operator=(other);
  reset();
  return *this;
}

const _Rbuf_BaseData* ConfigurablePixelBlock::getPlaneData(long plane) const {
  CheckIndex(plane, "tilx::ConfigurablePixelBlock::getPlaneData", __LINE__);
  return m_Overlay[plane].get();
}

boost::shared_ptr<_Rbuf_BaseData>& ConfigurablePixelBlock::getPlane(long plane) {
  CheckIndex(plane, "tilx::ConfigurablePixelBlock::getPlane", __LINE__);
  return m_Overlay[plane];
}

void ConfigurablePixelBlock::Reconfigure(long columnOffset, long rowOffset, long width, long height) {
  RfaultException ex(file, "tilx::ConfigurablePixelBlock::Reconfigure");
  for (const long value : {columnOffset, rowOffset, width, height})
    if (value < 0 || value > std::numeric_limits<int>::max())
      ex.Throw(__LINE__, "The window does not lie inside the block");
  // All windows are made before any is exchanged, so that a failure leaves the old window.
  std::vector<boost::shared_ptr<_Rbuf_BaseData>> moved(static_cast<std::size_t>(m_Data->m_NumOfPlanes));
  for (long i = 0; i < m_Data->m_NumOfPlanes; ++i) {
    _Rbuf_BaseData* const window = rbuf_BaseDataReDerive(
        m_Data->m_Planes[i].get(), m_Overlay ? m_Overlay[i].get() : nullptr, static_cast<int>(rowOffset),
        static_cast<int>(columnOffset), static_cast<int>(height), static_cast<int>(width), ex.GetErrorSlot());
    ex.Check(__LINE__);
    moved[static_cast<std::size_t>(i)].reset(window, PixelRectDeleter());
  }
  // Copies share the overlay and move along. After reset() it is the planes array itself, which must stay.
  if (!m_Overlay || m_Overlay == m_Data->m_Planes)
    m_Overlay.reset(new boost::shared_ptr<_Rbuf_BaseData>[m_Data->m_NumOfPlanes]);
  std::copy(moved.begin(), moved.end(), m_Overlay.get());
}

void ConfigurablePixelBlock::reset() {
  m_Overlay = m_Data->m_Planes;
}

void ConfigurablePixelBlock::getPlane(long plane, ConfigurablePixelBlock& out) {
  CheckIndex(plane, "tilx::ConfigurablePixelBlock::getPlane", __LINE__);
  const boost::shared_ptr<_Rbuf_BaseData> window = m_Overlay[plane];
  const bool primacy = m_Data->m_MaskHasPrimacy[plane];
  out = ConfigurablePixelBlock(window, m_Data->m_NoDataValues[plane], m_Data->m_PlanesCondition[plane]);
  out.m_Data->m_MaskHasPrimacy[0] = primacy;
  out.m_Overlay[0] = window;
}

void ConfigurablePixelBlock::rederive(PixelBlock& source, long columnOffset, long rowOffset, long width,
                                      long height, PixelBlock& out) {
  ConfigurablePixelBlock tried(source, columnOffset, rowOffset, width, height);
  out = static_cast<const PixelBlock&>(tried);
}

} // namespace tilx
