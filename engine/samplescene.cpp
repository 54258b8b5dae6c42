#include "engine/samplescene.h"

#include "engine/errors.h"
#include "engine/samplescene_file.h"
#include "engine/samplescene_landscape.h"
#include "engine/samplescene_sensor.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

namespace quent::rasterops::engine {

namespace {

using namespace scene;

constexpr int size = 2048; ///< pixels of the landscape along a side
constexpr double extent = 15360.0;

struct Class {
  const char* name;
  GDALColorEntry colour;
};
/// By the values of Cover.
constexpr Class classes[coverCount] = {
    {"unclassified", {0, 0, 0, 255}},       {"water", {64, 122, 188, 255}},
    {"forest", {36, 98, 56, 255}},          {"grassland", {168, 196, 110, 255}},
    {"cropland", {236, 214, 132, 255}},     {"bare rock", {156, 148, 138, 255}},
    {"snow and ice", {240, 248, 255, 255}}, {"built-up", {198, 62, 58, 255}}};

std::unique_ptr<SceneFile> MakeTerrain(const std::filesystem::path& folder, const Landscape& landscape) {
  constexpr int step = 2;
  constexpr float lake = -9999.0f;
  std::vector<float> metres;
  metres.reserve(static_cast<std::size_t>(size / step) * (size / step));
  for (int row = 0; row < size; row += step) {
    for (int column = 0; column < size; column += step) {
      double sum = 0.0;
      int wet = 0;
      for (int pixel = 0; pixel < step * step; ++pixel) {
        sum += landscape.Height(column + pixel % step, row + pixel / step);
        wet += landscape.IsLake(column + pixel % step, row + pixel / step) ? 1 : 0;
      }
      metres.push_back(2 * wet >= step * step ? lake : static_cast<float>(sum / (step * step)));
    }
  }
  auto file = std::make_unique<SceneFile>(folder, "terrain.tif", size / step, extent, 1, GDT_Float32);
  file->Band(1).SetNoDataValue(lake);
  file->Band(1).SetUnitType("m");
  file->Band(1).SetDescription("elevation");
  file->Write(1, metres.data());
  file->Close();
  return file;
}

std::unique_ptr<SceneFile> MakeLandCover(const std::filesystem::path& folder, const Image& image) {
  GDALColorTable colours;
  std::vector<const char*> names;
  for (int value = 0; value < coverCount; ++value) {
    colours.SetColorEntry(value, &classes[value].colour);
    names.push_back(classes[value].name);
  }
  names.push_back(nullptr);
  auto file = std::make_unique<SceneFile>(folder, "landcover.tif", image.size, extent, 1, GDT_Byte);
  file->Band(1).SetColorTable(&colours);
  file->Band(1).SetCategoryNames(const_cast<char**>(names.data()));
  file->Band(1).SetDescription("land cover");
  file->Write(1, image.cover.data());
  file->Close();
  return file;
}

std::unique_ptr<SceneFile> MakeMultispectral(const std::filesystem::path& folder, const Image& image) {
  struct Band {
    const char* name;
    GDALColorInterp colour;
  };
  constexpr Band bands[] = {{"blue", GCI_BlueBand},
                            {"green", GCI_GreenBand},
                            {"red", GCI_RedBand},
                            {"near infrared", GCI_Undefined}};
  auto file = std::make_unique<SceneFile>(folder, "ms.tif", image.size, extent, 4, GDT_UInt16);
  for (int number = 1; number <= 4; ++number) {
    const Band& band = bands[number - 1];
    file->Band(number).SetNoDataValue(0.0);
    file->Band(number).SetDescription(band.name);
    file->Band(number).SetColorInterpretation(band.colour);
    file->Write(number, image.bands[static_cast<std::size_t>(number) - 1].data());
  }
  file->Close();
  return file;
}

std::unique_ptr<SceneFile> MakePan(const std::filesystem::path& folder, const Image& image) {
  auto file = std::make_unique<SceneFile>(folder, "pan.tif", image.size * panRatio, extent, 1, GDT_UInt16);
  file->Band(1).SetNoDataValue(0.0);
  file->Band(1).SetDescription("panchromatic");
  file->Write(1, image.pan.data());
  file->Close();
  return file;
}

void CheckFolder(const std::filesystem::path& folder) {
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  if (failure || !std::filesystem::is_directory(folder, failure)) {
    throw OutputError(folder.string() + ": cannot make this folder (" +
                      (failure ? failure.message() : "a file of this name exists") + "); choose another");
  }
  for (const char* name : {"terrain.tif", "landcover.tif", "ms.tif", "pan.tif"}) {
    if (std::filesystem::exists(folder / name, failure)) {
      throw OutputError((folder / name).string() + ": exists already; choose another folder, or remove it");
    }
  }
}

} // namespace

void WriteSampleScene(const std::string& folder, unsigned seed) {
  const std::filesystem::path path(folder);
  CheckFolder(path);
  const Landscape landscape(seed, size, extent);
  const Image image = Observe(seed, landscape, size);
  const std::unique_ptr<SceneFile> files[] = {MakeTerrain(path, landscape), MakeLandCover(path, image),
                                              MakeMultispectral(path, image), MakePan(path, image)};
  for (const auto& file : files) {
    file->Publish();
  }
}

} // namespace quent::rasterops::engine
