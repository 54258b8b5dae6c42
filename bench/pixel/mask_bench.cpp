// Masks: the scan for a condition, deriving a mask from a NODATA value, and combining masks.
#include "bench/support/benchblocks.h"
#include "rasterops/computecompositemask.h"
#include "rasterops/computemask.h"

namespace {

void scanCondition(benchmark::State& state) {
  const long size = state.range(0);
  const auto block = bench::RandomBlock(U8, size, 1);
  block->computeMask(0);
  for (auto _ : state)
    block->computeCondition(0);
  bench::ReportPerPixel(state, static_cast<double>(size * size), 1);
}
BENCHMARK(scanCondition)->Arg(1024)->Arg(8192)->Unit(benchmark::kMillisecond);

void computeMask(benchmark::State& state, Rbuf_PixelType type) {
  const long size = state.range(0);
  const auto block = bench::RandomBlock(type, size, 1);
  const double seven = 7;
  unsigned char nodata[16] = {};
  rsys_AddressOf_rbuf_Convert()[F64][type](&seven, nodata, 1);
  block->setNODATAValue(0, nodata);
  for (auto _ : state) {
    block->setCondition(0, tilx::UNKNOWN);
    block->computeMask(0);
  }
  bench::ReportPerPixel(state, static_cast<double>(size * size),
                        static_cast<double>(block->getNumBytes()) + 1);
}
void sizes(benchmark::internal::Benchmark* b) {
  b->Arg(1024)->Arg(8192)->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(computeMask, U8, U8)->Apply(sizes);
BENCHMARK_CAPTURE(computeMask, U16, U16)->Apply(sizes);
BENCHMARK_CAPTURE(computeMask, S32, S32)->Apply(sizes);
BENCHMARK_CAPTURE(computeMask, F32, F32)->Apply(sizes);
BENCHMARK_CAPTURE(computeMask, F64, F64)->Apply(sizes);
BENCHMARK_CAPTURE(computeMask, C64, C64)->Apply(sizes);
BENCHMARK_CAPTURE(computeMask, C128, C128)->Apply(sizes);

/// Writes and reads the composite once for each mask, after setting it: for n masks n reads of a mask, n of
/// the composite and n + 1 writes.
void compositeMask(benchmark::State& state) {
  const long size = state.range(0);
  const auto masks = static_cast<std::int32_t>(state.range(1));
  const boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>> list(
      new boost::shared_ptr<_Rbuf_BaseData>[masks]);
  const auto newMask = [&] {
    return boost::shared_ptr<_Rbuf_BaseData>(rbuf_BaseDataCreate(static_cast<int>(size),
                                                                 static_cast<int>(size), U8, rbuf_RowMajor,
                                                                 nullptr, nullptr),
                                             quent::rasterops::PixelRectDeleter());
  };
  for (std::int32_t i = 0; i < masks; ++i) {
    list[i] = newMask();
    std::fill_n(list[i]->data, size * size, static_cast<unsigned char>(255));
  }
  tilx::ComputeCompositeMask combine;
  const auto params = combine.CreateParams();
  params->SetMaskArraySize(masks);
  params->SetMaskArray(list);
  params->SetCompositeMask(newMask());
  params->SetDataCondition(boost::make_shared<tilx::DataContentsCondition>(tilx::UNKNOWN));
  for (auto _ : state)
    benchmark::DoNotOptimize(combine(params));
  bench::ReportPerPixel(state, static_cast<double>(size * size), 3.0 * masks + 1);
}
BENCHMARK(compositeMask)->ArgsProduct({{1024, 8192}, {2, 4}})->Unit(benchmark::kMillisecond);

} // namespace
