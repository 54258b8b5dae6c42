#include "engine/samplescene_file.h"

#include "engine/errors.h"

#include <cpl_error.h>
#include <cpl_string.h>
#include <ogr_spatialref.h>

#include <random>
#include <system_error>

namespace quent::rasterops::engine::scene {

namespace {

constexpr int utmZone33North = 32633;
constexpr double west = 470000.0;
constexpr double north = 5230000.0;
/// Where GDAL keeps category names, which GeoTIFF has no place for.
constexpr const char* sidecar = ".aux.xml";

std::filesystem::path WithSuffix(std::filesystem::path path, const char* suffix) {
  return path += suffix;
}

} // namespace

SceneFile::SceneFile(const std::filesystem::path& folder, const std::string& name, int size, double extent,
                     int bands, GDALDataType type)
    : m_Target(folder / name) {
  m_Temporary = folder / ("." + name + "." + std::to_string(std::random_device{}()) + ".part");
  GDALAllRegister();
  GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
  if (driver == nullptr) {
    Fail("this GDAL has no GeoTIFF driver");
  }
  CPLStringList options;
  options.SetNameValue("TILED", "YES");
  options.SetNameValue("BLOCKXSIZE", "256");
  options.SetNameValue("BLOCKYSIZE", "256");
  const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
  m_Dataset.reset(driver->Create(m_Temporary.string().c_str(), size, size, bands, type, options.List()));
  if (m_Dataset == nullptr) {
    Fail(CPLGetLastErrorMsg());
  }
  OGRSpatialReference crs;
  crs.importFromEPSG(utmZone33North);
  double transform[6] = {west, extent / size, 0.0, north, 0.0, -extent / size};
  if (m_Dataset->SetSpatialRef(&crs) != CE_None || m_Dataset->SetGeoTransform(transform) != CE_None) {
    Fail(CPLGetLastErrorMsg());
  }
}

SceneFile::~SceneFile() {
  const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
  m_Dataset.reset();
  std::error_code ignored;
  std::filesystem::remove(m_Temporary, ignored);
  std::filesystem::remove(WithSuffix(m_Temporary, sidecar), ignored);
}

GDALRasterBand& SceneFile::Band(int number) {
  return *m_Dataset->GetRasterBand(number);
}

void SceneFile::Write(int number, const void* pixels) {
  const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
  GDALRasterBand& band = Band(number);
  if (band.RasterIO(GF_Write, 0, 0, band.GetXSize(), band.GetYSize(), const_cast<void*>(pixels),
                    band.GetXSize(), band.GetYSize(), band.GetRasterDataType(), 0, 0, nullptr) != CE_None) {
    Fail(CPLGetLastErrorMsg());
  }
}

void SceneFile::Close() {
  const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
  CPLErrorReset();
  // What GDAL still holds back reaches the disk here; a disk that is full shows only as an error message.
  m_Dataset.reset();
  if (CPLGetLastErrorType() >= CE_Failure) {
    Fail(CPLGetLastErrorMsg());
  }
}

void SceneFile::Publish() {
  std::error_code failure;
  const auto temporarySidecar = WithSuffix(m_Temporary, sidecar);
  if (std::filesystem::exists(temporarySidecar, failure)) {
    std::filesystem::rename(temporarySidecar, WithSuffix(m_Target, sidecar), failure);
  }
  if (!failure) {
    std::filesystem::rename(m_Temporary, m_Target, failure);
  }
  if (failure) {
    Fail(failure.message());
  }
}

void SceneFile::Fail(const std::string& what) const {
  throw OutputError(m_Target.string() + ": cannot write it (" + what +
                    "); look at the folder and the free space");
}

} // namespace quent::rasterops::engine::scene
