#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rasterops/frame/simdtarget.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace quent::rasterops {
namespace HWY_NAMESPACE {

/// Says for which target this very code was compiled.
std::int64_t TargetOfThisCode() {
  return HWY_TARGET;
}

} // namespace HWY_NAMESPACE
} // namespace quent::rasterops
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

#include "rasterops/simdtarget.h"

#include <atomic>
#include <stdexcept>

namespace quent::rasterops {

HWY_EXPORT(TargetOfThisCode);

namespace {

/// The one target that was asked for, or 0 for the best.
std::atomic<std::int64_t> restriction{0};

void choose(std::int64_t targets) {
  restriction = targets;
  hwy::SetSupportedTargetsForTest(targets);
  hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

/// The targets that kernels were compiled for and that the processor has, as bits: lower bits are better.
/// What is in use stays in use.
std::int64_t usableTargets() {
  hwy::SetSupportedTargetsForTest(0);
  const std::int64_t usable = hwy::SupportedTargets() & HWY_TARGETS;
  hwy::SetSupportedTargetsForTest(restriction);
  return usable;
}

} // namespace

std::vector<std::string> SimdTargets() {
  std::vector<std::string> names;
  for (std::int64_t left = usableTargets(); left != 0; left &= left - 1)
    names.emplace_back(hwy::TargetName(left & -left));
  return names;
}

void UseSimdTarget(const std::string& name) {
  if (name.empty())
    return choose(0);
  for (std::int64_t left = usableTargets(); left != 0; left &= left - 1)
    if (name == hwy::TargetName(left & -left))
      return choose(left & -left);
  throw std::invalid_argument("This processor has no vector target " + name);
}

std::string SimdTargetInUse() {
  if (!hwy::GetChosenTarget().IsInitialized())
    choose(0);
  return hwy::TargetName(HWY_DYNAMIC_DISPATCH(TargetOfThisCode)());
}

} // namespace quent::rasterops

#endif // HWY_ONCE
