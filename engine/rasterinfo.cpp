#include "engine/rasterinfo.h"

#include "catalogue/arguments.h"
#include "engine/errors.h"
#include "engine/inputreader.h"
#include "engine/pixeltypes.h"

#include <algorithm>

namespace quent::rasterops::engine {

namespace {

constexpr std::size_t scanBytes = std::size_t{4} << 20; ///< of a tile that is looked at
constexpr GIntBig scanCache = GIntBig{64} << 20;

std::vector<std::string> flagNames(int flags) {
  std::vector<std::string> names;
  for (const auto& [bit, name] :
       {std::pair{GMF_ALL_VALID, "all-valid"}, std::pair{GMF_PER_DATASET, "per-dataset"},
        std::pair{GMF_ALPHA, "alpha"}, std::pair{GMF_NODATA, "nodata"}})
    if (flags & bit)
      names.emplace_back(name);
  return names;
}

BandInfo describeBand(GDALRasterBand& band, const InputBand& input) {
  BandInfo info;
  info.number = input.number;
  info.type =
      input.type ? catalogue::PixelTypeName(*input.type) : GDALGetDataTypeName(band.GetRasterDataType());
  info.noData = input.declaredNoData;
  info.maskFlags = flagNames(band.GetMaskFlags());
  info.description = band.GetDescription();
  info.alpha = band.GetColorInterpretation() == GCI_AlphaBand;
  return info;
}

/// Condition of two tiles together.
tilx::DataContentsCondition both(tilx::DataContentsCondition a, tilx::DataContentsCondition b) {
  return a == tilx::UNKNOWN || a == b ? b : tilx::SOMEDATA;
}

/// Condition of one whole band, read by rows of blocks.
tilx::DataContentsCondition scan(const std::string& path, const std::vector<std::string>& openOptions,
                                 int number, const std::function<bool()>& cancelled) {
  InputRequest request;
  request.path = path;
  request.openOptions = openOptions;
  request.bands = {number};
  InputRaster raster(request, BandType(*OpenInput(path, openOptions)->GetRasterBand(number))
                                  ? std::nullopt
                                  : std::optional<Rbuf_PixelType>(F64));
  const InputBand& band = raster.Bands().front();
  if (band.source == MaskSource::AllValid || (band.source == MaskSource::NoData && !band.noData))
    return tilx::ALLDATA;
  const Size size = raster.RasterSize();
  const Size block = raster.BlockSize();
  const auto rowBytes = static_cast<std::size_t>(size.width) * PixelBytes(raster.NativeType());
  const long rows = RoundUp(static_cast<long>(std::max<std::size_t>(1, scanBytes / rowBytes)), block.height);
  const TileGrid grid(size, {std::min(size.width, RoundUp(16384, block.width)), std::min(rows, size.height)});
  InputReader reader(raster, raster.TakeHandle());
  tilx::DataContentsCondition condition = tilx::UNKNOWN;
  for (std::size_t i = 0; i < grid.Count() && condition != tilx::SOMEDATA; ++i) {
    if (cancelled && cancelled())
      throw Cancelled();
    condition = both(condition, reader.Read(grid.At(i))->getCondition(0));
  }
  return condition;
}

} // namespace

RasterInfo DescribeRaster(const std::string& path, const std::vector<std::string>& openOptions,
                          const std::function<bool()>& cancelled) {
  GDALSetCacheMax64(scanCache);
  InputRequest request;
  request.path = path;
  request.openOptions = openOptions;
  for (int i = 1; i <= OpenInput(path, openOptions)->GetRasterCount(); ++i)
    request.bands.push_back(i);
  const InputRaster raster(request, F64); // which 64-bit integers need; no pixel is read from it
  GDALDataset& dataset = *raster.Dataset();
  RasterInfo info;
  info.path = path;
  info.driver = dataset.GetDriver() ? dataset.GetDriver()->GetDescription() : "";
  info.size = raster.RasterSize();
  info.block = raster.BlockSize();
  info.crs = raster.Place().CrsName();
  info.transform = raster.Place().Transform();
  for (const InputBand& band : raster.Bands()) {
    info.bands.push_back(describeBand(*dataset.GetRasterBand(band.number), band));
    info.bands.back().condition = scan(path, openOptions, band.number, cancelled);
  }
  return info;
}

} // namespace quent::rasterops::engine
