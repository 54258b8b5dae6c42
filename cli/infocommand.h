/// \file
/// `rasterops info`.
#pragma once

#include "engine/rasterinfo.h"

#include <string>

namespace quent::rasterops::cli {

/// What the engine sees in a file, for people.
std::string InfoText(const engine::RasterInfo& info);
/// The same for programs. NODATA values that are no JSON numbers are strings: "nan", "inf", "-inf".
std::string InfoJson(const engine::RasterInfo& info);

} // namespace quent::rasterops::cli
