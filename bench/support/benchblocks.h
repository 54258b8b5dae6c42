/// \file
/// Blocks and figures that the benchmarks share.
#pragma once

#include "rasterops/pixelblock.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <cstdint>
#include <random>
#include <vector>

namespace bench {

/// Reports ns a pixel, and beside it the time that the machine needs to move `bytes` a pixel, as measured
/// by CopyNanoseconds() in this run.
void ReportPerPixel(benchmark::State& state, double pixels, double bytes);

/// Nanoseconds a byte for copying (reading and writing together count twice) in a working set of this
/// size. Measured once for each size, with the same loop for all of them.
double CopyNanoseconds(std::size_t workingSet);

/// A plane of values from 1 to 100, without zeros. One random line is laid into the rows from another start
/// each: random enough for a benchmark, and quick to make.
inline boost::shared_ptr<tilx::PixelBlock> RandomBlock(Rbuf_PixelType type, long size, unsigned seed) {
  const auto block = boost::make_shared<tilx::PixelBlock>(1, size, size, type, nullptr);
  const _Rbuf_BaseData& plane = *block->getPlaneData(0);
  std::minstd_rand random(seed);
  std::vector<double> line(static_cast<std::size_t>(2 * size));
  for (double& value : line)
    value = 1 + static_cast<double>(random() % 100);
  for (long r = 0; r < size; ++r)
    rbuf_ConvertPixels(plane.data + r * plane.pitch, type, line.data() + r, F64,
                       static_cast<std::size_t>(size), nullptr);
  block->setCompositeCondition(tilx::ALLDATA);
  return block;
}

/// Gives a block a mask in which each pixel is invalid with a chance of `percent`.
inline void MaskRandomly(tilx::PixelBlock& block, int percent, unsigned seed) {
  std::minstd_rand random(seed);
  const auto mask = block.getMaskAccessor(0);
  for (int r = 0; r < mask->GetHeight(); ++r) {
    auto* const row = static_cast<unsigned char*>(mask->GetRowPtr(r));
    for (int c = 0; c < mask->GetWidth(); ++c)
      row[c] = static_cast<int>(random() % 100) < percent ? 0 : 255;
  }
}

} // namespace bench
