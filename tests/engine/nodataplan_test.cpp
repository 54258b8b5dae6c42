#include "engine/nodataplan.h"

#include "engine/errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <stdexcept>

namespace quent::rasterops::engine {

using Kind = NoDataPlan::Kind;

TEST(ParseNoDataRequest, TellsNoneFromAValue) {
  EXPECT_EQ(ParseNoDataRequest("none").kind, NoDataRequest::Kind::None);
  EXPECT_EQ(ParseNoDataRequest("-1").kind, NoDataRequest::Kind::Value);
  EXPECT_EQ(ParseNoDataRequest("-1").value, -1);
  EXPECT_THROW(ParseNoDataRequest("nothing"), std::invalid_argument);
}

TEST(PlanNoData, TheInputsValueIsTakenWhereTheTypeHoldsIt) {
  const NoDataPlan plan = PlanNoData({}, S16, false, -999);
  EXPECT_EQ(plan.kind, Kind::Value);
  EXPECT_EQ(plan.number, -999);
  EXPECT_EQ(plan.value, *EncodeValue(-999, S16));
  EXPECT_EQ(PlanNoData({}, F32, false, -999).number, -999);
}

TEST(PlanNoData, AnIntegerTypeThatDoesNotHoldItGetsAMask) {
  EXPECT_EQ(PlanNoData({}, U8, false, -999).kind, Kind::Mask);
  EXPECT_EQ(PlanNoData({}, U8, false, std::nullopt).kind, Kind::Mask);
}

TEST(PlanNoData, FloatAndComplexTypesFallBackOnNaN) {
  for (const Rbuf_PixelType type : {F32, F64, C64, C128}) {
    const NoDataPlan plan = PlanNoData({}, type, false, std::nullopt);
    EXPECT_EQ(plan.kind, Kind::Value) << type;
    EXPECT_TRUE(std::isnan(plan.number)) << type;
    EXPECT_EQ(plan.value, NaNValue(type)) << type;
  }
  EXPECT_TRUE(std::isnan(PlanNoData({}, F32, false, 0.1).number)) << "0.1 is no single";
}

TEST(PlanNoData, TheUsersWordComesFirst) {
  EXPECT_EQ(PlanNoData({NoDataRequest::Kind::None, 0}, F32, false, -999).kind, Kind::Mask);
  EXPECT_EQ(PlanNoData({NoDataRequest::Kind::Value, 7}, U8, false, 255).number, 7);
  EXPECT_THROW(PlanNoData({NoDataRequest::Kind::Value, 256}, U8, false, std::nullopt), UsageError);
  EXPECT_THROW(PlanNoData({NoDataRequest::Kind::Value, NAN}, S32, false, std::nullopt), UsageError);
}

TEST(PlanNoData, AnOutputThatIsAllValidDeclaresNothing) {
  EXPECT_EQ(PlanNoData({}, U8, true, 0).kind, Kind::AllValid);
  EXPECT_EQ(PlanNoData({NoDataRequest::Kind::None, 0}, U8, true, 0).kind, Kind::AllValid);
  EXPECT_EQ(PlanNoData({NoDataRequest::Kind::Value, 9}, U8, true, 0).kind, Kind::Value);
}

} // namespace quent::rasterops::engine
