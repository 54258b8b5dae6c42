#include "engine/outputformat.h"

#include "catalogue/arguments.h"
#include "engine/errors.h"
#include "engine/gdalerrors.h"
#include "engine/gdaloptions.h"
#include "engine/pixeltypes.h"

#include <gdal_priv.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <map>

namespace quent::rasterops::engine {

namespace {

constexpr long largestBlock = 512;

/// Options by name in upper case, so that the user's win over ours.
using Options = std::map<std::string, std::string>;

void set(Options& options, const std::string& item) {
  const std::size_t equals = item.find('=');
  if (equals == std::string::npos || equals == 0)
    throw UsageError("--co " + item + ": give it as KEY=VALUE");
  std::string key = item.substr(0, equals);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  options[key] = item.substr(equals + 1);
}

std::vector<std::string> list(const Options& options) {
  std::vector<std::string> items;
  for (const auto& [key, value] : options)
    items.push_back(key + "=" + value);
  return items;
}

bool can(GDALDriver& driver, const char* capability) {
  const char* const value = driver.GetMetadataItem(capability);
  return value && EQUAL(value, "YES");
}

bool writes(GDALDriver& driver) {
  // These two hold no pixels in a file of their own.
  const std::string name = driver.GetDescription();
  return name != "VRT" && name != "MEM" && can(driver, GDAL_DCAP_RASTER) &&
         (can(driver, GDAL_DCAP_CREATE) || can(driver, GDAL_DCAP_CREATECOPY));
}

/// True if a blank-separated list, as drivers give it, has the word.
bool lists(const char* words, const std::string& word) {
  return words && (" " + std::string(words) + " ").find(" " + word + " ") != std::string::npos;
}

bool hasOption(GDALDriver& driver, const std::string& name) {
  const char* const known = driver.GetMetadataItem(GDAL_DMD_CREATIONOPTIONLIST);
  return known && std::string(known).find("name='" + name + "'") != std::string::npos;
}

GDALDriver* byExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  if (extension.empty())
    return nullptr;
  extension.erase(0, 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  GDALDriverManager& manager = *GetGDALDriverManager();
  // The formats whose extension several drivers claim.
  const std::map<std::string, const char*> preferred = {
      {"tif", "GTiff"}, {"tiff", "GTiff"}, {"nc", "netCDF"}, {"img", "HFA"}, {"jp2", "JP2OpenJPEG"}};
  if (const auto found = preferred.find(extension); found != preferred.end())
    if (GDALDriver* const driver = manager.GetDriverByName(found->second))
      return driver;
  for (int i = 0; i < manager.GetDriverCount(); ++i) {
    GDALDriver& driver = *manager.GetDriver(i);
    if (writes(driver) && lists(driver.GetMetadataItem(GDAL_DMD_EXTENSIONS), extension))
      return &driver;
  }
  return nullptr;
}

GDALDriver& chooseDriver(const OutputRequest& request) {
  GDALDriverManager& manager = *GetGDALDriverManager();
  if (request.driver.empty()) {
    GDALDriver* const guessed = byExtension(request.path);
    return guessed ? *guessed : *manager.GetDriverByName("GTiff");
  }
  GDALDriver* const driver = manager.GetDriverByName(request.driver.c_str());
  if (!driver)
    throw UsageError("--of " + request.driver + ": there is no such format; gdalinfo --formats lists them");
  if (!writes(*driver))
    throw UsageError("--of " + request.driver + ": this format cannot be written; choose another, as GTiff");
  return *driver;
}

long positive(const Options& options, const std::string& key) {
  const std::string& text = options.at(key);
  long value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size() || value < 1 || value > 0x7fffffff)
    throw UsageError("--co " + key + "=" + text + ": give a number of pixels");
  return value;
}

/// Formats that have a lossless form write that one, unless the user chose a quality.
void keepValues(GDALDriver& driver, Options& options) {
  const std::string name = driver.GetDescription();
  if (name == "JP2OpenJPEG" && !options.count("QUALITY") && !options.count("REVERSIBLE")) {
    options["QUALITY"] = "100";
    options["REVERSIBLE"] = "YES";
  }
  if (name == "WEBP" && !options.count("QUALITY"))
    options.emplace("LOSSLESS", "YES");
}

void validate(GDALDriver& driver, const std::vector<std::string>& options) {
  const GdalMessages messages;
  if (!GDALValidateCreationOptions(&driver, OptionPointers(options).data()))
    throw UsageError("--co: " + messages.Reason() + "; gdalinfo --format " + driver.GetDescription() +
                     " lists the options");
}

} // namespace

