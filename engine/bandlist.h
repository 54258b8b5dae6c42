/// \file
/// Lists of band numbers as they are typed.
#pragma once

#include "catalogue/api.h"

#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// The bands of a list such as "1,3-5", in that order, repeats kept; "5-3" counts down. Bands are numbered
/// from 1 and end at 65535. \throws std::invalid_argument
RASTEROPS_ENGINE_API std::vector<int> ParseBandList(const std::string& text);

} // namespace quent::rasterops::engine
