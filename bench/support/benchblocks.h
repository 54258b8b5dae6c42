/// \file
/// Blocks and figures that the benchmarks share.
#pragma once

#include "rasterops/pixelblock.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <cstdint>
#include <random>

namespace bench {

/// Reports ns a pixel, and beside it the time that the machine needs to move `bytes` a pixel, as measured
/// by CopyNanoseconds() in this run.
void ReportPerPixel(benchmark::State& state, double pixels, double bytes);

/// Nanoseconds a byte for copying (reading and writing together count twice) in a working set of this
/// size. Measured once for each size, with the same loop for all of them.
double CopyNanoseconds(std::size_t workingSet);

/// A plane of U8 to F64 values from 1 to 100, without zeros.
inline boost::shared_ptr<tilx::PixelBlock> RandomBlock(Rbuf_PixelType type, long size, unsigned seed) {
  const auto block = boost::make_shared<tilx::PixelBlock>(1, size, size, type, nullptr);
  std::minstd_rand random(seed);
  const auto convert = rsys_AddressOf_rbuf_Convert()[F64][type];
  for (long r = 0; r < size; ++r)
    for (long c = 0; c < size; ++c) {
      const double value = 1 + static_cast<double>(random() % 100);
      _Rbuf_BaseData& plane = **block.get();
      convert(&value, plane.data + r * plane.pitch + c * plane.pixelBytes, 1);
    }
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
