#include "engine/samplescene_patterns.h"

#include "engine/samplescene_noise.h"

#include <cmath>

namespace quent::rasterops::engine::scene {

namespace {

/// Directions of field and street patterns, as cosine and sine from whole numbers.
constexpr double directions[6][2] = {{0.96, 0.28},  {0.8, 0.6},         {0.6, 0.8},
                                     {0.96, -0.28}, {0.98461, 0.17476}, {0.82353, -0.56725}};

struct Turned {
  double along, across;
};

Turned Turn(std::uint32_t choice, double x, double y) {
  const double* direction = directions[choice % 6];
  return {direction[0] * x + direction[1] * y, direction[0] * y - direction[1] * x};
}

/// Distance to the nearer end of the cell of `width` that holds `position`.
double ToEdge(double position, double width) {
  const double inside = position - std::floor(position / width) * width;
  return inside < 0.5 * width ? inside : width - inside;
}

/// Number of the district: the nearest of scattered centres, about 1.7 km apart.
std::uint32_t District(unsigned seed, double x, double y) {
  constexpr double spacing = 1700.0;
  const int column = static_cast<int>(std::floor(x / spacing));
  const int row = static_cast<int>(std::floor(y / spacing));
  double nearest = 1e18;
  std::uint32_t district = 0;
  for (int r = row - 1; r <= row + 1; ++r) {
    for (int c = column - 1; c <= column + 1; ++c) {
      const double dx = (c + HashUnit(seed + 61, c, r)) * spacing - x;
      const double dy = (r + HashUnit(seed + 62, c, r)) * spacing - y;
      if (dx * dx + dy * dy < nearest) {
        nearest = dx * dx + dy * dy;
        district = Hash(seed + 63, c, r);
      }
    }
  }
  return district;
}

/// Reflectance of a crop by its stage.
Spectrum Crop(double choice, double vigour) {
  if (choice < 0.42) { // growing
    return Blend({0.038, 0.082, 0.060, 0.330}, {0.026, 0.064, 0.030, 0.500}, vigour);
  }
  if (choice < 0.62) { // ripe
    return Blend({0.060, 0.110, 0.145, 0.285}, {0.072, 0.125, 0.180, 0.310}, vigour);
  }
  if (choice < 0.84) { // ploughed
    return Blend({0.060, 0.082, 0.112, 0.160}, {0.085, 0.118, 0.160, 0.220}, vigour);
  }
  return Blend({0.045, 0.090, 0.075, 0.300}, {0.032, 0.078, 0.046, 0.410}, vigour); // meadow
}

} // namespace

Spectrum Blend(const Spectrum& a, const Spectrum& b, double t) {
  return {Mix(a[0], b[0], t), Mix(a[1], b[1], t), Mix(a[2], b[2], t), Mix(a[3], b[3], t)};
}

Spectrum Scaled(const Spectrum& spectrum, double factor) {
  return {spectrum[0] * factor, spectrum[1] * factor, spectrum[2] * factor, spectrum[3] * factor};
}

Ground FieldAt(unsigned seed, double x, double y) {
  const std::uint32_t district = District(seed, x + 60.0 * Noise(seed + 64, x / 500.0, y / 500.0),
                                          y + 60.0 * Noise(seed + 65, x / 500.0, y / 500.0));
  const Turned turned = Turn(district >> 8, x, y);
  const double strip = 150.0 + (district & 127);
  const auto row = static_cast<int>(std::floor(turned.across / strip));
  const double parcelLength = 170.0 + 300.0 * HashUnit(district, row, 1);
  const double along = turned.along + parcelLength * HashUnit(district, row, 2);
  const auto column = static_cast<int>(std::floor(along / parcelLength));
  double toEdge = ToEdge(along, parcelLength);
  auto part = 0;
  if (HashUnit(district + 3, row, column) < 0.45) { // two narrow fields in place of one
    part = turned.across - row * strip < 0.5 * strip ? 1 : 2;
    const double toMiddle = std::fabs(turned.across - (row + 0.5) * strip);
    toEdge = toMiddle < toEdge ? toMiddle : toEdge;
  }
  if (row % 2 == 0 && turned.across - row * strip < 5.0) { // a track along every second strip
    return {Cover::Crop, {0.085, 0.115, 0.145, 0.210}};
  }
  const double hedge = HashUnit(district + 4, row, column);
  if (toEdge < 5.0 && hedge < 0.3) {
    return {Cover::Crop, {0.026, 0.050, 0.032, 0.330}};
  }
  const double choice = HashUnit(district + 5 + part, row, column);
  const double growth = HashUnit(district + 8 + part, row, column);
  const double vigour = Clamp(growth + 0.35 * Fractal(seed + 66, x / 130.0, y / 130.0, 3), 0.0, 1.0);
  const double rows = 1.0 + 0.05 * Noise(seed + 67, turned.along / 90.0, turned.across / 9.0);
  return {Cover::Crop, Scaled(Crop(choice, vigour), toEdge < 4.0 ? 0.93 * rows : rows)};
}

Spectrum RoadReflectance(unsigned seed, double x, double y) {
  return Scaled({0.098, 0.108, 0.116, 0.132}, 1.0 + 0.08 * Noise(seed + 71, x / 30.0, y / 30.0));
}

bool BuiltUpAt(unsigned seed, const Settlement& settlement, const Point& point, const Point& at,
               const Point& slope, Ground& ground) {
  const double dx = (at.x - settlement.x) / settlement.radius;
  const double dy = (at.y - settlement.y) / settlement.radius;
  const double away = dx * dx + dy * dy;
  if (away > 1.7) {
    return false;
  }
  // 1 in the centre, 0 at the ragged rim.
  const double density = 1.0 - std::sqrt(away) +
                         0.34 * Fractal(seed + 72, point.x / 380.0, point.y / 380.0, 3) -
                         1.2 * std::sqrt(slope.x * slope.x + slope.y * slope.y);
  if (density < 0.12) {
    return false;
  }
  ground.cover = Cover::BuiltUp;
  const auto place = static_cast<int>(settlement.x + settlement.y);
  const Turned turned = Turn(Hash(seed + 73, place, 0), point.x, point.y);
  const double street = ToEdge(turned.along, 112.0) < ToEdge(turned.across, 74.0)
                            ? ToEdge(turned.along, 112.0)
                            : ToEdge(turned.across, 74.0);
  if (street < 5.0) {
    ground.reflectance = RoadReflectance(seed, point.x, point.y);
    return true;
  }
  const auto block = Hash(seed + 74, static_cast<int>(std::floor(turned.along / 112.0)),
                          static_cast<int>(std::floor(turned.across / 74.0)));
  const auto column = static_cast<int>(std::floor(turned.along / 18.0));
  const auto row = static_cast<int>(std::floor(turned.across / 16.0));
  const double house = HashUnit(seed + 75, column, row);
  if (block % 100 < 7) { // a park
    ground.reflectance = Scaled({0.028, 0.060, 0.036, 0.370}, 0.85 + 0.3 * house);
  } else if (block % 100 < 14 && density < 0.5) { // workshops: a few large bright roofs
    ground.reflectance = Scaled({0.215, 0.235, 0.250, 0.275}, 0.8 + 0.5 * (block >> 16 & 255) / 255.0);
  } else if (house < 0.30 + 0.65 * density) {
    const double tiles = HashUnit(seed + 76, column, row);
    ground.reflectance =
        Scaled(Blend({0.070, 0.085, 0.125, 0.165}, {0.140, 0.150, 0.162, 0.185}, tiles * tiles),
               0.8 + 0.4 * HashUnit(seed + 77, column, row));
  } else {
    ground.reflectance = Scaled({0.042, 0.072, 0.058, 0.290}, 0.85 + 0.3 * house);
  }
  return true;
}

} // namespace quent::rasterops::engine::scene