OutputFormat::OutputFormat(const OutputRequest& request, const OutputShape& shape) {
  PrepareGdal();
  m_Driver = &chooseDriver(request);
  m_Copies = !can(*m_Driver, GDAL_DCAP_CREATE);
  m_TileDriver = m_Copies ? GetGDALDriverManager()->GetDriverByName("GTiff") : m_Driver;
  Options user;
  for (const std::string& option : request.creationOptions)
    set(user, option);
  validate(*m_Driver, list(user));
  m_Block = {std::min(largestBlock, RoundUp(shape.size.width, 16)),
             std::min(largestBlock, RoundUp(shape.size.height, 16))};
  OutputRequest tiles = request;
  if (m_Copies) {
    keepValues(*m_Driver, user);
    m_CopyOptions = list(user);
    tiles.creationOptions.clear();
  }
  if (EQUAL(m_TileDriver->GetDescription(), "GTiff"))
    geoTiffOptions(tiles, shape);
  else
    m_TileOptions = list(user);
  typeOptions(request, shape);
}

std::string OutputFormat::Name() const {
  return m_Driver->GetDescription();
}

void OutputFormat::geoTiffOptions(const OutputRequest& request, const OutputShape& shape) {
  Options options;
  for (const std::string& option : request.creationOptions)
    set(options, option);
  const auto standard = [&options](const char* key, const std::string& value) {
    options.emplace(key, value);
  };
  if (!options.count("TILED"))
    options["TILED"] = "YES";
  if (CPLTestBool(options["TILED"].c_str())) {
    standard("BLOCKXSIZE", std::to_string(m_Block.width));
    standard("BLOCKYSIZE", std::to_string(m_Block.height));
    m_Block = {positive(options, "BLOCKXSIZE"), positive(options, "BLOCKYSIZE")};
  } else {
    m_Block = {shape.size.width, options.count("BLOCKYSIZE") ? positive(options, "BLOCKYSIZE") : 1};
  }
  standard("INTERLEAVE", "BAND");
  standard("BIGTIFF", "IF_SAFER");
  // Left alone, four bands of bytes would become a picture with an alpha band.
  standard("PHOTOMETRIC", shape.isColour ? "RGB" : "MINISBLACK");
  const auto compression = options.find("COMPRESS");
  m_Compressed = compression != options.end() && !EQUAL(compression->second.c_str(), "NONE");
  m_TileOptions = list(options);
}

void OutputFormat::typeOptions(const OutputRequest& request, const OutputShape& shape) {
  const std::string name = m_Driver->GetDescription();
  const std::string type = catalogue::PixelTypeName(shape.type);
  const char* const held = m_Driver->GetMetadataItem(GDAL_DMD_CREATIONDATATYPES);
  const GDALDataType buffer = BufferType(shape.type);
  if (held && !lists(held, GDALGetDataTypeName(buffer)))
    throw UsageError(request.path + ": " + name + " cannot hold " + type +
                     "; choose another type by --ot or another format by --of");
  if (const int bits = PartialBits(shape.type); bits > 0 && hasOption(*m_TileDriver, "NBITS"))
    m_TileOptions.push_back("NBITS=" + std::to_string(bits));
  if (shape.type == S8 && buffer == GDT_Byte) {
    // The copy of a COG keeps it too: that is a GeoTIFF in the end.
    if (!hasOption(*m_TileDriver, "PIXELTYPE") || (m_Copies && name != "COG"))
      throw UsageError(request.path + ": " + name +
                       " cannot hold S8; choose --ot S16 or another format by --of");
    m_TileOptions.push_back("PIXELTYPE=SIGNEDBYTE");
  }
}

} // namespace quent::rasterops::engine
