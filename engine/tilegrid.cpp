#include "engine/tilegrid.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

namespace quent::rasterops::engine {

namespace {

long side(std::string_view text, const std::string& all) {
  long value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size() || value < 1 || value > 0x7fffffff)
    throw std::invalid_argument("'" + all + "' is no tile size; give N, WxH, whole or auto");
  return value;
}

std::size_t pieces(long length, long piece) {
  return static_cast<std::size_t>((length + piece - 1) / piece);
}

} // namespace

TileGrid::TileGrid(Size raster, Size tile)
    : m_Raster(raster), m_Tile(tile), m_Across(pieces(raster.width, tile.width)),
      m_Down(pieces(raster.height, tile.height)) {}

Tile TileGrid::At(std::size_t index) const {
  const long x = static_cast<long>(index % m_Across) * m_Tile.width;
  const long y = static_cast<long>(index / m_Across) * m_Tile.height;
  return {x, y, std::min(m_Tile.width, m_Raster.width - x), std::min(m_Tile.height, m_Raster.height - y)};
}

TileRequest ParseTileRequest(const std::string& text) {
  if (text == "auto")
    return {};
  if (text == "whole")
    return {TileRequest::Kind::Whole, {}};
  const std::string_view view = text;
  const std::size_t cross = view.find('x');
  const long width = side(view.substr(0, cross), text);
  const long height = cross == std::string_view::npos ? width : side(view.substr(cross + 1), text);
  return {TileRequest::Kind::Fixed, {width, height}};
}

} // namespace quent::rasterops::engine
