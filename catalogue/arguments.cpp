#include "catalogue/arguments.h"

#include "catalogue/description.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace quent::rasterops::catalogue {

namespace {

std::string upper(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z')
      c = static_cast<char>(c - 'a' + 'A');
  return text;
}

template <class T> T number(const Parameter& parameter, const std::string& typed) {
  T value{};
  const char* const end = typed.data() + typed.size();
  const auto [stop, error] = std::from_chars(typed.data(), end, value);
  if (error != std::errc() || stop != end)
    throw std::invalid_argument("--" + parameter.name + ": '" + typed + "' is not a number");
  if (parameter.least < parameter.most) {
    const auto wide = static_cast<double>(value);
    if (!(wide >= parameter.least && wide <= parameter.most))
      throw std::invalid_argument("--" + parameter.name + ": " + typed + " is outside " +
                                  std::to_string(parameter.least) + " to " + std::to_string(parameter.most));
  }
  return value;
}

std::string choice(const Parameter& parameter, const std::string& typed) {
  if (std::find(parameter.choices.begin(), parameter.choices.end(), typed) != parameter.choices.end())
    return typed;
  std::string message = "--" + parameter.name + ": '" + typed + "' is none of";
  for (const std::string& name : parameter.choices)
    message += " " + name;
  throw std::invalid_argument(message);
}

} // namespace

Arguments Arguments::Parse(const Operator& op, const std::map<std::string, std::string>& typed) {
  for (const auto& [name, text] : typed)
    if (std::none_of(op.parameters.begin(), op.parameters.end(),
                     [&name = name](const Parameter& p) { return p.name == name; }))
      throw std::invalid_argument("--" + name + ": " + op.name + " has no such parameter");
  Arguments result;
  for (const Parameter& parameter : op.parameters) {
    const auto found = typed.find(parameter.name);
    const std::string text = found == typed.end() ? parameter.defaultValue : found->second;
    if (text.empty())
      throw std::invalid_argument("--" + parameter.name + " is missing: " + parameter.help);
    auto& value = result.m_Values[parameter.name];
    switch (parameter.kind) {
    case Parameter::Kind::Number:
      value = number<double>(parameter, text);
      break;
    case Parameter::Kind::Integer:
      value = number<long>(parameter, text);
      break;
    case Parameter::Kind::Choice:
      value = choice(parameter, text);
      break;
    case Parameter::Kind::PixelType:
      try {
        value = ParsePixelType(text);
      } catch (const std::invalid_argument& e) {
        throw std::invalid_argument("--" + parameter.name + ": " + e.what());
      }
      break;
    }
  }
  return result;
}

Rbuf_PixelType ParsePixelType(const std::string& name) {
  const std::string wanted = upper(name);
  std::string known;
  for (int type = 0; type < rbuf_PixelTypeCount; ++type) {
    const char* const candidate = rsys_AddressOf_rbuf_PixelTypeName()[type];
    if (wanted == candidate)
      return static_cast<Rbuf_PixelType>(type);
    known += std::string(" ") + candidate;
  }
  throw std::invalid_argument("'" + name + "' is no pixel type; there are" + known);
}

std::string PixelTypeName(Rbuf_PixelType type) {
  return rsys_AddressOf_rbuf_PixelTypeName()[type];
}

} // namespace quent::rasterops::catalogue
