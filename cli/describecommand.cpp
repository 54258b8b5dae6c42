#include "cli/describecommand.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace quent::rasterops::cli {

namespace {

using catalogue::Operator;
using catalogue::Parameter;

const char* kindName(Parameter::Kind kind) {
  switch (kind) {
  case Parameter::Kind::Number:
    return "number";
  case Parameter::Kind::Integer:
    return "integer";
  case Parameter::Kind::Choice:
    return "choice";
  case Parameter::Kind::PixelType:
    return "pixel type";
  }
  return "";
}

const char* gridName(catalogue::OutputGrid grid) {
  switch (grid) {
  case catalogue::OutputGrid::SameAsInputs:
    return "same as inputs";
  }
  return "";
}

/// The halo with all parameters at their defaults; none if it depends on one that must be given.
std::optional<catalogue::Halo> usualHalo(const Operator& op) {
  const bool complete = std::all_of(op.parameters.begin(), op.parameters.end(),
                                    [](const Parameter& p) { return !p.defaultValue.empty(); });
  try {
    return op.halo(complete ? catalogue::Arguments::Parse(op, {}) : catalogue::Arguments());
  } catch (const std::out_of_range&) {
    return std::nullopt;
  }
}

std::string haloText(const Operator& op) {
  const auto halo = usualHalo(op);
  if (!halo)
    return "depends on the parameters";
  return "left " + std::to_string(halo->left) + ", top " + std::to_string(halo->top) + ", right " +
         std::to_string(halo->right) + ", bottom " + std::to_string(halo->bottom);
}

std::string typesText(const Operator& op) {
  std::string text;
  for (const Rbuf_PixelType type : op.inputTypes)
    text += (text.empty() ? "" : " ") + catalogue::PixelTypeName(type);
  return text;
}

} // namespace

std::string ListText() {
  std::size_t width = 0;
  for (const Operator& op : catalogue::Operators())
    width = std::max(width, op.name.size());
  std::string text;
  for (const Operator& op : catalogue::Operators())
    text += op.name + std::string(width - op.name.size() + 2, ' ') + op.summary + "\n";
  return text;
}

std::string DescriptionText(const Operator& op) {
  std::ostringstream out;
  out << op.name << ": " << op.summary << "\n\n" << op.details << "\n\ninputs:\n";
  for (const catalogue::Input& input : op.inputs)
    out << "  " << input.name << ": " << input.help << (input.acceptsOneValue ? "; may be one value" : "")
        << "\n";
  if (!op.parameters.empty())
    out << "parameters:\n";
  for (const Parameter& parameter : op.parameters) {
    out << "  --" << parameter.name << ": " << parameter.help << " (" << kindName(parameter.kind);
    if (!parameter.unit.empty())
      out << ", " << parameter.unit;
    if (parameter.least < parameter.most)
      out << ", " << parameter.least << " to " << parameter.most;
    for (const std::string& choice : parameter.choices)
      out << (&choice == &parameter.choices.front() ? ": " : "|") << choice;
    out << (parameter.defaultValue.empty() ? ", required)" : ", default " + parameter.defaultValue + ")")
        << "\n";
  }
  out << "input types: " << typesText(op) << (op.inputsShareType && op.inputs.size() > 1 ? ", all alike" : "")
      << "\n";
  out << "output type: " << op.outputTypeRule << "\n";
  out << "output bands: " << op.outputBandsRule << "\n";
  out << "output grid: " << gridName(op.outputGrid) << "\n";
  out << "halo: " << haloText(op) << "\n";
  return out.str();
}

std::string DescriptionJson(const Operator& op) {
  nlohmann::ordered_json json;
  json["name"] = op.name;
  json["summary"] = op.summary;
  json["details"] = op.details;
  json["inputs"] = nlohmann::ordered_json::array();
  for (const catalogue::Input& input : op.inputs)
    json["inputs"].push_back(
        {{"name", input.name}, {"help", input.help}, {"accepts_one_value", input.acceptsOneValue}});
  json["parameters"] = nlohmann::ordered_json::array();
  for (const Parameter& parameter : op.parameters) {
    nlohmann::ordered_json item = {{"name", parameter.name},
                                   {"kind", kindName(parameter.kind)},
                                   {"help", parameter.help},
                                   {"required", parameter.defaultValue.empty()}};
    if (!parameter.unit.empty())
      item["unit"] = parameter.unit;
    if (!parameter.defaultValue.empty())
      item["default"] = parameter.defaultValue;
    if (parameter.least < parameter.most)
      item["range"] = {parameter.least, parameter.most};
    if (!parameter.choices.empty())
      item["choices"] = parameter.choices;
    json["parameters"].push_back(item);
  }
  json["input_types"] = nlohmann::ordered_json::array();
  for (const Rbuf_PixelType type : op.inputTypes)
    json["input_types"].push_back(catalogue::PixelTypeName(type));
  json["inputs_share_type"] = op.inputsShareType;
  json["output_type"] = op.outputTypeRule;
  json["output_bands"] = op.outputBandsRule;
  json["output_grid"] = gridName(op.outputGrid);
  json["output_all_valid"] = op.outputAllValid;
  if (const auto halo = usualHalo(op))
    json["halo"] = {
        {"left", halo->left}, {"top", halo->top}, {"right", halo->right}, {"bottom", halo->bottom}};
  return json.dump(2) + "\n";
}

} // namespace quent::rasterops::cli
