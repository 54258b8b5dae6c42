/// \file
/// What is known of an input before any of its pixels is read.
#pragma once

#include "engine/georeference.h"
#include "engine/nodata.h"
#include "engine/tilegrid.h"

#include <gdal_priv.h>

#include <optional>
#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// What the user wants of one input.
struct InputRequest {
  std::string path;                     ///< empty if a value stands in
  std::string value;                    ///< in place of a raster
  std::vector<int> bands;               ///< numbered from 1; empty: all but alpha bands
  std::vector<std::string> openOptions; ///< KEY=VALUE, for GDAL
};

/// Where the validity of a band comes from.
enum class MaskSource {
  AllValid, ///< nothing marks a pixel as invalid
  NoData,   ///< the band's NODATA value
  Dataset,  ///< one mask or alpha band for all bands of the file
  Band      ///< a mask of the band's own
};

/// One selected band.
struct InputBand {
  int number = 1;
  std::optional<Rbuf_PixelType> type; ///< none for 64-bit integers
  MaskSource source = MaskSource::AllValid;
  /// Band whose values other than 0 say what is valid, where GDAL makes no mask of the file's alpha band; 0
  /// elsewhere.
  int alpha = 0;
  std::optional<double> declaredNoData; ///< as the file states it
  /// Of MaskSource::NoData, in the type of the blocks; none where the band's type cannot hold the value, so
  /// that no pixel has it.
  std::optional<PixelValue> noData;
};

/// Opens a raster for reading.
/// \throws InputError
GDALDatasetUniquePtr OpenInput(const std::string& path, const std::vector<std::string>& openOptions);

/// An input file, opened, or a value that stands in for one.
class InputRaster {
public:
  /// \param as the type that pixels are converted to after reading; none: as they are
  /// \throws InputError
  InputRaster(const InputRequest& request, std::optional<Rbuf_PixelType> as);
  /// A value of a type. \throws UsageError if the type cannot hold it
  InputRaster(const InputRequest& request, const std::string& option, Rbuf_PixelType type);

  const std::string& Path() const { return m_Request.path; }
  bool IsValue() const { return m_Request.path.empty(); }
  const PixelValue& Value() const { return m_Value; }
  Size RasterSize() const { return m_Size; }
  const std::vector<InputBand>& Bands() const { return m_Bands; }
  /// Type that pixels are read in.
  Rbuf_PixelType NativeType() const { return m_Native; }
  /// Type that operators see.
  Rbuf_PixelType Type() const { return m_Type; }
  const Georeference& Place() const { return m_Place; }

  /// Columns and rows of the blocks in the file.
  Size BlockSize() const { return m_Block; }
  /// Bytes of one block in GDAL's cache, of all bands if the file interleaves them by pixel.
  std::size_t BlockBytes() const { return m_BlockBytes; }
  /// Bytes that one handle holds beside GDAL's cache: the block that is being taken apart, and the coded one.
  std::size_t HandleBytes() const { return m_HandleBytes; }
  /// True if single blocks of a band can be read without decoding those of other bands, in the type of the
  /// blocks in memory.
  bool BlocksStandAlone() const { return m_BlocksStandAlone; }
  /// True if a block is as wide as the raster.
  bool IsStrips() const { return m_Block.width >= m_Size.width; }

  /// \throws InputError if the selected bands cannot be read into one block
  void CheckOneBuffer() const;

  /// The dataset that the description was read from, the first time; a new handle after that. Not to be
  /// called from two threads at once. \throws InputError
  GDALDatasetUniquePtr TakeHandle();
  /// That dataset, until it is taken.
  GDALDataset* Dataset() const { return m_Dataset.get(); }

private:
  void selectBands();
  void describeBands();
  void describeBlocks();

  InputRequest m_Request;
  GDALDatasetUniquePtr m_Dataset;
  Size m_Size{1, 1};
  std::vector<InputBand> m_Bands;
  Rbuf_PixelType m_Native = U8;
  Rbuf_PixelType m_Type = U8;
  PixelValue m_Value{};
  Georeference m_Place;
  Size m_Block{1, 1};
  std::size_t m_BlockBytes = 0;
  std::size_t m_HandleBytes = 0;
  bool m_BlocksStandAlone = false;
};

} // namespace quent::rasterops::engine
