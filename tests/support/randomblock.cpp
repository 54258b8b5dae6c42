#include "support/randomblock.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace testsupport {

using reference::Bytes;

namespace {

std::shared_ptr<Bytes> RandomBytes(Random& random, std::size_t count) {
  auto bytes = std::make_shared<Bytes>(count);
  for (unsigned char& byte : *bytes)
    byte = random.Byte();
  return bytes;
}

/// Wraps new random memory. Pixels start a few elements into it, so that rows are seldom aligned: those of
/// complex pixels no more than their parts are.
MadeBlock WrapNewMemory(Random& random, Rbuf_PixelType type, int planes, Size size, bool lineInterleaved) {
  const int pixelBytes = reference::PixelBytes(type);
  const int rowBytes = (size.width + random.Between(1, 5)) * pixelBytes;
  const int pitch = lineInterleaved ? rowBytes * planes : rowBytes;
  const int stride = lineInterleaved ? rowBytes : rowBytes * size.height + random.Between(0, 3) * pixelBytes;
  const int start = random.Between(0, 3) * (reference::IsComplex(type) ? pixelBytes / 2 : pixelBytes);
  MadeBlock made;
  made.storage = RandomBytes(random, static_cast<std::size_t>(start + stride * planes + pitch * size.height));
  made.block = boost::make_shared<tilx::PixelBlock>(planes, size.width, size.height, type,
                                                    made.storage->data() + start, stride, pitch, nullptr);
  return made;
}

MadeBlock MakeWindow(Random& random, Rbuf_PixelType type, int planes, Size size) {
  const int left = random.Between(0, 3);
  const int top = random.Between(0, 2);
  const Size outer = {size.width + left + random.Between(0, 3), size.height + top + random.Between(0, 2)};
  MadeBlock made = WrapNewMemory(random, type, planes, outer, random.Chance(30));
  made.block->setCompositeCondition(tilx::ALLDATA);
  const boost::shared_ptr<tilx::IPixelBlock> window =
      tilx::PixelBlock::Derive(made.block, left, top, size.width, size.height);
  made.block = boost::dynamic_pointer_cast<tilx::PixelBlock>(window);
  return made;
}

/// Writes random pixels, some of which hold the NODATA value.
void WriteRandomPixels(Random& random, tilx::PixelBlock& block, long plane, const Bytes* noData) {
  const _Rbuf_BaseData* rect = block.getPlaneData(plane);
  const std::size_t count = PixelBytesOf(rect).size() / static_cast<std::size_t>(rect->pixelBytes);
  Bytes pixels = RandomPixels(random, rect->pixelType, count);
  if (noData) {
    const Bytes pattern = RandomMask(random, count, random.Pick(kAllPatterns));
    for (std::size_t i = 0; i < count; ++i)
      if (pattern[i] == 0)
        std::copy(noData->begin(), noData->end(), pixels.begin() + static_cast<long>(i * noData->size()));
  }
  SetPixelBytes(rect, pixels);
}

} // namespace

Size RandomSize(Random& random) {
  static constexpr Size sizes[] = {{1, 1},  {1, 5},   {5, 1},   {7, 3},   {16, 2},  {33, 3}, {64, 2},
                                   {65, 4}, {129, 2}, {1, 129}, {257, 3}, {130, 1}, {31, 17}};
  return random.Pick(sizes);
}

Layout RandomLayout(Random& random) {
  static constexpr Layout layouts[] = {Layout::Allocated, Layout::Padded, Layout::LineInterleaved,
                                       Layout::Window};
  return random.Pick(layouts);
}

Bytes MadeBlock::BytesOutside() const {
  if (!storage)
    return {};
  Bytes outside = *storage;
  for (long plane = 0; plane < block->getNumOfPlanes(); ++plane) {
    const _Rbuf_BaseData* rect = block->getPlaneData(plane);
    for (int row = 0; row < rect->rows; ++row) {
      const auto first =
          outside.begin() + (rect->data + static_cast<std::ptrdiff_t>(row) * rect->pitch - storage->data());
      std::fill(first, first + static_cast<std::ptrdiff_t>(rect->columns) * rect->pixelBytes, 0);
    }
  }
  return outside;
}

MadeBlock MakePlainBlock(Random& random, Rbuf_PixelType type, int planes, Size size, Layout layout) {
  MadeBlock made;
  switch (layout) {
  case Layout::Allocated:
    made.block = boost::make_shared<tilx::PixelBlock>(planes, size.width, size.height, type, nullptr);
    made.block->setCompositeCondition(tilx::UNKNOWN);
    break;
  case Layout::Padded:
    made = WrapNewMemory(random, type, planes, size, false);
    break;
  case Layout::LineInterleaved:
    made = WrapNewMemory(random, type, planes, size, true);
    break;
  case Layout::Window:
    made = MakeWindow(random, type, planes, size);
    break;
  }
  for (long plane = 0; plane < planes; ++plane)
    WriteRandomPixels(random, *made.block, plane, nullptr);
  return made;
}

void RandomizeState(Random& random, tilx::PixelBlock& block) {
  for (long plane = 0; plane < block.getNumOfPlanes(); ++plane) {
    const _Rbuf_BaseData* rect = block.getPlaneData(plane);
    const bool hasNoData = random.Chance(60);
    if (hasNoData) {
      Bytes value = RandomPixel(random, rect->pixelType);
      block.setNODATAValue(plane, value.data());
      WriteRandomPixels(random, block, plane, &value);
    }
    const int kind = random.Between(0, 9);
    if (kind <= 4) { // a mask of its own
      SetMaskBytes(block, plane,
                   RandomMask(random, PixelBytesOf(rect).size() / static_cast<std::size_t>(rect->pixelBytes),
                              random.Pick(kAllPatterns)));
      block.setMaskHasNODATAPrimacy(plane, random.Chance(30));
      if (random.Chance(20))
        block.setConditionWithoutMarkingDirty(plane, tilx::UNKNOWN);
      if (random.Chance(5))
        block.setCondition(plane, tilx::SOMEDATA);
    } else if (kind <= 6) {
      block.setCondition(plane, tilx::ALLDATA);
    } else if (kind == 7) {
      block.setCondition(plane, tilx::NODATA);
    } else if (hasNoData || random.Chance(50)) {
      block.setCondition(plane, random.Chance(50) ? tilx::UNKNOWN : tilx::SOMEDATA);
    } else {
      block.setCondition(plane, tilx::ALLDATA);
    }
  }
}

MadeBlock MakeRandomBlock(Random& random, Rbuf_PixelType type, int planes, Size size, Layout layout) {
  MadeBlock made = MakePlainBlock(random, type, planes, size, layout);
  RandomizeState(random, *made.block);
  return made;
}

} // namespace testsupport
