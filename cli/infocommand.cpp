#include "cli/infocommand.h"

#include "engine/nodata.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <sstream>

namespace quent::rasterops::cli {

namespace {

const char* conditionName(tilx::DataContentsCondition condition) {
  switch (condition) {
  case tilx::ALLDATA:
    return "ALLDATA";
  case tilx::NODATA:
    return "NODATA";
  case tilx::SOMEDATA:
    return "SOMEDATA";
  case tilx::UNKNOWN:
    break;
  }
  return "UNKNOWN";
}

std::string flagsText(const std::vector<std::string>& flags) {
  std::string text;
  for (const std::string& flag : flags)
    text += (text.empty() ? "" : "+") + flag;
  return text.empty() ? "own" : text;
}

} // namespace

std::string InfoText(const engine::RasterInfo& info) {
  std::ostringstream out;
  out << "file: " << info.path << "\n";
  out << "format: " << info.driver << "\n";
  out << "size: " << info.size.width << " x " << info.size.height << "\n";
  out << "blocks: " << info.block.width << " x " << info.block.height << "\n";
  out << "crs: " << (info.crs.empty() ? "none" : info.crs) << "\n";
  out << "geotransform:";
  if (!info.transform)
    out << " none";
  else
    for (const double value : *info.transform)
      out << " " << engine::NumberText(value);
  out << "\n";
  for (const engine::BandInfo& band : info.bands) {
    out << "band " << band.number << ": " << band.type << ", nodata "
        << (band.noData ? engine::NumberText(*band.noData) : "none") << ", mask " << flagsText(band.maskFlags)
        << ", " << conditionName(band.condition) << (band.alpha ? ", alpha" : "");
    if (!band.description.empty())
      out << ", " << band.description;
    out << "\n";
  }
  return out.str();
}

std::string InfoJson(const engine::RasterInfo& info) {
  nlohmann::ordered_json json;
  json["file"] = info.path;
  json["format"] = info.driver;
  json["width"] = info.size.width;
  json["height"] = info.size.height;
  json["block"] = {info.block.width, info.block.height};
  json["crs"] = info.crs.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(info.crs);
  json["geotransform"] = info.transform ? nlohmann::ordered_json(*info.transform) : nlohmann::ordered_json();
  json["bands"] = nlohmann::ordered_json::array();
  for (const engine::BandInfo& band : info.bands) {
    nlohmann::ordered_json item;
    item["band"] = band.number;
    item["type"] = band.type;
    if (!band.noData)
      item["nodata"] = nullptr;
    else if (std::isfinite(*band.noData))
      item["nodata"] = *band.noData;
    else
      item["nodata"] = engine::NumberText(*band.noData);
    item["mask_flags"] = band.maskFlags;
    item["alpha"] = band.alpha;
    item["description"] = band.description;
    item["condition"] = conditionName(band.condition);
    json["bands"].push_back(item);
  }
  // A name that is not UTF-8 must not keep the rest from being told.
  return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace quent::rasterops::cli
