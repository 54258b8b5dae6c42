#include "engine/plan.h"

#include <sstream>

namespace quent::rasterops::engine {

namespace {

using catalogue::PixelTypeName;

std::string bandsText(const InputRaster& input) {
  std::string text;
  for (const InputBand& band : input.Bands())
    text += (text.empty() ? "" : ",") + std::to_string(band.number);
  return text;
}

void writeInput(std::ostream& out, const std::string& name, const InputRaster& input) {
  out << name << ": ";
  if (input.IsValue()) {
    out << NumberText(DecodeValue(input.Value(), input.Type())) << " (" << PixelTypeName(input.Type())
        << " value)\n";
    return;
  }
  out << input.Path() << " (" << input.RasterSize().width << " x " << input.RasterSize().height << ", bands "
      << bandsText(input) << ", " << PixelTypeName(input.NativeType());
  if (input.Type() != input.NativeType())
    out << " read as " << PixelTypeName(input.Type());
  out << ")\n";
}

std::string noDataText(const NoDataPlan& plan) {
  switch (plan.kind) {
  case NoDataPlan::Kind::AllValid:
    return "none, all pixels are valid";
  case NoDataPlan::Kind::Value:
    return NumberText(plan.number);
  case NoDataPlan::Kind::Mask:
    break;
  }
  return "none, a mask for all bands if any pixel is invalid";
}

} // namespace

std::string PlanText(const RunPlan& plan) {
  std::ostringstream out;
  const OutputShape& shape = plan.output.shape;
  out << "operator: " << plan.op->name << "\n";
  for (std::size_t i = 0; i < plan.inputs.size(); ++i)
    writeInput(out, plan.op->inputs[i].name, plan.inputs[i]);
  out << "halo: left " << plan.halo.left << ", top " << plan.halo.top << ", right " << plan.halo.right
      << ", bottom " << plan.halo.bottom << "\n";
  out << "output: " << plan.output.request.path << " (" << plan.format->Name() << ")\n";
  out << "output size: " << shape.size.width << " x " << shape.size.height << "\n";
  out << "output bands: " << shape.bands << "\n";
  out << "output type: " << PixelTypeName(shape.type);
  if (shape.type != plan.resultType)
    out << " (from " << PixelTypeName(plan.resultType) << ")";
  out << "\noutput nodata: " << noDataText(plan.output.noData) << "\n";
  out << "tile: " << plan.tiles.tile.width << " x " << plan.tiles.tile.height << ", "
      << TileGrid(shape.size, plan.tiles.tile).Count() << " in all\n";
  out << "threads: " << plan.tiles.threads << "\n";
  out << "memory: " << MemorySizeText(plan.tiles.totalBytes) << " of " << MemorySizeText(plan.budget) << "\n";
  return out.str();
}

} // namespace quent::rasterops::engine
