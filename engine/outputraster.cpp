#include "engine/outputraster.h"

#include "catalogue/arguments.h"
#include "engine/errors.h"
#include "engine/gdalerrors.h"
#include "engine/gdaloptions.h"
#include "engine/pixeltypes.h"
#include "engine/tileblock.h"

#include <algorithm>
#include <cstring>

namespace quent::rasterops::engine {

namespace {

/// Copying goes through the raster once; more cache would not make it faster.
constexpr GIntBig copyCache = GIntBig{16} << 20;

/// Passes GDAL's progress on.
int CPL_STDCALL forward(double fraction, const char*, void* progress) {
  return (*static_cast<const Progress*>(progress))(fraction) ? TRUE : FALSE;
}

} // namespace

OutputRaster::OutputRaster(const OutputPlan& plan, const OutputFormat& format)
    : m_Plan(plan), m_Format(format), m_Temporary(plan.request.path, plan.request.overwrite) {
  create();
  describe();
}

OutputRaster::~OutputRaster() {
  const GdalMessages messages; // of a run that failed already
  m_Dataset.reset();
}

void OutputRaster::create() {
  const std::string path = m_Format.Copies() ? m_Temporary.ScratchPath() : m_Temporary.Path();
  const OutputShape& shape = m_Plan.shape;
  const GdalMessages messages;
  m_Dataset.reset(m_Format.TileDriver().Create(
      path.c_str(), static_cast<int>(shape.size.width), static_cast<int>(shape.size.height),
      static_cast<int>(shape.bands), BufferType(shape.type), OptionPointers(m_Format.TileOptions()).data()));
  if (!m_Dataset || messages.Failed())
    fail(messages.Reason());
  int width = 0;
  int height = 0;
  m_Dataset->GetRasterBand(1)->GetBlockSize(&width, &height);
  m_Block = {width, height};
  const char* const interleave = m_Dataset->GetMetadataItem("INTERLEAVE", "IMAGE_STRUCTURE");
  // Only of GeoTIFF is it known that whole blocks may bypass the cache.
  m_BlocksStandAlone = EQUAL(m_Format.TileDriver().GetDescription(), "GTiff") &&
                       (shape.bands == 1 || (interleave && EQUAL(interleave, "BAND")));
}

void OutputRaster::describe() {
  const auto warn = [this](const std::string& what) {
    m_Warnings.push_back(m_Plan.request.path + ": " + m_Format.Name() + " does not take the " + what +
                         "; it is left out");
  };
  {
    const GdalMessages messages;
    if (!m_Plan.place.Store(*m_Dataset))
      warn("whole georeference (" + messages.Reason() + ")");
  }
  for (long i = 0; i < m_Plan.shape.bands; ++i) {
    GDALRasterBand& band = *m_Dataset->GetRasterBand(static_cast<int>(i + 1));
    if (!m_Plan.labels.bands.empty()) {
      const GdalMessages messages;
      const std::string refused = StoreLabel(m_Plan.labels.bands[static_cast<std::size_t>(i)], band);
      if (!refused.empty())
        warn(refused + " of band " + std::to_string(i + 1) + " (" + messages.Reason() + ")");
    }
    if (m_Plan.noData.kind == NoDataPlan::Kind::Value) {
      const GdalMessages messages;
      if (band.SetNoDataValue(m_Plan.noData.number) != CE_None)
        throw OutputError(m_Plan.request.path + ": " + m_Format.Name() + " cannot declare a NODATA value (" +
                          messages.Reason() + "); give --output-nodata none or another --of");
    }
  }
}

void OutputRaster::Write(const Tile& tile, const tilx::PixelBlock& block, const unsigned char* mask,
                         std::vector<unsigned char>& scratch) {
  const bool byBlocks = blocksFit(tile);
  for (long plane = 0; byBlocks && plane < block.getNumOfPlanes(); ++plane)
    writeBlocks(tile, *block.getPlaneData(plane), static_cast<int>(plane + 1), scratch);
  const std::lock_guard guard(m_Lock);
  const GdalMessages messages;
  if (!byBlocks) {
    const _Rbuf_BaseData& first = *block.getPlaneData(0);
    const CPLErr result = m_Dataset->RasterIO(
        GF_Write, static_cast<int>(tile.x), static_cast<int>(tile.y), static_cast<int>(tile.width),
        static_cast<int>(tile.height), first.data, static_cast<int>(tile.width),
        static_cast<int>(tile.height), BufferType(m_Plan.shape.type), static_cast<int>(m_Plan.shape.bands),
        nullptr, first.pixelBytes, first.pitch, PlaneStride(block), nullptr);
    if (result != CE_None || messages.Failed())
      fail(messages.Reason());
  }
  if (m_Plan.noData.kind == NoDataPlan::Kind::Mask)
    writeMask(tile, mask);
}

/// True if the tile is made of whole blocks.
bool OutputRaster::blocksFit(const Tile& tile) const {
  const Size raster = m_Plan.shape.size;
  const auto whole = [](long begin, long length, long unit, long end) {
    return begin % unit == 0 && ((begin + length) % unit == 0 || begin + length == end);
  };
  return m_BlocksStandAlone && whole(tile.x, tile.width, m_Block.width, raster.width) &&
         whole(tile.y, tile.height, m_Block.height, raster.height);
}

/// Hands whole blocks to the driver. Only that is done under the lock.
void OutputRaster::writeBlocks(const Tile& tile, const _Rbuf_BaseData& plane, int band,
                               std::vector<unsigned char>& scratch) {
  const auto pixelBytes = static_cast<std::size_t>(plane.pixelBytes);
  const std::size_t blockPitch = static_cast<std::size_t>(m_Block.width) * pixelBytes;
  for (long y = 0; y < tile.height; y += m_Block.height)
    for (long x = 0; x < tile.width; x += m_Block.width) {
      const long width = std::min(m_Block.width, tile.width - x);
      const long height = std::min(m_Block.height, tile.height - y);
      unsigned char* from = plane.data + y * plane.pitch + x * plane.pixelBytes;
      if (height != m_Block.height || static_cast<std::size_t>(plane.pitch) != blockPitch) {
        // Beyond the raster's edge a block holds zeros, whatever the scratch memory held before.
        scratch.resize(blockPitch * static_cast<std::size_t>(m_Block.height));
        if (width != m_Block.width || height != m_Block.height)
          std::fill(scratch.begin(), scratch.end(), static_cast<unsigned char>(0));
        for (long row = 0; row < height; ++row)
          std::memcpy(scratch.data() + static_cast<std::size_t>(row) * blockPitch, from + row * plane.pitch,
                      static_cast<std::size_t>(width) * pixelBytes);
        from = scratch.data();
      }
      const std::lock_guard guard(m_Lock);
      const GdalMessages messages;
      const CPLErr result =
          m_Dataset->GetRasterBand(band)->WriteBlock(static_cast<int>((tile.x + x) / m_Block.width),
                                                     static_cast<int>((tile.y + y) / m_Block.height), from);
      if (result != CE_None || messages.Failed())
        fail(messages.Reason());
    }
}

void OutputRaster::writeMask(const Tile& tile, const unsigned char* mask) {
  if (!mask && !m_Mask) {
    m_Unmasked.push_back(tile);
    return;
  }
  const GdalMessages messages;
  if (!m_Mask) {
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES");
    const CPLErr result = m_Dataset->CreateMaskBand(GMF_PER_DATASET);
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", nullptr);
    if (result != CE_None || messages.Failed())
      throw OutputError(m_Plan.request.path + ": " + m_Format.Name() +
                        " cannot hold a mask; give --output-nodata VALUE or another --of");
    m_Mask = m_Dataset->GetRasterBand(1)->GetMaskBand();
    m_Masked = true;
  }
  std::vector<unsigned char> valid;
  if (!mask)
    valid.assign(static_cast<std::size_t>(tile.width) * static_cast<std::size_t>(tile.height), 255);
  const CPLErr result =
      m_Mask->RasterIO(GF_Write, static_cast<int>(tile.x), static_cast<int>(tile.y),
                       static_cast<int>(tile.width), static_cast<int>(tile.height),
                       const_cast<unsigned char*>(mask ? mask : valid.data()), // only read from
                       static_cast<int>(tile.width), static_cast<int>(tile.height), GDT_Byte, 0, 0, nullptr);
  if (result != CE_None || messages.Failed())
    fail(messages.Reason());
}

void OutputRaster::Finish(const Progress& progress) {
  const std::lock_guard guard(m_Lock);
  if (m_Mask)
    for (const Tile& tile : m_Unmasked)
      writeMask(tile, nullptr);
  close();
  if (m_Format.Copies())
    copy(progress);
  if (!progress(1.0))
    throw Cancelled();
  m_Temporary.Commit();
}

void OutputRaster::close() {
  // Much is only written now, and only a message tells if that went wrong.
  const GdalMessages messages;
  m_Dataset->FlushCache(true);
  m_Dataset.reset();
  if (messages.Failed())
    fail(messages.Reason());
}

void OutputRaster::copy(const Progress& progress) {
  // The tiles are done: what they took is the copy's now.
  rsys_HeapSetPoolLimit(0);
  GDALSetCacheMax64(std::min(GDALGetCacheMax64(), copyCache));
  const GdalMessages messages;
  const std::string path = m_Temporary.ScratchPath();
  GDALDatasetUniquePtr source(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
  if (!source)
    fail(messages.Reason());
  bool stopped = false;
  const Progress watch = [&](double fraction) {
    stopped = stopped || !progress(fraction);
    return !stopped;
  };
  constexpr int strict = TRUE; // no approximation by the driver
  m_Dataset.reset(
      m_Format.Driver().CreateCopy(m_Temporary.Path().c_str(), source.get(), strict,
                                   const_cast<char**>(OptionPointers(m_Format.CopyOptions()).data()), forward,
                                   const_cast<Progress*>(&watch)));
  if (stopped)
    throw Cancelled();
  if (!m_Dataset || messages.Failed())
    fail(messages.Reason());
  close();
  checkCopy();
}

/// Drivers that only copy leave out without a word what their format cannot hold.
void OutputRaster::checkCopy() {
  const GdalMessages messages;
  const GDALDatasetUniquePtr copied(GDALDataset::Open(m_Temporary.Path().c_str(), GDAL_OF_RASTER));
  if (!copied || copied->GetRasterCount() == 0)
    return; // a format that GDAL writes, but does not read in this form
  GDALRasterBand& band = *copied->GetRasterBand(1);
  if (HasMask() && (band.GetMaskFlags() & GMF_ALL_VALID))
    throw OutputError(m_Plan.request.path + ": " + m_Format.Name() +
                      " cannot hold a mask; give --output-nodata VALUE or another --of");
  int declared = 0;
  const double value = band.GetNoDataValue(&declared);
  const double wanted = m_Plan.noData.number;
  const bool same = value == wanted || (value != value && wanted != wanted);
  if (m_Plan.noData.kind == NoDataPlan::Kind::Value && !(declared && same))
    m_Warnings.push_back(m_Plan.request.path + ": " + m_Format.Name() + " does not keep the NODATA value " +
                         NumberText(wanted) +
                         "; pixels that hold it will be read as valid, unless another --of is given");
}

void OutputRaster::fail(const std::string& gdalReason) const {
  // The temporary name means nothing to the user.
  std::string reason = gdalReason;
  const std::string scratch = m_Temporary.ScratchPath();
  for (const std::string& prefix :
       {m_Temporary.Path() + ": ", m_Temporary.Path(), scratch + ": ", scratch + ", ", scratch})
    if (const std::size_t at = reason.find(prefix); at != std::string::npos)
      reason.erase(at, prefix.size());
  throw OutputError(m_Plan.request.path + ": cannot write it as " + m_Format.Name() + " (" + reason +
                    "); check free space and options");
}

} // namespace quent::rasterops::engine
