// composite = byte minimum of all masks. Only the last mask's pass looks at the result.
#include "rasterops/computecompositemask.h"

#include "rasterops/frame/failure.h"
#include "rasterops/pixel/mask_kernels.h"
#include "rasterops/pixel/planerows.h"

#include <boost/make_shared.hpp>

namespace tilx {

namespace {

constexpr char file[] = "computecompositemask";
constexpr char function[] = "tilx::ComputeCompositeMask::operator ()";

void check(const ComputeCompositeMask::ComputeCompositeMaskParams* params) {
  if (!params || !params->GetCompositeMask() || !params->GetDataCondition())
    quent::rasterops::Raise(file, function,
                            "ComputeCompositeMask: composite mask and data condition must be set");
  const _Rbuf_BaseData& composite = *params->GetCompositeMask();
  if (composite.pixelBytes != 1)
    quent::rasterops::Raise(file, function, "ComputeCompositeMask: the composite mask must be U8");
  if (params->GetMaskArraySize() > 0 && !params->GetMaskArray())
    quent::rasterops::Raise(file, function, "ComputeCompositeMask: the mask array must be set");
  for (long i = 0; i < params->GetMaskArraySize(); ++i) {
    const boost::shared_ptr<_Rbuf_BaseData> mask = params->GetMaskArray()[i];
    if (!mask || mask->pixelBytes != 1 || mask->rows > composite.rows || mask->columns > composite.columns)
      quent::rasterops::Raise(file, function,
                              "ComputeCompositeMask: mask " + std::to_string(i) +
                                  " must be U8 and no larger than the composite mask");
  }
}

} // namespace

ComputeCompositeMask::~ComputeCompositeMask() = default;

boost::shared_ptr<ComputeCompositeMask::ComputeCompositeMaskParams> ComputeCompositeMask::CreateParams() {
  return boost::make_shared<ComputeCompositeMaskParams>();
}

bool ComputeCompositeMask::operator()(boost::shared_ptr<ComputeCompositeMaskParams> params) {
  check(params.get());
  const _Rbuf_BaseData& composite = *params->GetCompositeMask();
  const long count = params->GetMaskArraySize();
  FillMask(composite, 255);
  for (long i = 0; i + 1 < count; ++i)
    kernels::MinimumInto(composite, *params->GetMaskArray()[i]);
  kernels::Seen seen;
  if (count > 0)
    seen = kernels::MinimumIntoAndLook(composite, *params->GetMaskArray()[count - 1]);
  *params->GetDataCondition() = seen.Condition(UNKNOWN);
  return true;
}

} // namespace tilx
