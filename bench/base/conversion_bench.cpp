// Conversions that tiles go through on their way in and out.
#include "bench/support/benchblocks.h"

namespace {

void convert(benchmark::State& state, Rbuf_PixelType from, Rbuf_PixelType to) {
  const long size = state.range(0);
  const auto source = bench::RandomBlock(from, size, 1);
  const auto destination = bench::RandomBlock(to, size, 2);
  const auto count = static_cast<std::size_t>(size * size);
  for (auto _ : state)
    rbuf_ConvertPixels((*destination)->data, to, (*source)->data, from, count, nullptr);
  bench::ReportPerPixel(state, static_cast<double>(count),
                        static_cast<double>(source->getNumBytes() + destination->getNumBytes()));
}

} // namespace

BENCHMARK_CAPTURE(convert, U8_F32, U8, F32)->Arg(512)->Arg(4096);
BENCHMARK_CAPTURE(convert, U16_F32, U16, F32)->Arg(512)->Arg(4096);
BENCHMARK_CAPTURE(convert, F32_U8, F32, U8)->Arg(512)->Arg(4096);
BENCHMARK_CAPTURE(convert, F32_U16, F32, U16)->Arg(512)->Arg(4096);
BENCHMARK_CAPTURE(convert, F64_F32, F64, F32)->Arg(512)->Arg(4096);
BENCHMARK_CAPTURE(convert, S32_U8, S32, U8)->Arg(512)->Arg(4096);
