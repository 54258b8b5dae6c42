/// \file
/// What a run takes of memory.
#pragma once

#include "engine/plan.h"

namespace quent::rasterops::engine {

/// Chooses tile size, threads and caches of a plan that is complete otherwise.
/// \throws MemoryError; UsageError
void PlanMemory(const Request& request, RunPlan& plan);

} // namespace quent::rasterops::engine
