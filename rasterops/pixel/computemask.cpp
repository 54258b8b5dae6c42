// mask = pixel equals the NODATA value ? 0 : 255; a stated condition gives a uniform mask unseen.
#include "rasterops/computemask.h"

#include "rasterops/frame/failure.h"
#include "rasterops/pixel/mask_kernels.h"
#include "rasterops/pixel/planerows.h"

#include <boost/make_shared.hpp>

namespace tilx {

namespace {

constexpr char file[] = "computemask";
constexpr char function[] = "tilx::ComputeMask::operator ()";

void check(const ComputeMask::ComputeMaskParams* params) {
  if (!params || !params->GetPixelBlock() || !params->GetMaskBlock() || !params->GetDataCondition())
    quent::rasterops::Raise(file, function,
                            "ComputeMask: pixel block, mask block and data condition must be set");
  const _Rbuf_BaseData& plane = *params->GetPixelBlock();
  const _Rbuf_BaseData& mask = *params->GetMaskBlock();
  if (plane.pixelType < 0 || plane.pixelType >= rbuf_PixelTypeCount)
    quent::rasterops::Raise(file, function, "Unsupported PixelType");
  if (mask.pixelBytes != 1 || mask.rows != plane.rows || mask.columns != plane.columns)
    quent::rasterops::Raise(file, function,
                            "ComputeMask: the mask block must be U8 and of the pixel block's size");
}

} // namespace

ComputeMask::~ComputeMask() = default;

boost::shared_ptr<ComputeMask::ComputeMaskParams> ComputeMask::CreateParams() {
  return boost::make_shared<ComputeMaskParams>();
}

bool ComputeMask::operator()(boost::shared_ptr<ComputeMaskParams> params) {
  check(params.get());
  const _Rbuf_BaseData& plane = *params->GetPixelBlock();
  const _Rbuf_BaseData& mask = *params->GetMaskBlock();
  const boost::shared_array<unsigned char> value = params->GetNODATAValue();
  DataContentsCondition& condition = *params->GetDataCondition();

  if (!value && condition != NODATA)
    condition = ALLDATA;
  if (condition == NODATA || condition == ALLDATA)
    FillMask(mask, condition == ALLDATA ? 255 : 0);
  else
    condition = kernels::MaskFromNODATA(plane, value.get(), mask).Condition(UNKNOWN);
  return true;
}

} // namespace tilx
