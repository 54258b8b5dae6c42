/// \file
/// Values of an operator's parameters.
#pragma once

#include "catalogue/api.h"
#include "rcommon/rbuf.h"

#include <map>
#include <string>
#include <variant>

namespace quent::rasterops::catalogue {

struct Operator;

/// The values of one run by parameter name: every parameter of the operator has one.
class RASTEROPS_ENGINE_API Arguments {
public:
  /// Reads typed values and takes defaults for the rest.
  /// \throws std::invalid_argument naming the parameter that is missing, unknown or out of range
  static Arguments Parse(const Operator& op, const std::map<std::string, std::string>& typed);

  double Number(const std::string& name) const { return std::get<double>(m_Values.at(name)); }
  long Integer(const std::string& name) const { return std::get<long>(m_Values.at(name)); }
  const std::string& Choice(const std::string& name) const {
    return std::get<std::string>(m_Values.at(name));
  }
  Rbuf_PixelType PixelType(const std::string& name) const {
    return std::get<Rbuf_PixelType>(m_Values.at(name));
  }

private:
  std::map<std::string, std::variant<double, long, std::string, Rbuf_PixelType>> m_Values;
};

/// The pixel type of a name such as "u16", in any case.
/// \throws std::invalid_argument listing the names there are
RASTEROPS_ENGINE_API Rbuf_PixelType ParsePixelType(const std::string& name);
/// "U1" to "C128".
RASTEROPS_ENGINE_API std::string PixelTypeName(Rbuf_PixelType type);

} // namespace quent::rasterops::catalogue
