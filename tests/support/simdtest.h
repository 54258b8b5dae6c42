/// \file
/// Runs every test of a suite once per SIMD target of the machine.
#pragma once

#include "rasterops/simdtarget.h"

#include <gtest/gtest.h>

#include <string>

namespace testsupport {

/// Selects the target before a test and fails if the kernels did not stay with it.
class SimdTest : public testing::TestWithParam<std::string> {
protected:
  void SetUp() override {
    quent::rasterops::UseSimdTarget(GetParam());
    ASSERT_EQ(quent::rasterops::SimdTargetInUse(), GetParam());
  }
  void TearDown() override {
    EXPECT_EQ(quent::rasterops::SimdTargetInUse(), GetParam());
    quent::rasterops::UseSimdTarget("");
  }
};

} // namespace testsupport

/// Declares a suite for TEST_P whose tests run once per SIMD target.
#define RASTEROPS_SIMD_SUITE(Suite)                                                                          \
  class Suite : public testsupport::SimdTest {};                                                             \
  INSTANTIATE_TEST_SUITE_P(Simd, Suite, testing::ValuesIn(quent::rasterops::SimdTargets()),                  \
                           [](const testing::TestParamInfo<std::string>& target) { return target.param; })
