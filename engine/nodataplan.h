/// \file
/// How the output file tells which pixels are invalid.
#pragma once

#include "engine/nodata.h"

#include <optional>
#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// What the user wants: nothing said, "none", or a value.
struct NoDataRequest {
  enum class Kind { Default, None, Value };
  Kind kind = Kind::Default;
  double value = 0.0;
};

/// Reads "none" or a number. \throws std::invalid_argument
RASTEROPS_ENGINE_API NoDataRequest ParseNoDataRequest(const std::string& text);

/// What is done.
struct NoDataPlan {
  enum class Kind {
    AllValid, ///< no pixel is ever invalid, and nothing is declared
    Value,    ///< invalid pixels hold a declared value
    Mask      ///< a mask for all bands, made when the first invalid pixel comes; invalid pixels hold 0
  };
  Kind kind = Kind::AllValid;
  double number = 0.0;
  PixelValue value{}; ///< what invalid pixels hold; zero without Kind::Value
};

/// The rules, in this order: what the user wants; nothing for an operator whose output is all valid; the
/// first value that the inputs declare, if the output type holds it exactly; NaN for float and complex
/// outputs; a mask. \throws UsageError if the type cannot hold the user's value
RASTEROPS_ENGINE_API NoDataPlan PlanNoData(const NoDataRequest& request, Rbuf_PixelType outputType,
                                           bool outputAllValid, std::optional<double> declaredByInputs);

} // namespace quent::rasterops::engine
