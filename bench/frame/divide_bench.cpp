// Divide of two planes. Bytes a pixel: both inputs, the result, its mask, and in the masked form both
// input masks.
#include "rasterops/divide.h"

#include "bench/support/benchblocks.h"

namespace {

using quent::rasterops::Divide;
using quent::rasterops::DivideParams;

constexpr int allData = -1;

void divide(benchmark::State& state, Rbuf_PixelType type) {
  const long size = state.range(0);
  const int invalid = static_cast<int>(state.range(1));
  const auto dividend = bench::RandomBlock(type, size, 1);
  const auto divisor = bench::RandomBlock(type, size, 2);
  const auto result = bench::RandomBlock(type, size, 3);
  if (invalid != allData) {
    bench::MaskRandomly(*dividend, invalid, 4);
    bench::MaskRandomly(*divisor, 0, 5);
    // A clean mask without a pixel to skip is what a border tile looks like; state it as such.
    boost::dynamic_pointer_cast<tilx::MaskBufferAccessor>(dividend->getMaskAccessor(0))
        ->SetCondition(tilx::SOMEDATA, false);
  }
  Divide divide;
  const auto params = boost::dynamic_pointer_cast<DivideParams>(divide.CreateParams());
  params->SetDividendBlock(dividend);
  params->SetDivisorBlock(divisor);
  params->SetResultBlock(result);
  divide(params); // touches the result's mask for the first time
  for (auto _ : state)
    benchmark::DoNotOptimize(divide(params));
  const double pixelBytes = static_cast<double>(result->getNumBytes());
  bench::ReportPerPixel(state, static_cast<double>(size * size),
                        3 * pixelBytes + (invalid == allData ? 1 : 3));
}

void sizes(benchmark::internal::Benchmark* b) {
  b->ArgNames({"size", "invalid"})
      ->ArgsProduct({{1024, 8192}, {allData, 0, 10, 90}})
      ->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK_CAPTURE(divide, U8, U8)->Apply(sizes);
BENCHMARK_CAPTURE(divide, U16, U16)->Apply(sizes);
BENCHMARK_CAPTURE(divide, S16, S16)->Apply(sizes);
BENCHMARK_CAPTURE(divide, U32, U32)->Apply(sizes);
BENCHMARK_CAPTURE(divide, S32, S32)->Apply(sizes);
BENCHMARK_CAPTURE(divide, F32, F32)->Apply(sizes);
BENCHMARK_CAPTURE(divide, F64, F64)->Apply(sizes);
BENCHMARK_CAPTURE(divide, C64, C64)->Apply(sizes);
