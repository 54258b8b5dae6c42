/// \file
/// The descriptions that the catalogue lists, and what they share.
#pragma once

#include "catalogue/description.h"

namespace quent::rasterops::catalogue {

Operator DescribeConvert();
Operator DescribeDivide();
Operator DescribeMask();

/// All 13 pixel types.
std::vector<Rbuf_PixelType> AllPixelTypes();
/// No halo.
Halo NoHalo(const Arguments&);
/// Inputs of one band go with any number of bands of the others; the rest must agree.
long BroadcastBands(const std::vector<long>& bands);

} // namespace quent::rasterops::catalogue
