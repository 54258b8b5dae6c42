// Divides one small block by another, as a program outside the project would.
#include <rasterops/pixelblock.h>

#include <rasterops/divide.h>

#include <boost/make_shared.hpp>

#include <cstdio>
#include <vector>

using quent::rasterops::Divide;
using quent::rasterops::DivideParams;
using tilx::PixelBlock;

namespace {

int failures = 0;

void Check(bool ok, const char* what) {
  if (!ok) {
    std::printf("FAILED: %s\n", what);
    ++failures;
  }
}

/// A block over the caller's pixels, two rows of three, in which -1 is NODATA.
boost::shared_ptr<PixelBlock> Wrap(std::vector<float>& pixels) {
  float value = -1.0F;
  unsigned char* noData[] = {reinterpret_cast<unsigned char*>(&value)};
  const long columns = 3;
  const long rows = 2;
  const long pitch = columns * static_cast<long>(sizeof(float));
  return boost::make_shared<PixelBlock>(1L, columns, rows, Rbuf_PixelType::F32,
                                        reinterpret_cast<unsigned char*>(pixels.data()), pitch * rows, pitch,
                                        noData);
}

boost::shared_ptr<DivideParams> Params(Divide& divide, const boost::shared_ptr<PixelBlock>& dividend,
                                       const boost::shared_ptr<PixelBlock>& divisor,
                                       const boost::shared_ptr<PixelBlock>& result) {
  auto params = boost::dynamic_pointer_cast<DivideParams>(divide.CreateParams());
  params->SetDividendBlock(dividend);
  params->SetDivisorBlock(divisor);
  params->SetResultBlock(result);
  return params;
}

void DividesAroundNodata() {
  std::vector<float> dividend{8.0F, -1.0F, 3.0F, 1.0F, 9.0F, 0.0F};
  std::vector<float> divisor{2.0F, 4.0F, 0.0F, 4.0F, -1.0F, 5.0F};
  std::vector<float> quotient(6, 7.0F);
  const auto result = Wrap(quotient);
  Divide divide;
  Check(divide(Params(divide, Wrap(dividend), Wrap(divisor), result)), "the run succeeds");

  const std::vector<float> expected{4.0F, -1.0F, -1.0F, 0.25F, -1.0F, 0.0F};
  Check(quotient == expected, "quotients where both are valid, NODATA elsewhere and for a zero divisor");
  Check(result->getCondition(0) == tilx::SOMEDATA, "the result knows that some pixels are invalid");

  const auto mask = result->getMaskAccessor(0, true);
  const unsigned char valid[2][3] = {{255, 0, 0}, {255, 0, 255}};
  for (int row = 0; row < 2; ++row) {
    const auto* bytes = static_cast<const unsigned char*>(mask->GetRowPtr(row));
    for (int column = 0; column < 3; ++column) {
      Check(bytes[column] == valid[row][column], "the mask says which pixels are valid");
    }
  }
}

void RefusesMixedTypes() {
  std::vector<float> pixels(6, 1.0F);
  const auto other = boost::make_shared<PixelBlock>(1L, 3L, 2L, Rbuf_PixelType::U16, nullptr);
  Divide divide;
  bool raised = false;
  try {
    divide(Params(divide, Wrap(pixels), other, Wrap(pixels)));
  } catch (const QuentLog::CPPException<std::runtime_error>& failure) {
    raised = std::string(failure.what()) == "Data types for divide must match!";
  }
  Check(raised, "blocks of different types are refused, and the exception crosses the library's border");
}

} // namespace

int main() {
  DividesAroundNodata();
  RefusesMixedTypes();
  if (failures == 0) {
    std::printf("consumer: all checks passed (C++ %ld)\n", static_cast<long>(__cplusplus));
  }
  return failures == 0 ? 0 : 1;
}
