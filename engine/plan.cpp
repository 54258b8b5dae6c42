#include "engine/plan.h"

#include "engine/errors.h"
#include "engine/pixeltypes.h"
#include "engine/planmemory.h"

#include <algorithm>
#include <stdexcept>

namespace quent::rasterops::engine {

namespace {

using catalogue::PixelTypeName;

std::string text(Size size) {
  return std::to_string(size.width) + " x " + std::to_string(size.height);
}

/// Opens the files first: they tell the type of the values.
std::vector<InputRaster> openInputs(const Request& request) {
  std::vector<InputRaster> files;
  for (const InputRequest& input : request.inputs)
    if (!input.path.empty())
      files.emplace_back(input, request.readAs).CheckOneBuffer();
  if (files.empty())
    throw UsageError("at least one input must be a raster; give a file in place of a value");
  const Rbuf_PixelType type = files.front().Type();
  std::vector<InputRaster> inputs;
  std::size_t next = 0;
  for (std::size_t i = 0; i < request.inputs.size(); ++i) {
    if (request.inputs[i].path.empty())
      inputs.emplace_back(request.inputs[i], "--" + request.op->inputs[i].name + "-value", type);
    else
      inputs.push_back(std::move(files[next++]));
  }
  return inputs;
}

void checkTypes(const catalogue::Operator& op, const std::vector<InputRaster>& inputs) {
  for (const InputRaster& input : inputs) {
    if (std::find(op.inputTypes.begin(), op.inputTypes.end(), input.Type()) == op.inputTypes.end())
      throw InputError(input.Path() + ": " + op.name + " does not take " + PixelTypeName(input.Type()) +
                       "; read it as another type by --as");
    if (op.inputsShareType && input.Type() != inputs.front().Type())
      throw InputError(input.Path() + ": is " + PixelTypeName(input.Type()) + ", but " +
                       inputs.front().Path() + " is " + PixelTypeName(inputs.front().Type()) +
                       "; read both as one type, for instance by --as F32");
  }
}

/// The common size of all inputs that are no single values, and what they together tell of their place.
Size checkGrids(const catalogue::Operator& op, const std::vector<InputRaster>& inputs, Georeference& place) {
  const InputRaster* main = nullptr;
  for (const InputRaster& input : inputs)
    if (!main || main->RasterSize() == Size{1, 1})
      main = &input;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const InputRaster& input = inputs[i];
    const bool oneValue = input.RasterSize() == Size{1, 1} && op.inputs[i].acceptsOneValue;
    if (input.RasterSize() != main->RasterSize() && !oneValue)
      throw InputError(input.Path() + ": has " + text(input.RasterSize()) + " pixels, but " + main->Path() +
                       " has " + text(main->RasterSize()) + "; bring both to one grid, as by gdalwarp");
  }
  const InputRaster* placed = nullptr;
  for (const InputRaster& input : inputs) {
    if (input.RasterSize() != main->RasterSize() || input.Place().Empty())
      continue;
    const std::string difference = place.Difference(input.Place(), main->RasterSize());
    if (!difference.empty())
      throw InputError(input.Path() + ": lies elsewhere than " + placed->Path() + " (" + difference +
                       "); bring both to one grid, as by gdalwarp");
    place.Complete(input.Place());
    if (!placed)
      placed = &input;
  }
  return main->RasterSize();
}

long outputBands(const catalogue::Operator& op, const std::vector<InputRaster>& inputs) {
  std::vector<long> counts;
  std::string message;
  for (const InputRaster& input : inputs) {
    counts.push_back(static_cast<long>(input.Bands().size()));
    message += (message.empty() ? "" : " against ") + std::to_string(counts.back());
  }
  const long bands = op.outputBands(counts);
  if (bands < 1)
    throw InputError(inputs.back().Path() + ": " + op.name + " cannot match " + message +
                     " bands; select as many of each, or one");
  return bands;
}

std::optional<double> firstNoData(const std::vector<InputRaster>& inputs) {
  for (const InputRaster& input : inputs)
    for (const InputBand& band : input.Bands())
      if (band.noData)
        return DecodeValue(*band.noData, input.NativeType());
  return std::nullopt;
}

} // namespace

RunPlan MakePlan(const Request& request) {
  RunPlan plan;
  const catalogue::Operator& op = *request.op;
  plan.op = request.op;
  try {
    plan.arguments = catalogue::Arguments::Parse(op, request.parameters);
  } catch (const std::invalid_argument& e) {
    throw UsageError(e.what());
  }
  plan.inputs = openInputs(request);
  checkTypes(op, plan.inputs);
  plan.halo = op.halo(plan.arguments);
  OutputShape& shape = plan.output.shape;
  shape.size = checkGrids(op, plan.inputs, plan.output.place);
  shape.bands = outputBands(op, plan.inputs);
  std::vector<Rbuf_PixelType> types;
  for (const InputRaster& input : plan.inputs)
    types.push_back(input.Type());
  plan.resultType = op.outputType(types, plan.arguments);
  shape.type = request.writeAs.value_or(plan.resultType);
  const auto first = std::find_if(plan.inputs.begin(), plan.inputs.end(),
                                  [](const InputRaster& input) { return !input.IsValue(); });
  plan.output.labels = LabelsThatHold(*first, op.meaning, shape.type, shape.bands);
  shape.isColour = plan.output.labels.isColour;
  plan.output.request = request.output;
  plan.output.noData = PlanNoData(request.noData, shape.type, op.outputAllValid, firstNoData(plan.inputs));
  plan.format = std::make_unique<OutputFormat>(request.output, shape);
  PlanMemory(request, plan);
  return plan;
}

} // namespace quent::rasterops::engine
