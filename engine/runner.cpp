#include "engine/runner.h"

#include "base/parallel/taskgroup.h"
#include "engine/errors.h"
#include "engine/lane.h"

#include <tbb/global_control.h>
#include <tbb/task_arena.h>

#include <atomic>
#include <exception>
#include <mutex>
#include <new>

namespace quent::rasterops::engine {

namespace {

/// Hands out tiles in row-major order, so that files are read and written about in sequence whatever the
/// number of threads.
class TileQueue {
public:
  TileQueue(RunPlan& plan, const RunHooks& hooks, OutputRaster& output)
      : m_Plan(plan), m_Hooks(hooks), m_Output(output), m_Grid(plan.output.shape.size, plan.tiles.tile) {}

  /// Processes tiles until there are none left or any thread failed. Does not throw.
  void Work() noexcept {
    try {
      std::size_t index = m_Next++;
      if (index >= m_Grid.Count())
        return; // opens no file
      Lane lane = makeLane();
      for (; index < m_Grid.Count() && !m_Stop; index = m_Next++) {
        if (m_Hooks.cancelled && m_Hooks.cancelled())
          throw Cancelled();
        lane.Process(m_Grid.At(index), m_Output);
        report();
      }
      const std::lock_guard guard(m_Lock);
      m_Counts.equalToNoData += lane.Counts().equalToNoData;
      m_Counts.hiddenByMask += lane.Counts().hiddenByMask;
    } catch (...) {
      m_Stop = true;
      const std::lock_guard guard(m_Lock);
      if (!m_Failure)
        m_Failure = std::current_exception();
    }
  }

  /// Throws what the first thread to fail threw.
  void Check() const {
    if (m_Failure)
      std::rethrow_exception(m_Failure);
  }
  const TileCounts& Counts() const { return m_Counts; }

private:
  Lane makeLane() {
    const std::lock_guard guard(m_Lock);
    std::vector<GDALDatasetUniquePtr> handles;
    for (InputRaster& input : m_Plan.inputs)
      handles.push_back(input.IsValue() ? nullptr : input.TakeHandle());
    return Lane(m_Plan, std::move(handles));
  }

  void report() {
    const std::size_t done = ++m_Done;
    if (!m_Hooks.progress)
      return;
    // A thread that finds another one reporting goes on with its work.
    if (const std::unique_lock guard(m_ProgressLock, std::try_to_lock); guard.owns_lock())
      m_Hooks.progress(static_cast<double>(done) / static_cast<double>(m_Grid.Count()));
  }

  RunPlan& m_Plan;
  const RunHooks& m_Hooks;
  OutputRaster& m_Output;
  TileGrid m_Grid;
  std::atomic<std::size_t> m_Next{0};
  std::atomic<std::size_t> m_Done{0};
  std::atomic<bool> m_Stop{false};
  std::mutex m_Lock;
  std::mutex m_ProgressLock;
  std::exception_ptr m_Failure;
  TileCounts m_Counts;
};

void workOnThreads(TileQueue& queue, unsigned threads) {
  // Without this oneTBB would not start more threads than there are processors.
  const tbb::global_control control(tbb::global_control::max_allowed_parallelism, threads);
  tbb::task_arena arena(static_cast<int>(threads));
  arena.execute([&queue, threads] {
    Concurrency::TaskGroup group;
    for (unsigned i = 1; i < threads; ++i)
      group.Run([&queue] { queue.Work(); });
    queue.Work();
    group.Wait();
  });
}

void addWarnings(const RunPlan& plan, const TileCounts& counts, std::vector<std::string>& warnings) {
  const std::string& path = plan.output.request.path;
  if (counts.equalToNoData > 0)
    warnings.push_back(
        path + ": " + std::to_string(counts.equalToNoData) + " valid results equal the NODATA value " +
        NumberText(plan.output.noData.number) +
        " and will be read as invalid; give --output-nodata a value that does not occur, or none");
  if (counts.hiddenByMask > 0)
    warnings.push_back(
        path + ": " + std::to_string(counts.hiddenByMask) +
        " pixels are valid in some bands but masked in all, because the file has one mask; give "
        "--output-nodata VALUE to keep bands apart");
}

} // namespace

std::vector<std::string> Run(RunPlan& plan, const RunHooks& hooks) {
  try {
    rsys_HeapSetPoolLimit(plan.tiles.poolBytes);
    GDALSetCacheMax64(static_cast<GIntBig>(plan.tiles.cacheBytes));
    OutputRaster output(plan.output, *plan.format);
    TileQueue queue(plan, hooks, output);
    workOnThreads(queue, plan.tiles.threads);
    queue.Check();
    output.Finish([&hooks](double fraction) {
      if (hooks.progress)
        hooks.progress(fraction);
      return !(hooks.cancelled && hooks.cancelled());
    });
    std::vector<std::string> warnings = output.Warnings();
    addWarnings(plan, queue.Counts(), warnings);
    return warnings;
  } catch (const std::bad_alloc&) {
    throw MemoryError(plan.output.request.path + ": the system has no memory left; give a smaller --memory, "
                                                 "--tile or --threads");
  }
}

} // namespace quent::rasterops::engine
