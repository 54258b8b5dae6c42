#include "engine/inputraster.h"

#include "catalogue/arguments.h"
#include "engine/errors.h"
#include "engine/gdalerrors.h"
#include "engine/gdaloptions.h"
#include "engine/pixeltypes.h"

#include <algorithm>
#include <stdexcept>

namespace quent::rasterops::engine {

namespace {

using catalogue::PixelTypeName;

std::optional<double> declaredNoData(GDALRasterBand& band) {
  int present = 0;
  double value = 0.0;
  if (band.GetRasterDataType() == GDT_Int64)
    value = static_cast<double>(band.GetNoDataValueAsInt64(&present));
  else if (band.GetRasterDataType() == GDT_UInt64)
    value = static_cast<double>(band.GetNoDataValueAsUInt64(&present));
  else
    value = band.GetNoDataValue(&present);
  return present ? std::optional<double>(value) : std::nullopt;
}

MaskSource maskSource(GDALRasterBand& band, std::optional<Rbuf_PixelType> type) {
  const int flags = band.GetMaskFlags();
  if (flags & GMF_ALL_VALID)
    // GDAL takes a negative value of signed bytes for one that no byte can have.
    return type == S8 && declaredNoData(band) ? MaskSource::NoData : MaskSource::AllValid;
  if ((flags & GMF_NODATA) && !(flags & GMF_PER_DATASET))
    return MaskSource::NoData;
  return flags & (GMF_PER_DATASET | GMF_ALPHA) ? MaskSource::Dataset : MaskSource::Band;
}

bool isAlpha(GDALRasterBand& band) {
  return band.GetColorInterpretation() == GCI_AlphaBand;
}

/// Number of the first alpha band; 0 if there is none.
int alphaBand(GDALDataset& dataset) {
  for (int i = 1; i <= dataset.GetRasterCount(); ++i)
    if (isAlpha(*dataset.GetRasterBand(i)))
      return i;
  return 0;
}

} // namespace

GDALDatasetUniquePtr OpenInput(const std::string& path, const std::vector<std::string>& openOptions) {
  PrepareGdal();
  const GdalMessages messages;
  GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR,
                                                 nullptr, OptionPointers(openOptions).data(), nullptr));
  if (!dataset)
    throw InputError(path + ": cannot open it as a raster (" + messages.Reason() +
                     "); check name and format");
  if (dataset->GetRasterCount() == 0) {
    const char* const first = dataset->GetMetadataItem("SUBDATASET_1_NAME", "SUBDATASETS");
    throw InputError(path + ": has no raster band of its own" +
                     (first ? "; name one of its parts, for instance '" + std::string(first) + "'"
                            : std::string("; give a raster")));
  }
  return dataset;
}

InputRaster::InputRaster(const InputRequest& request, std::optional<Rbuf_PixelType> as)
    : m_Request(request),
      m_Dataset(OpenInput(request.path, request.openOptions)), m_Size{m_Dataset->GetRasterXSize(),
                                                                      m_Dataset->GetRasterYSize()},
      m_Place(*m_Dataset) {
  selectBands();
  std::vector<Rbuf_PixelType> types;
  for (const InputBand& band : m_Bands) {
    if (!band.type && as != F64)
      throw InputError(request.path + ": band " + std::to_string(band.number) +
                       " has 64-bit integers, which no pixel type holds; --as F64 reads them");
    types.push_back(band.type.value_or(F64));
  }
  m_Native = UnionType(types);
  m_Type = as.value_or(m_Native);
  describeBands();
  describeBlocks();
}

void InputRaster::CheckOneBuffer() const {
  const bool anySigned =
      std::any_of(m_Bands.begin(), m_Bands.end(), [](const InputBand& band) { return band.type == S8; });
  if (BufferType(S8) == GDT_Byte && m_Native != S8 && anySigned)
    throw InputError(m_Request.path + ": bands of type S8 and others cannot be read together; select bands "
                                      "of one type");
}

