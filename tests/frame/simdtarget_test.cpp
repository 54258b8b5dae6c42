/// The choice of vector instructions.
#include "rasterops/simdtarget.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace quent::rasterops;

TEST(SimdTarget, EveryListedOneCanBeUsedAndTheFirstIsTheBest) {
  const std::vector<std::string> targets = SimdTargets();
  ASSERT_FALSE(targets.empty());
  for (const std::string& target : targets) {
    UseSimdTarget(target);
    EXPECT_EQ(SimdTargetInUse(), target);
  }
  UseSimdTarget("");
  EXPECT_EQ(SimdTargetInUse(), targets.front());
}

TEST(SimdTarget, OneThatIsNotListedRaisesAndChangesNothing) {
  const std::string before = SimdTargetInUse();
  EXPECT_THROW(UseSimdTarget("abacus"), std::invalid_argument);
  EXPECT_EQ(SimdTargetInUse(), before);
}

} // namespace
