#include "catalogue/operators.h"
#include "rasterops/pixelblock.h"

namespace quent::rasterops::catalogue {

namespace {

/// PixelBlock::Convert(), into a block that is there already.
void runTile(const std::vector<Operator::Block>& inputs, const Operator::Block& output, const Arguments&) {
  for (long plane = 0; plane < output->getNumOfPlanes(); ++plane)
    output->setPlaneFromPixelBlock(plane, *inputs[0], plane);
}

} // namespace

Operator DescribeConvert() {
  Operator op;
  op.name = "convert";
  op.summary = "Write a raster in another pixel type";
  op.details = "Integers saturate at the range of the new type; floats round half away from zero, and NaN "
               "becomes 0. Complex to real takes the real part. A pixel is valid if it was valid.";
  op.inputs = {{"input", "raster to convert"}};
  Parameter type;
  type.name = "ot";
  type.kind = Parameter::Kind::PixelType;
  type.help = "pixel type of the output";
  op.parameters = {type};
  op.inputTypes = AllPixelTypes();
  op.outputTypeRule = "as told by --ot";
  op.outputType = [](const std::vector<Rbuf_PixelType>&, const Arguments& a) { return a.PixelType("ot"); };
  op.outputBandsRule = "as many as the input has";
  op.outputBands = BroadcastBands;
  op.halo = NoHalo;
  op.meaning = Meaning::Kept;
  op.runTile = runTile;
  return op;
}

} // namespace quent::rasterops::catalogue
