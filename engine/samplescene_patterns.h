/// \file
/// What people make of the sample scene's ground: parcels, streets, houses.
#pragma once

#include "engine/samplescene_landscape.h"

namespace quent::rasterops::engine::scene {

/// `a` at 0, `b` at 1.
Spectrum Blend(const Spectrum& a, const Spectrum& b, double t);
Spectrum Scaled(const Spectrum& spectrum, double factor);

/// A point of the cultivated plain: a parcel with its crop, a track or a hedge.
Ground FieldAt(unsigned seed, double x, double y);

Spectrum RoadReflectance(unsigned seed, double x, double y);

/// A point in or near a settlement: streets, roofs and gardens. False if it lies outside.
/// \param at the same point in the relief, where the settlement has its place
bool BuiltUpAt(unsigned seed, const Settlement& settlement, const Point& point, const Point& at,
               const Point& slope, Ground& ground);

} // namespace quent::rasterops::engine::scene
