#include "bench/support/benchblocks.h"

#include <chrono>
#include <cstring>
#include <map>

namespace {

/// Best of several passes of memcpy over two halves of the working set.
double measure(std::size_t workingSet) {
  using Clock = std::chrono::steady_clock;
  const std::size_t half = workingSet / 2;
  auto* const from = static_cast<unsigned char*>(rsys_HeapCalloc(1, half));
  auto* const to = static_cast<unsigned char*>(rsys_HeapCalloc(1, half));
  std::memset(from, 1, half);
  std::memset(to, 1, half);
  double best = 1e30;
  const int passes = static_cast<int>(3 + (std::size_t{512} << 20) / (half + 1));
  for (int i = 0; i < passes; ++i) {
    const auto start = Clock::now();
    std::memcpy(to, from, half);
    benchmark::ClobberMemory();
    const double ns = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
    best = ns < best ? ns : best;
  }
  rsys_HeapFree(from);
  rsys_HeapFree(to);
  return best / static_cast<double>(2 * half);
}

} // namespace

double bench::CopyNanoseconds(std::size_t workingSet) {
  static std::map<std::size_t, double> measured;
  const auto found = measured.find(workingSet);
  return found != measured.end() ? found->second
                                 : measured.emplace(workingSet, measure(workingSet)).first->second;
}

void bench::ReportPerPixel(benchmark::State& state, double pixels, double bytes) {
  using benchmark::Counter;
  // Seconds an iteration is 1 / rate, so the inverse of a rate of pixels / 1e9 is in ns.
  state.counters["ns/px"] = Counter(pixels / 1e9, Counter::kIsIterationInvariantRate | Counter::kInvert);
  state.counters["copy_ns/px"] = bytes * CopyNanoseconds(static_cast<std::size_t>(pixels * bytes));
  state.counters["bytes/px"] = bytes;
}
