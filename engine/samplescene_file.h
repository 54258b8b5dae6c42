/// \file
/// One GeoTIFF of the sample scene, which gets its name when it is complete.
#pragma once

#include <gdal_priv.h>

#include <filesystem>
#include <memory>
#include <string>

namespace quent::rasterops::engine::scene {

class SceneFile {
public:
  /// Makes a tiled GeoTIFF of `size` by `size` pixels under a temporary name in `folder`.
  /// \param extent metres along a side
  /// \throws OutputError naming the file, as all members do
  SceneFile(const std::filesystem::path& folder, const std::string& name, int size, double extent, int bands,
            GDALDataType type);
  SceneFile(const SceneFile&) = delete;
  SceneFile& operator=(const SceneFile&) = delete;
  /// Removes what was not published.
  ~SceneFile();

  /// Band `number`, from 1, for names, colours and NODATA.
  GDALRasterBand& Band(int number);
  /// Writes all pixels of a band from an array of the file's type.
  void Write(int number, const void* pixels);
  /// Completes the file under its temporary name.
  void Close();
  /// Gives it its name.
  void Publish();

private:
  struct Closer {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
  };

  [[noreturn]] void Fail(const std::string& what) const;

  std::filesystem::path m_Target;
  std::filesystem::path m_Temporary;
  std::unique_ptr<GDALDataset, Closer> m_Dataset;
};

} // namespace quent::rasterops::engine::scene
