/// \file
/// The list of all operators.
#pragma once

#include "catalogue/api.h"
#include "catalogue/description.h"

#include <string>
#include <vector>

namespace quent::rasterops::catalogue {

/// All operators by name. The list is explicit: an operator that is not named in catalogue.cpp does not
/// exist for the command. It lives as long as the process and may be read from any thread.
RASTEROPS_ENGINE_API const std::vector<Operator>& Operators();

/// The operator of a name, or null.
RASTEROPS_ENGINE_API const Operator* FindOperator(const std::string& name);

} // namespace quent::rasterops::catalogue
