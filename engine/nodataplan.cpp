#include "engine/nodataplan.h"

#include "catalogue/arguments.h"
#include "engine/errors.h"
#include "engine/pixeltypes.h"

#include <limits>

namespace quent::rasterops::engine {

NoDataRequest ParseNoDataRequest(const std::string& text) {
  if (text == "none")
    return {NoDataRequest::Kind::None, 0.0};
  return {NoDataRequest::Kind::Value, ParseNumber(text)};
}

NoDataPlan PlanNoData(const NoDataRequest& request, Rbuf_PixelType outputType, bool outputAllValid,
                      std::optional<double> declaredByInputs) {
  NoDataPlan plan;
  if (request.kind == NoDataRequest::Kind::Value) {
    const auto value = EncodeValue(request.value, outputType);
    if (!value)
      throw UsageError("--output-nodata " + NumberText(request.value) + ": " +
                       catalogue::PixelTypeName(outputType) +
                       " cannot hold it; choose another value, none, or another type by --ot");
    return {NoDataPlan::Kind::Value, DecodeValue(*value, outputType), *value};
  }
  if (outputAllValid)
    return plan;
  plan.kind = NoDataPlan::Kind::Mask;
  if (request.kind == NoDataRequest::Kind::None)
    return plan;
  if (declaredByInputs && HoldsExactly(*declaredByInputs, outputType))
    return {NoDataPlan::Kind::Value, *declaredByInputs, *EncodeValue(*declaredByInputs, outputType)};
  if (!IsInteger(outputType))
    return {NoDataPlan::Kind::Value, std::numeric_limits<double>::quiet_NaN(), NaNValue(outputType)};
  return plan;
}

} // namespace quent::rasterops::engine
