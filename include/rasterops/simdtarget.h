/// \file
/// Which vector instructions the library uses.
///
/// The best target that the processor has is chosen when the library first runs; all give the same bits.
/// Restricting the choice is for tests and for comparing.
#pragma once

#include "rcommon/api.h"

#include <string>
#include <vector>

namespace quent {
namespace rasterops {

/// Names of the targets that this processor can run, best first, for instance "AVX3", "AVX2", "SCALAR". The
/// last one is the baseline of the build, on x86-64 with SSE2.
RASTEROPS_API std::vector<std::string> SimdTargets();

/// Uses one target from now on, in all threads; an empty name goes back to the best. Not to be called
/// while an operator runs. \throws std::invalid_argument for a name that SimdTargets() does not list
RASTEROPS_API void UseSimdTarget(const std::string& name);

/// The target that kernels run with now, as told by the code that was compiled for it.
RASTEROPS_API std::string SimdTargetInUse();

} // namespace rasterops
} // namespace quent
