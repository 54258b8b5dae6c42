/// \file
/// The output file while it is being written.
#pragma once

#include "engine/bandlabels.h"
#include "engine/georeference.h"
#include "engine/nodataplan.h"
#include "engine/outputformat.h"
#include "engine/temporaryoutput.h"
#include "engine/tilegrid.h"
#include "rasterops/pixelblock.h"

#include <gdal_priv.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace quent::rasterops::engine {

/// All that the output file is made from.
struct OutputPlan {
  OutputRequest request;
  OutputShape shape;
  NoDataPlan noData;
  Georeference place;
  BandLabels labels;
};

/// Called with the fraction that is done; false stops the run.
using Progress = std::function<bool(double)>;

/// One writer for all threads. Nothing is left of it unless Finish() returns.
class OutputRaster {
public:
  /// Makes the file, with all that it says besides pixels. \throws OutputError
  OutputRaster(const OutputPlan& plan, const OutputFormat& format);
  OutputRaster(const OutputRaster&) = delete;
  OutputRaster& operator=(const OutputRaster&) = delete;
  ~OutputRaster();

  /// Writes one tile. Safe from any thread, for different tiles.
  /// \param mask    of TileFinisher, or null if all pixels of the tile are valid
  /// \param scratch kept by the caller from tile to tile
  /// \throws OutputError
  void Write(const Tile& tile, const tilx::PixelBlock& block, const unsigned char* mask,
             std::vector<unsigned char>& scratch);
  /// Completes the file and moves it into its place. \throws OutputError; Cancelled
  void Finish(const Progress& progress);

  /// What the format could not take of georeference and labels, a line each.
  const std::vector<std::string>& Warnings() const { return m_Warnings; }
  /// True if the file has a mask, so that pixels of all bands are invalid together.
  bool HasMask() const { return m_Masked; }

private:
  void create();
  void describe();
  bool blocksFit(const Tile& tile) const;
  void writeBlocks(const Tile& tile, const _Rbuf_BaseData& plane, int band,
                   std::vector<unsigned char>& scratch);
  void writeMask(const Tile& tile, const unsigned char* mask);
  void close();
  void copy(const Progress& progress);
  void checkCopy();
  [[noreturn]] void fail(const std::string& gdalReason) const;

  const OutputPlan& m_Plan;
  const OutputFormat& m_Format;
  TemporaryOutput m_Temporary;
  std::vector<std::string> m_Warnings;
  std::mutex m_Lock; ///< guards all below
  GDALDatasetUniquePtr m_Dataset;
  Size m_Block;
  bool m_BlocksStandAlone = false;
  GDALRasterBand* m_Mask = nullptr;
  bool m_Masked = false;        ///< the mask was made; holds after the dataset is closed
  std::vector<Tile> m_Unmasked; ///< written without a mask so far
};

} // namespace quent::rasterops::engine
