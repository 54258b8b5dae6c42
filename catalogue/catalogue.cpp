#include "catalogue/catalogue.h"

#include "catalogue/operators.h"

#include <algorithm>

namespace quent::rasterops::catalogue {

const std::vector<Operator>& Operators() {
  static const std::vector<Operator> operators = {DescribeConvert(), DescribeDivide(), DescribeMask()};
  return operators;
}

const Operator* FindOperator(const std::string& name) {
  const std::vector<Operator>& all = Operators();
  const auto found =
      std::find_if(all.begin(), all.end(), [&name](const Operator& op) { return op.name == name; });
  return found == all.end() ? nullptr : &*found;
}

std::vector<Rbuf_PixelType> AllPixelTypes() {
  return {U1, U2, U4, U8, S8, U16, S16, U32, S32, F32, F64, C64, C128};
}

Halo NoHalo(const Arguments&) {
  return {};
}

long BroadcastBands(const std::vector<long>& bands) {
  const long most = *std::max_element(bands.begin(), bands.end());
  const bool fit = std::all_of(bands.begin(), bands.end(), [most](long n) { return n == 1 || n == most; });
  return fit ? most : 0;
}

} // namespace quent::rasterops::catalogue
