/// \file
/// A synthetic scene to try the operators on.
#pragma once

#include "catalogue/api.h"

#include "catalogue/api.h"

#include <string>

namespace quent::rasterops::engine {

/// Writes a scene of 15.36 km by 15.36 km in UTM zone 33N into `folder`, which is made if it is absent:
///
/// | file | what |
/// |---|---|
/// | terrain.tif | elevation in metres, F32, 1024 x 1024 at 15 m, lakes are NODATA (-9999) |
/// | ms.tif | blue, green, red and near infrared, U16, 512 x 512 at 30 m, slanted NODATA border (0) |
/// | pan.tif | panchromatic, U16, 2048 x 2048 at 7.5 m, the same border |
/// | landcover.tif | land cover classes with palette and names, U8, 512 x 512 at 30 m |
///
/// Optical values are top-of-atmosphere reflectance x 10000. The four agree with each other: land cover
/// follows elevation, slope and moisture, and the optical bands show the land cover under the light that
/// falls on the terrain. The same seed gives the same bytes, on any machine: the model uses integer hashes,
/// the four basic operations and sqrt, nothing that differs between math libraries.
///
/// All files appear together when they are complete.
/// \throws OutputError naming the file or folder, also if one of the files exists: nothing is replaced
RASTEROPS_ENGINE_API void WriteSampleScene(const std::string& folder, unsigned seed);

} // namespace quent::rasterops::engine