InputRaster::InputRaster(const InputRequest& request, const std::string& option, Rbuf_PixelType type)
    : m_Request(request), m_Bands(1), m_Native(type), m_Type(type) {
  double number = 0.0;
  try {
    number = ParseNumber(request.value);
  } catch (const std::invalid_argument& e) {
    throw UsageError(option + ": " + e.what());
  }
  const auto value = EncodeValue(number, type);
  if (!value)
    throw UsageError(option + ": " + PixelTypeName(type) + " cannot hold " + request.value +
                     "; read the rasters with --as F32 or --as F64");
  m_Value = *value;
}

void InputRaster::selectBands() {
  const int count = m_Dataset->GetRasterCount();
  std::vector<int> numbers = m_Request.bands;
  if (numbers.empty()) {
    for (int i = 1; i <= count; ++i)
      if (!isAlpha(*m_Dataset->GetRasterBand(i)))
        numbers.push_back(i);
    if (numbers.empty())
      throw InputError(m_Request.path + ": has nothing but alpha bands; select one by its number");
  }
  for (const int number : numbers) {
    if (number > count)
      throw InputError(m_Request.path + ": has no band " + std::to_string(number) + ", only " +
                       std::to_string(count));
    InputBand band;
    band.number = number;
    band.type = BandType(*m_Dataset->GetRasterBand(number));
    m_Bands.push_back(band);
  }
}

void InputRaster::describeBands() {
  const int alpha = alphaBand(*m_Dataset);
  for (InputBand& band : m_Bands) {
    GDALRasterBand& source = *m_Dataset->GetRasterBand(band.number);
    band.source = maskSource(source, band.type);
    // GDAL makes a mask of an alpha band only if it is the second of two or the fourth of four.
    if (band.source == MaskSource::AllValid && alpha != 0 && !isAlpha(source)) {
      band.source = MaskSource::Dataset;
      band.alpha = alpha;
    }
    band.declaredNoData = declaredNoData(source);
    if (band.source != MaskSource::NoData || !band.declaredNoData)
      continue;
    // A value that the band's own type cannot hold must not appear by conversion to a wider one.
    const auto own = EncodeValue(*band.declaredNoData, band.type.value_or(F64));
    if (own)
      band.noData = EncodeValue(DecodeValue(*own, band.type.value_or(F64)), m_Native);
  }
}

void InputRaster::describeBlocks() {
  GDALRasterBand& first = *m_Dataset->GetRasterBand(m_Bands.front().number);
  int width = 0;
  int height = 0;
  first.GetBlockSize(&width, &height);
  m_Block = {width, height};
  const char* const interleave = m_Dataset->GetMetadataItem("INTERLEAVE", "IMAGE_STRUCTURE");
  const int count = m_Dataset->GetRasterCount();
  const bool byPixel = count > 1 && (!interleave || !EQUAL(interleave, "BAND"));
  m_BlockBytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                 static_cast<std::size_t>(GDALGetDataTypeSizeBytes(first.GetRasterDataType())) *
                 (byPixel ? static_cast<std::size_t>(count) : 1);
  const bool coded = m_Dataset->GetMetadataItem("COMPRESSION", "IMAGE_STRUCTURE") != nullptr;
  m_HandleBytes = m_BlockBytes * ((byPixel ? 1U : 0U) + (coded ? 1U : 0U));
  m_BlocksStandAlone = !byPixel;
  for (const InputBand& band : m_Bands) {
    GDALRasterBand& source = *m_Dataset->GetRasterBand(band.number);
    int bandWidth = 0;
    int bandHeight = 0;
    source.GetBlockSize(&bandWidth, &bandHeight);
    m_BlocksStandAlone = m_BlocksStandAlone && bandWidth == width && bandHeight == height &&
                         source.GetRasterDataType() == BufferType(m_Native);
  }
}

GDALDatasetUniquePtr InputRaster::TakeHandle() {
  if (m_Dataset)
    return std::move(m_Dataset);
  return OpenInput(m_Request.path, m_Request.openOptions);
}

} // namespace quent::rasterops::engine
