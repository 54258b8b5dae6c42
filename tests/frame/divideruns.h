/// \file
/// Runs of Divide on small blocks.
#pragma once

#include "rasterops/divide.h"
#include "support/blocks.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace testsupport {

using Values = std::vector<double>;

/// Runs the operator the way a caller does.
inline void RunDivide(const BlockPtr& dividend, const BlockPtr& divisor, const BlockPtr& result) {
  quent::rasterops::Divide divide;
  const auto params = divide.CreateParams();
  const auto typed = boost::dynamic_pointer_cast<quent::rasterops::DivideParams>(params);
  ASSERT_TRUE(typed);
  typed->SetDividendBlock(dividend);
  typed->SetDivisorBlock(divisor);
  typed->SetResultBlock(result);
  EXPECT_TRUE(divide(params));
}

/// One row divided by another, into a row that holds 77 before.
inline BlockPtr Quotient(Rbuf_PixelType type, const Values& dividend, const Values& divisor) {
  const int width = static_cast<int>(std::max(dividend.size(), divisor.size()));
  const BlockPtr result = MakeBlock(type, width, 1, Values(static_cast<std::size_t>(width), 77));
  RunDivide(MakeBlock(type, static_cast<int>(dividend.size()), 1, dividend),
            MakeBlock(type, static_cast<int>(divisor.size()), 1, divisor), result);
  return result;
}

} // namespace testsupport
