/// \file
/// Runs a plan.
#pragma once

#include "engine/plan.h"

#include <functional>
#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// What a run tells and asks on its way.
struct RunHooks {
  /// Asked between tiles, from any thread; true stops the run.
  std::function<bool()> cancelled;
  /// Told the fraction that is done, from one thread at a time.
  std::function<void(double)> progress;
};

/// Reads, computes and writes all tiles, and puts the output into its place. When it throws there is no
/// output, and one that was there before is untouched.
/// \return warnings, a line each
/// \throws Error of any kind
RASTEROPS_ENGINE_API std::vector<std::string> Run(RunPlan& plan, const RunHooks& hooks);

} // namespace quent::rasterops::engine
