#include "engine/bandlabels.h"

#include "engine/inputraster.h"
#include "engine/pixeltypes.h"

namespace quent::rasterops::engine {

namespace {

BandLabel readLabel(GDALRasterBand& band, bool keepsValues, bool keepsClasses) {
  BandLabel label;
  label.description = band.GetDescription();
  if (!keepsValues)
    return label;
  label.unit = band.GetUnitType();
  int present = 0;
  const double scale = band.GetScale(&present);
  if (present)
    label.scale = scale;
  const double offset = band.GetOffset(&present);
  if (present)
    label.offset = offset;
  if (!keepsClasses)
    return label;
  if (const GDALColorTable* table = band.GetColorTable())
    label.colours.reset(table->Clone());
  if (char** const names = band.GetCategoryNames())
    for (char** name = names; *name; ++name)
      label.categories.emplace_back(*name);
  return label;
}

bool isColour(GDALDataset& dataset, const std::vector<InputBand>& bands) {
  constexpr GDALColorInterp wanted[] = {GCI_RedBand, GCI_GreenBand, GCI_BlueBand};
  if (bands.size() != 3)
    return false;
  for (std::size_t i = 0; i < 3; ++i)
    if (dataset.GetRasterBand(bands[i].number)->GetColorInterpretation() != wanted[i])
      return false;
  return true;
}

} // namespace

BandLabels LabelsThatHold(const InputRaster& input, catalogue::Meaning meaning, Rbuf_PixelType outputType,
                          long outputBands) {
  BandLabels labels;
  GDALDataset* const dataset = input.Dataset();
  if (meaning == catalogue::Meaning::New || !dataset ||
      static_cast<long>(input.Bands().size()) != outputBands)
    return labels;
  const bool keepsValues = meaning == catalogue::Meaning::Kept;
  // Class numbers survive where no value can saturate.
  const bool keepsClasses = keepsValues && IsInteger(outputType) && IsInteger(input.NativeType()) &&
                            UnionType({input.NativeType(), outputType}) == outputType;
  for (const InputBand& band : input.Bands())
    labels.bands.push_back(readLabel(*dataset->GetRasterBand(band.number), keepsValues, keepsClasses));
  labels.isColour = keepsValues && isColour(*dataset, input.Bands());
  return labels;
}

std::string StoreLabel(const BandLabel& label, GDALRasterBand& band) {
  std::string refused;
  const auto note = [&refused](CPLErr result, const char* what) {
    if (result != CE_None)
      refused += (refused.empty() ? "" : ", ") + std::string(what);
  };
  if (!label.description.empty())
    band.SetDescription(label.description.c_str());
  if (!label.unit.empty())
    note(band.SetUnitType(label.unit.c_str()), "unit");
  if (label.scale)
    note(band.SetScale(*label.scale), "scale");
  if (label.offset)
    note(band.SetOffset(*label.offset), "offset");
  if (label.colours) {
    const std::unique_ptr<GDALColorTable> table(label.colours->Clone());
    note(band.SetColorTable(table.get()), "colour table");
  }
  if (!label.categories.empty()) {
    std::vector<char*> names;
    for (const std::string& name : label.categories)
      names.push_back(const_cast<char*>(name.c_str())); // copied, never written to
    names.push_back(nullptr);
    note(band.SetCategoryNames(names.data()), "class names");
  }
  return refused;
}

} // namespace quent::rasterops::engine
