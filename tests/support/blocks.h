/// \file
/// Blocks for tests: made from values, looked at as values.
#pragma once

#include "rasterops/pixelblock.h"
#include "reference/model.h"

#include <gtest/gtest.h>

namespace testsupport {

using BlockPtr = boost::shared_ptr<tilx::PixelBlock>;

/// A new block whose planes hold `values`, plane after plane, as pixels of `type`; condition ALLDATA.
/// There are as many planes as the values fill.
BlockPtr MakeBlock(Rbuf_PixelType type, int width, int height, const std::vector<double>& values);

/// The same with a NODATA value on every plane, condition UNKNOWN.
BlockPtr MakeBlockWithNoData(Rbuf_PixelType type, int width, int height, const std::vector<double>& values,
                             double noData);

/// Stores a NODATA value that is converted from a double.
void SetNoData(tilx::PixelBlock& block, long plane, double value);

/// Pixels of a plane, or bytes of a record, without what lies between rows.
reference::Bytes PixelBytesOf(const _Rbuf_BaseData* rect);
reference::Bytes PixelBytesOf(const tilx::IPixelBlock& block, long plane);
/// Writes pixels of a record, row by row.
void SetPixelBytes(const _Rbuf_BaseData* rect, const reference::Bytes& pixels);

/// Pixels of a plane as doubles: the real parts.
std::vector<double> ValuesOf(const tilx::IPixelBlock& block, long plane);

/// The mask of a plane through getMaskData(), which computes a dirty one.
reference::Bytes MaskOf(const tilx::IPixelBlock& block, long plane);

/// Stores a mask through setMask(): the condition follows, the dirty flag is cleared.
void SetMaskBytes(tilx::IPixelBlock& block, long plane, const reference::Bytes& mask);

/// State of a plane as it stands, nothing is computed.
bool IsDirty(const tilx::PixelBlock& block, long plane);
bool HasMask(const tilx::PixelBlock& block, long plane);
tilx::DataContentsCondition StoredCondition(const tilx::PixelBlock& block, long plane);

/// The whole state as values, nothing is computed.
reference::Block Snapshot(const tilx::PixelBlock& block);

/// Compares two states: sizes, NODATA values, conditions, flags, current masks bit for bit. Pixels bit
/// for bit too, but any NaN for any NaN in complex planes if `anyComplexNan`.
testing::AssertionResult SameState(const reference::Block& expected, const reference::Block& actual,
                                   bool anyComplexNan = false);

/// Compares pixels of a type, bit for bit, or any NaN for any NaN.
testing::AssertionResult SamePixels(Rbuf_PixelType type, const reference::Bytes& expected,
                                    const reference::Bytes& actual, bool anyNan = false);

/// Gives a test access to the state of a block that it shares.
class StateOf : public tilx::PixelBlock {
public:
  explicit StateOf(const tilx::PixelBlock& block) : PixelBlock(block) {}
  pixelBlockData& operator*() const { return *m_Data; }
  pixelBlockData* operator->() const { return m_Data.get(); }
};

} // namespace testsupport
