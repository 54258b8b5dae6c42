#include "support/blocks.h"

#include "reference/conversion.h"
#include "support/pixelvalues.h"

#include <boost/make_shared.hpp>

#include <cmath>
#include <type_traits>

namespace testsupport {

using reference::Bytes;

namespace {

template <class T> bool SameNumber(T expected, T actual, bool anyNan) {
  if constexpr (std::is_floating_point_v<T>) {
    if (anyNan && std::isnan(expected) && std::isnan(actual))
      return true;
  }
  return std::memcmp(&expected, &actual, sizeof expected) == 0;
}

template <class T>
bool SameNumber(reference::Complex<T> expected, reference::Complex<T> actual, bool anyNan) {
  return SameNumber(expected.real, actual.real, anyNan) &&
         SameNumber(expected.imaginary, actual.imaginary, anyNan);
}

std::string Hex(const unsigned char* bytes, std::size_t count) {
  std::string text;
  for (std::size_t i = count; i-- > 0;) {
    constexpr char digits[] = "0123456789abcdef";
    text += digits[bytes[i] >> 4];
    text += digits[bytes[i] & 15];
  }
  return text;
}

testing::AssertionResult SamePlane(const reference::Plane& expected, const reference::Plane& actual,
                                   bool anyComplexNan) {
  if (expected.type != actual.type || expected.rows != actual.rows || expected.columns != actual.columns)
    return testing::AssertionFailure() << "type or size differ";
  if (expected.condition != actual.condition)
    return testing::AssertionFailure()
           << "condition " << actual.condition << " instead of " << expected.condition;
  if (expected.maskDirty != actual.maskDirty)
    return testing::AssertionFailure() << "dirty flag " << actual.maskDirty;
  if (expected.maskHasPrimacy != actual.maskHasPrimacy)
    return testing::AssertionFailure() << "primacy flag " << actual.maskHasPrimacy;
  if (expected.noData != actual.noData)
    return testing::AssertionFailure() << "NODATA values differ";
  if (!expected.maskDirty) {
    if (!actual.mask)
      return testing::AssertionFailure() << "there is no mask";
    if (const auto same = SamePixels(U8, *expected.mask, *actual.mask); !same)
      return testing::AssertionFailure() << "mask: " << same.message();
  }
  return SamePixels(expected.type, expected.pixels, actual.pixels,
                    anyComplexNan && reference::IsComplex(expected.type));
}

} // namespace

BlockPtr MakeBlock(Rbuf_PixelType type, int width, int height, const std::vector<double>& values) {
  const std::size_t planeSize = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const auto planes = static_cast<long>(values.size() / planeSize);
  auto block = boost::make_shared<tilx::PixelBlock>(planes, width, height, type, nullptr);
  for (long plane = 0; plane < planes; ++plane) {
    const auto first = values.begin() + plane * static_cast<long>(planeSize);
    SetPixelBytes(block->getPlaneData(plane),
                  PixelsOf(type, std::vector<double>(first, first + static_cast<long>(planeSize))));
  }
  block->setCompositeCondition(tilx::ALLDATA);
  return block;
}

BlockPtr MakeBlockWithNoData(Rbuf_PixelType type, int width, int height, const std::vector<double>& values,
                             double noData) {
  BlockPtr block = MakeBlock(type, width, height, values);
  for (long plane = 0; plane < block->getNumOfPlanes(); ++plane)
    SetNoData(*block, plane, noData);
  return block;
}

void SetNoData(tilx::PixelBlock& block, long plane, double value) {
  Bytes bytes = PixelsOf(block.getDataType(), {value});
  block.setNODATAValue(plane, bytes.data());
}

Bytes PixelBytesOf(const _Rbuf_BaseData* rect) {
  Bytes bytes;
  for (int row = 0; row < rect->rows; ++row) {
    const unsigned char* first = rect->data + static_cast<std::ptrdiff_t>(row) * rect->pitch;
    bytes.insert(bytes.end(), first, first + static_cast<std::ptrdiff_t>(rect->columns) * rect->pixelBytes);
  }
  return bytes;
}

Bytes PixelBytesOf(const tilx::IPixelBlock& block, long plane) {
  return PixelBytesOf(block.getPlaneData(plane));
}

void SetPixelBytes(const _Rbuf_BaseData* rect, const Bytes& pixels) {
  const auto rowBytes = static_cast<std::size_t>(rect->columns) * static_cast<std::size_t>(rect->pixelBytes);
  for (int row = 0; row < rect->rows && rowBytes > 0; ++row)
    std::memcpy(rect->data + static_cast<std::ptrdiff_t>(row) * rect->pitch,
                pixels.data() + static_cast<std::size_t>(row) * rowBytes, rowBytes);
}

std::vector<double> ValuesOf(const tilx::IPixelBlock& block, long plane) {
  const Bytes bytes =
      reference::ConvertPixels(F64, PixelBytesOf(block, plane), block.getPlaneData(plane)->pixelType);
  std::vector<double> values(bytes.size() / sizeof(double));
  if (!values.empty())
    std::memcpy(values.data(), bytes.data(), bytes.size());
  return values;
}

Bytes MaskOf(const tilx::IPixelBlock& block, long plane) {
  return PixelBytesOf(block.getMaskData(plane));
}

void SetMaskBytes(tilx::IPixelBlock& block, long plane, const Bytes& mask) {
  boost::shared_ptr<tilx::IPixelBlock> maskBlock =
      boost::make_shared<tilx::PixelBlock>(1L, block.getWidth(), block.getHeight(), U8, nullptr);
  SetPixelBytes(maskBlock->getPlaneData(0), mask);
  block.setMask(plane, maskBlock);
}

bool IsDirty(const tilx::PixelBlock& block, long plane) {
  return StateOf(block)->m_MaskDirty[plane];
}

bool HasMask(const tilx::PixelBlock& block, long plane) {
  const StateOf state(block);
  return state->m_Masks && state->m_Masks[plane];
}

tilx::DataContentsCondition StoredCondition(const tilx::PixelBlock& block, long plane) {
  return StateOf(block)->m_PlanesCondition[plane];
}

reference::Block Snapshot(const tilx::PixelBlock& block) {
  const StateOf state(block);
  reference::Block model;
  model.hasMaskArray = static_cast<bool>(state->m_Masks);
  for (long i = 0; i < block.getNumOfPlanes(); ++i) {
    const _Rbuf_BaseData* rect = block.getPlaneData(i);
    reference::Plane plane;
    plane.type = rect->pixelType;
    plane.rows = rect->rows;
    plane.columns = rect->columns;
    plane.pixels = PixelBytesOf(rect);
    if (state->m_NoDataValues[i])
      plane.noData = Bytes(state->m_NoDataValues[i].get(), state->m_NoDataValues[i].get() + rect->pixelBytes);
    if (model.hasMaskArray && state->m_Masks[i])
      plane.mask = PixelBytesOf(state->m_Masks[i].get());
    plane.condition = state->m_PlanesCondition[i];
    plane.maskDirty = state->m_MaskDirty[i];
    plane.maskHasPrimacy = state->m_MaskHasPrimacy[i];
    model.planes.push_back(std::move(plane));
  }
  return model;
}

testing::AssertionResult SameState(const reference::Block& expected, const reference::Block& actual,
                                   bool anyComplexNan) {
  if (expected.planes.size() != actual.planes.size())
    return testing::AssertionFailure() << actual.planes.size() << " planes";
  for (std::size_t i = 0; i < expected.planes.size(); ++i)
    if (const auto same = SamePlane(expected.planes[i], actual.planes[i], anyComplexNan); !same)
      return testing::AssertionFailure() << "plane " << i << ": " << same.message();
  return testing::AssertionSuccess();
}

testing::AssertionResult SamePixels(Rbuf_PixelType type, const Bytes& expected, const Bytes& actual,
                                    bool anyNan) {
  if (expected.size() != actual.size())
    return testing::AssertionFailure() << actual.size() << " bytes instead of " << expected.size();
  const auto pixelBytes = static_cast<std::size_t>(reference::PixelBytes(type));
  for (std::size_t i = 0; i < expected.size(); i += pixelBytes) {
    const bool same = reference::Visit(type, [&](auto tag) {
      using T = typename decltype(tag)::Type;
      return SameNumber(reference::Load<T>(&expected[i]), reference::Load<T>(&actual[i]), anyNan);
    });
    if (!same)
      return testing::AssertionFailure()
             << reference::TypeName(type) << " pixel " << i / pixelBytes << " is 0x"
             << Hex(&actual[i], pixelBytes) << " instead of 0x" << Hex(&expected[i], pixelBytes);
  }
  return testing::AssertionSuccess();
}

} // namespace testsupport
