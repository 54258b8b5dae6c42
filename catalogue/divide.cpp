#include "rasterops/divide.h"

#include "catalogue/operators.h"

#include <boost/pointer_cast.hpp>

namespace quent::rasterops::catalogue {

namespace {

void runTile(const std::vector<Operator::Block>& inputs, const Operator::Block& output, const Arguments&) {
  Divide divide;
  const auto params = boost::dynamic_pointer_cast<DivideParams>(divide.CreateParams());
  params->SetDividendBlock(inputs[0]);
  params->SetDivisorBlock(inputs[1]);
  params->SetResultBlock(output);
  divide(params);
}

} // namespace

Operator DescribeDivide() {
  Operator op;
  op.name = "divide";
  op.summary = "Divide one raster by another, pixel by pixel";
  op.details =
      "A pixel is valid if both inputs are and the divisor is not zero. Integers truncate toward zero; "
      "read them with --as F32 for a ratio with fractions. Floats divide by IEEE rules, so a NaN or "
      "an infinity that comes out is valid. An input of one band goes with all bands of the other.";
  op.inputs = {{"dividend", "raster that is divided", true},
               {"divisor", "raster that it is divided by", true}};
  op.inputTypes = AllPixelTypes();
  op.outputTypeRule = "that of the inputs";
  op.outputType = [](const std::vector<Rbuf_PixelType>& types, const Arguments&) { return types[0]; };
  op.outputBandsRule = "as many as the input with more bands";
  op.outputBands = BroadcastBands;
  op.halo = NoHalo;
  op.meaning = Meaning::New;
  op.runTile = runTile;
  return op;
}

} // namespace quent::rasterops::catalogue
