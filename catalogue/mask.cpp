#include "catalogue/operators.h"
#include "rasterops/pixelblock.h"

#include <cstring>

namespace quent::rasterops::catalogue {

namespace {

void writeMask(const tilx::IPixelBlock& input, tilx::IPixelBlock& output, long plane) {
  const _Rbuf_BaseData* const target = output.getPlaneData(plane);
  const tilx::DataContentsCondition condition = input.getCondition(plane);
  const bool uniform = condition == tilx::ALLDATA || condition == tilx::NODATA;
  const _Rbuf_BaseData* const mask = uniform ? nullptr : input.getMaskData(plane);
  const auto width = static_cast<std::size_t>(target->columns);
  for (std::ptrdiff_t row = 0; row < target->rows; ++row) {
    unsigned char* const to = target->data + row * target->pitch;
    if (mask)
      std::memcpy(to, mask->data + row * mask->pitch, width);
    else
      std::memset(to, condition == tilx::ALLDATA ? 255 : 0, width);
  }
  output.setCondition(plane, tilx::ALLDATA);
}

void runTile(const std::vector<Operator::Block>& inputs, const Operator::Block& output, const Arguments&) {
  for (long plane = 0; plane < output->getNumOfPlanes(); ++plane)
    writeMask(*inputs[0], *output, plane);
}

} // namespace

Operator DescribeMask() {
  Operator op;
  op.name = "mask";
  op.summary = "Write the validity mask of a raster: 255 is valid, 0 is not";
  op.details =
      "Shows what every operator sees of the raster's NODATA value, mask or alpha band. The output has "
      "one band for each input band and no NODATA value of its own.";
  op.inputs = {{"input", "raster whose mask is wanted"}};
  op.inputTypes = AllPixelTypes();
  op.outputTypeRule = "U8";
  op.outputType = [](const std::vector<Rbuf_PixelType>&, const Arguments&) { return U8; };
  op.outputBandsRule = "as many as the input has";
  op.outputBands = BroadcastBands;
  op.halo = NoHalo;
  op.meaning = Meaning::OfBands;
  op.outputAllValid = true;
  op.runTile = runTile;
  return op;
}

} // namespace quent::rasterops::catalogue
