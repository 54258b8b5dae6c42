#include "engine/inputreader.h"

#include "engine/errors.h"
#include "engine/gdalerrors.h"
#include "engine/pixeltypes.h"

#include <algorithm>
#include <cstring>

namespace quent::rasterops::engine {

namespace {

/// Larger blocks go through GDAL's cache, where the tiles that share them find them again.
constexpr std::size_t largestScratch = std::size_t{8} << 20;

std::vector<std::optional<PixelValue>> noDataValues(const InputRaster& raster) {
  std::vector<std::optional<PixelValue>> values;
  for (const InputBand& band : raster.Bands())
    values.push_back(band.noData);
  return values;
}

} // namespace

InputReader::InputReader(const InputRaster& raster, GDALDatasetUniquePtr handle)
    : m_Raster(raster), m_Handle(std::move(handle)), m_Native(raster.NativeType(), noDataValues(raster)),
      m_Converted(raster.Type(), std::vector<std::optional<PixelValue>>(raster.Bands().size())),
      m_Mask(U8, {std::nullopt}) {
  for (const InputBand& band : raster.Bands())
    m_Numbers.push_back(band.number);
}

std::size_t InputReader::Bytes(const InputRaster& raster, Size tile) {
  if (raster.RasterSize() == Size{1, 1})
    return std::size_t{4} << 10;
  const std::size_t planes = raster.Bands().size();
  std::size_t bytes = TileBlockBytes(raster.NativeType(), planes, tile);
  if (raster.Type() != raster.NativeType())
    bytes += TileBlockBytes(raster.Type(), planes, tile);
  const bool hasMask = std::any_of(raster.Bands().begin(), raster.Bands().end(), [](const InputBand& band) {
    return band.source == MaskSource::Dataset || band.source == MaskSource::Band;
  });
  if (hasMask)
    bytes += TileBlockBytes(U8, 1, tile);
  return bytes + raster.HandleBytes() + std::min(raster.BlockBytes(), largestScratch);
}

const boost::shared_ptr<tilx::PixelBlock>& InputReader::Read(const Tile& tile) {
  if (m_Raster.RasterSize() == Size{1, 1})
    return readOnce();
  m_Native.Shape({tile.width, tile.height});
  readPixels(tile);
  readMasks(tile);
  return finish();
}

const boost::shared_ptr<tilx::PixelBlock>& InputReader::readOnce() {
  const bool converted = m_Raster.Type() != m_Raster.NativeType();
  if (m_Done)
    return converted ? m_Converted.Get() : m_Native.Get();
  const Tile tile{0, 0, 1, 1};
  const auto& block = m_Native.Shape({1, 1});
  if (m_Raster.IsValue()) {
    const _Rbuf_BaseData* const plane = block->getPlaneData(0);
    std::memcpy(plane->data, m_Raster.Value().data(), static_cast<std::size_t>(plane->pixelBytes));
    block->setCondition(0, tilx::ALLDATA);
    block->computeMasks();
  } else {
    readPixels(tile);
    readMasks(tile);
  }
  m_Done = true;
  return finish();
}

void InputReader::readPixels(const Tile& tile) {
  if (blocksFit(tile)) {
    for (std::size_t plane = 0; plane < m_Numbers.size(); ++plane)
      readBlocks(tile, plane);
    return;
  }
  const tilx::PixelBlock& block = *m_Native.Get();
  const _Rbuf_BaseData* const first = block.getPlaneData(0);
  const GdalMessages messages;
  const CPLErr result = m_Handle->RasterIO(
      GF_Read, static_cast<int>(tile.x), static_cast<int>(tile.y), static_cast<int>(tile.width),
      static_cast<int>(tile.height), first->data, static_cast<int>(tile.width), static_cast<int>(tile.height),
      BufferType(m_Raster.NativeType()), static_cast<int>(m_Numbers.size()), m_Numbers.data(),
      first->pixelBytes, first->pitch, PlaneStride(block), nullptr);
  if (result != CE_None || messages.Failed())
    fail(tile, messages.Reason());
}

/// True if the tile is made of whole blocks, so that no other tile needs them and GDAL's cache would only
/// cost a copy.
bool InputReader::blocksFit(const Tile& tile) const {
  const Size block = m_Raster.BlockSize();
  const Size raster = m_Raster.RasterSize();
  const auto whole = [](long begin, long length, long unit, long end) {
    return begin % unit == 0 && ((begin + length) % unit == 0 || begin + length == end);
  };
  return m_Raster.BlocksStandAlone() && m_Raster.BlockBytes() <= largestScratch &&
         whole(tile.x, tile.width, block.width, raster.width) &&
         whole(tile.y, tile.height, block.height, raster.height);
}

void InputReader::readBlocks(const Tile& tile, std::size_t plane) {
  const GdalMessages messages;
  const Size unit = m_Raster.BlockSize();
  GDALRasterBand& band = *m_Handle->GetRasterBand(m_Numbers[plane]);
  const _Rbuf_BaseData& target = *m_Native.Get()->getPlaneData(static_cast<long>(plane));
  const std::ptrdiff_t blockPitch = unit.width * target.pixelBytes;
  for (long y = 0; y < tile.height; y += unit.height)
    for (long x = 0; x < tile.width; x += unit.width) {
      const long width = std::min(unit.width, tile.width - x);
      const long height = std::min(unit.height, tile.height - y);
      unsigned char* const to = target.data + y * target.pitch + x * target.pixelBytes;
      const bool direct = height == unit.height && target.pitch == blockPitch;
      if (!direct)
        m_Scratch.resize(m_Raster.BlockBytes());
      const CPLErr result =
          band.ReadBlock(static_cast<int>((tile.x + x) / unit.width),
                         static_cast<int>((tile.y + y) / unit.height), direct ? to : m_Scratch.data());
      if (result != CE_None || messages.Failed())
        fail({tile.x + x, tile.y + y, width, height}, messages.Reason());
      for (long row = 0; !direct && row < height; ++row)
        std::memcpy(to + row * target.pitch, m_Scratch.data() + row * blockPitch,
                    static_cast<std::size_t>(width) * static_cast<std::size_t>(target.pixelBytes));
    }
}

void InputReader::readMasks(const Tile& tile) {
  tilx::PixelBlock& block = *m_Native.Get();
  bool datasetMaskRead = false;
  for (std::size_t plane = 0; plane < m_Numbers.size(); ++plane) {
    const InputBand& band = m_Raster.Bands()[plane];
    const auto index = static_cast<long>(plane);
    switch (band.source) {
    case MaskSource::AllValid:
      block.setCondition(index, tilx::ALLDATA);
      break;
    case MaskSource::NoData:
      block.setCondition(index, band.noData ? tilx::UNKNOWN : tilx::ALLDATA);
      break;
    case MaskSource::Dataset:
    case MaskSource::Band:
      if (band.source == MaskSource::Band || !datasetMaskRead)
        readMask(tile, plane);
      datasetMaskRead = band.source == MaskSource::Dataset;
      block.setMask(index, m_Mask.Get());
      break;
    }
    // An all-valid plane is told by its condition; most operators never ask for its mask.
    if (block.getCondition(index) == tilx::UNKNOWN)
      block.computeMask(index);
  }
}

void InputReader::readMask(const Tile& tile, std::size_t plane) {
  const auto& mask = m_Mask.Shape({tile.width, tile.height});
  const _Rbuf_BaseData& target = *mask->getPlaneData(0);
  const int alpha = m_Raster.Bands()[plane].alpha;
  GDALRasterBand& source =
      *(alpha ? m_Handle->GetRasterBand(alpha) : m_Handle->GetRasterBand(m_Numbers[plane])->GetMaskBand());
  if (GDALDataTypeIsFloating(source.GetRasterDataType()))
    return readFractions(tile, source, target);
  // Wider integers saturate at 255, so that what is not 0 stays so.
  const GdalMessages messages;
  const CPLErr result = source.RasterIO(GF_Read, static_cast<int>(tile.x), static_cast<int>(tile.y),
                                        static_cast<int>(tile.width), static_cast<int>(tile.height),
                                        target.data, static_cast<int>(tile.width),
                                        static_cast<int>(tile.height), GDT_Byte, 1, target.pitch, nullptr);
  if (result != CE_None || messages.Failed())
    fail(tile, "its mask: " + messages.Reason());
  for (std::ptrdiff_t row = 0; row < target.rows; ++row) {
    unsigned char* const bytes = target.data + row * target.pitch;
    for (std::int32_t column = 0; column < target.columns; ++column)
      bytes[column] = bytes[column] != 0 ? 255 : 0;
  }
}

/// A mask of fractions, row by row: as bytes those below one half would become 0.
void InputReader::readFractions(const Tile& tile, GDALRasterBand& band, const _Rbuf_BaseData& target) {
  const GdalMessages messages;
  std::vector<double> row(static_cast<std::size_t>(tile.width));
  for (long y = 0; y < tile.height; ++y) {
    const CPLErr result = band.RasterIO(GF_Read, static_cast<int>(tile.x), static_cast<int>(tile.y + y),
                                        static_cast<int>(tile.width), 1, row.data(),
                                        static_cast<int>(tile.width), 1, GDT_Float64, 0, 0, nullptr);
    if (result != CE_None || messages.Failed())
      fail(tile, "its mask: " + messages.Reason());
    unsigned char* const bytes = target.data + y * target.pitch;
    for (std::size_t column = 0; column < row.size(); ++column)
      bytes[column] = row[column] != 0.0 ? 255 : 0;
  }
}

const boost::shared_ptr<tilx::PixelBlock>& InputReader::finish() {
  const auto& native = m_Native.Get();
  if (m_Raster.Type() == m_Raster.NativeType())
    return native;
  const auto& converted = m_Converted.Shape({native->getWidth(), native->getHeight()});
  for (long plane = 0; plane < native->getNumOfPlanes(); ++plane)
    converted->setPlaneFromPixelBlock(plane, *native, plane);
  return converted;
}

void InputReader::fail(const Tile& tile, const std::string& reason) const {
  throw InputError(m_Raster.Path() + ": cannot read columns " + std::to_string(tile.x) + " to " +
                   std::to_string(tile.x + tile.width - 1) + ", rows " + std::to_string(tile.y) + " to " +
                   std::to_string(tile.y + tile.height - 1) + " (" + reason +
                   "); the file is damaged: get a new copy");
}

} // namespace quent::rasterops::engine
