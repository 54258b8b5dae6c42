#include "engine/samplescene_sensor.h"

#include "base/parallel/concurrency.h"
#include "engine/samplescene_noise.h"

#include <algorithm>
#include <cmath>

namespace quent::rasterops::engine::scene {

namespace {

/// Towards the sun in the south-east, 42 degrees up: right, down the picture, up.
constexpr double sun[3] = {0.3716, 0.6436, 0.6691};

/// Light that comes from the whole sky, as a share; shadows are blue.
constexpr Spectrum skyLight = {0.34, 0.27, 0.22, 0.16};
/// What the air itself sends up, at sea level.
constexpr Spectrum haze = {0.060, 0.034, 0.019, 0.008};
/// What the panchromatic band takes of each band.
constexpr Spectrum panWeight = {0.16, 0.40, 0.38, 0.06};

Spectrum AtSensor(const Landscape& landscape, const Ground& ground, int column, int row) {
  const Point slope = ground.cover == Cover::Water ? Point{0.0, 0.0} : landscape.Slope(column, row);
  const double facing = (sun[2] - slope.x * sun[0] - slope.y * sun[1]) /
                        std::sqrt(1.0 + slope.x * slope.x + slope.y * slope.y) / sun[2];
  const double direct = facing > 0.0 ? facing : 0.0;
  const double air = 1.0 - 0.00013 * landscape.Height(column, row);
  Spectrum seen;
  for (std::size_t band = 0; band < seen.size(); ++band) {
    const double light = skyLight[band] + (1.0 - skyLight[band]) * direct;
    seen[band] = haze[band] * air + ground.reflectance[band] * light;
  }
  return seen;
}

/// True for the multispectral pixels of the swath, which lies aslant; x and y from 0 to 1.
bool InSwath(double x, double y) {
  return x > 0.150 - 0.140 * y && x < 1.075 - 0.140 * y && y > 0.140 * x - 0.065;
}

/// With a little sensor noise. A valid value is never 0, which stands for NODATA.
std::uint16_t Digital(double reflectance, double noise) {
  return static_cast<std::uint16_t>(Clamp(10000.0 * reflectance + 24.0 * (noise - 0.5) + 0.5, 1.0, 65535.0));
}

/// The pixels of one multispectral pixel.
void ObserveCell(unsigned seed, const Landscape& landscape, int column, int row, Image& image) {
  const bool seen = InSwath((column + 0.5) / image.size, (row + 0.5) / image.size);
  const auto cell = static_cast<std::size_t>(row) * image.size + column;
  std::array<int, coverCount> counts{};
  Spectrum sum{};
  for (int r = row * panRatio; r < (row + 1) * panRatio; ++r) {
    for (int c = column * panRatio; c < (column + 1) * panRatio; ++c) {
      const Ground ground = landscape.At(c, r);
      ++counts[static_cast<std::size_t>(ground.cover)];
      if (seen) {
        const Spectrum reflectance = AtSensor(landscape, ground, c, r);
        double pan = 0.0;
        for (std::size_t band = 0; band < sum.size(); ++band) {
          sum[band] += reflectance[band];
          pan += panWeight[band] * reflectance[band];
        }
        const auto pixel = static_cast<std::size_t>(r) * image.size * panRatio + c;
        image.pan[pixel] = Digital(pan, HashUnit(seed + 81, c, r));
      }
    }
  }
  image.cover[cell] =
      static_cast<std::uint8_t>(std::max_element(counts.begin(), counts.end()) - counts.begin());
  for (std::size_t band = 0; seen && band < sum.size(); ++band) {
    const double noise = HashUnit(seed + 82 + static_cast<unsigned>(band), column, row);
    image.bands[band][cell] = Digital(sum[band] / (panRatio * panRatio), noise);
  }
}

} // namespace

Image Observe(unsigned seed, const Landscape& landscape, int size) {
  Image image;
  image.size = size / panRatio;
  const auto cells = static_cast<std::size_t>(image.size) * image.size;
  image.cover.resize(cells);
  image.pan.resize(cells * panRatio * panRatio);
  for (auto& band : image.bands) {
    band.resize(cells);
  }
  Concurrency::parallel_for(0, image.size, [&](int row) {
    for (int column = 0; column < image.size; ++column) {
      ObserveCell(seed, landscape, column, row, image);
    }
  });
  return image;
}

} // namespace quent::rasterops::engine::scene
