/// \file
/// Divides one block by another.
#pragma once

#include "devicehost/gpuoperation.h"
#include "rasterops/ipixelblock.h"

#include <boost/shared_ptr.hpp>

namespace quent {
namespace rasterops {

/// Parameters of Divide. All are null at first; setters and getters share the block.
class RASTEROPS_API DivideParams : public gpu::GPUOperation::Parameters {
public:
  ~DivideParams() override;

  /// The numerator, read.
  void SetDividendBlock(const boost::shared_ptr<tilx::IPixelBlock>& block) { m_DividendBlock = block; }
  boost::shared_ptr<tilx::IPixelBlock> GetDividendBlock() const { return m_DividendBlock; }
  /// The denominator, read; of the dividend's pixel type.
  void SetDivisorBlock(const boost::shared_ptr<tilx::IPixelBlock>& block) { m_DivisorBlock = block; }
  boost::shared_ptr<tilx::IPixelBlock> GetDivisorBlock() const { return m_DivisorBlock; }
  /// Filled in place: same pixel type, as many planes as the larger input, at least its size.
  void SetResultBlock(const boost::shared_ptr<tilx::IPixelBlock>& block) { m_ResultBlock = block; }
  boost::shared_ptr<tilx::IPixelBlock> GetResultBlock() { return m_ResultBlock; }

private:
  boost::shared_ptr<tilx::IPixelBlock> m_DividendBlock;
  boost::shared_ptr<tilx::IPixelBlock> m_DivisorBlock;
  boost::shared_ptr<tilx::IPixelBlock> m_ResultBlock;
};

/// Divides pixel by pixel, in all 13 pixel types.
///
/// - A one-plane input is applied to all planes of the other; an input of one pixel to all pixels.
/// - A pixel is valid if both inputs are and the divisor is not zero. Invalid pixels keep what the result
///   held, or get its NODATA value if it has one. A plane of which both inputs are #tilx::NODATA gets
///   that condition and is not written at all.
/// - Integers truncate toward zero and keep their low bits: -128 / -1 gives -128, and -2147483648 / -1
///   gives -2147483648. Floats divide by IEEE rules; -0.0 is zero and NaN is not; a NaN or an infinity
///   that comes out is valid.
/// - C64 and C128: (p + qi) / (c + di) is ((pc + qd) + (qc - pd)i) / (cc + dd), without rescaling. A NaN
///   that comes out is the quiet NaN, so that its bits do not depend on the processor.
///
/// Threads: runs on the calling thread. Runs with different results may go on at once.
class RASTEROPS_API Divide : public gpu::GPUOperation {
public:
  Divide();
  ~Divide() override;

  /// A new DivideParams.
  boost::shared_ptr<Parameters> CreateParams() override;
  /// \throws QuentLog::CPPException<std::runtime_error> "Data types for divide must match!";
  /// "Unsupported DataType"; or naming a block that is missing or does not fit
  /// \throws RfaultException when an input's mask cannot be computed
  bool runOnCPU(boost::shared_ptr<Parameters> params) override;
  /// Runs. True, or an exception as of runOnCPU().
  bool operator()(boost::shared_ptr<Parameters> params);
};

} // namespace rasterops
} // namespace quent
