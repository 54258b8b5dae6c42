/// \file
/// Derives the mask of a plane from its NODATA fill.
#pragma once

#include "rasterops/datacontentscondition.h"
#include "rcommon/rbuf.h"

#include <boost/shared_array.hpp>
#include <boost/shared_ptr.hpp>

namespace tilx {

/// Writes a mask that is 0 where a pixel equals the NODATA value and 255 elsewhere.
///
/// Integers are equal by value. F32 and F64 are equal by floating comparison, so that -0.0 equals 0.0; a
/// NaN value matches every NaN pixel. C64 and C128 are equal by their bits. An incoming #NODATA or
/// #ALLDATA gives a uniform mask and no pixel is read.
///
/// Threads: stateless; runs on different masks may go on at once.
class RASTEROPS_API ComputeMask {
public:
  /// What a run reads and writes. All members are null at first.
  class RASTEROPS_API ComputeMaskParams {
  public:
    /// The plane, read.
    void SetPixelBlock(const boost::shared_ptr<_Rbuf_BaseData>& plane) { m_PixelBlock = plane; }
    boost::shared_ptr<_Rbuf_BaseData> GetPixelBlock() const { return m_PixelBlock; }
    /// The mask, U8, of the plane's size, written.
    void SetMaskBlock(const boost::shared_ptr<_Rbuf_BaseData>& mask) { m_MaskBlock = mask; }
    boost::shared_ptr<_Rbuf_BaseData> GetMaskBlock() const { return m_MaskBlock; }
    /// One pixel of the plane's type, or null.
    void SetNODATAValue(const boost::shared_array<unsigned char>& value) { m_NODATAValue = value; }
    boost::shared_array<unsigned char> GetNODATAValue() const { return m_NODATAValue; }
    /// In: what is known of the plane. Out: what the mask says.
    void SetDataCondition(const boost::shared_ptr<DataContentsCondition>& condition) {
      m_DataCondition = condition;
    }
    boost::shared_ptr<DataContentsCondition> GetDataCondition() const { return m_DataCondition; }

  private:
    boost::shared_ptr<_Rbuf_BaseData> m_PixelBlock;
    boost::shared_ptr<_Rbuf_BaseData> m_MaskBlock;
    boost::shared_array<unsigned char> m_NODATAValue;
    boost::shared_ptr<DataContentsCondition> m_DataCondition;
  };

  virtual ~ComputeMask();
  virtual boost::shared_ptr<ComputeMaskParams> CreateParams();
  /// True, or an exception. Without a NODATA value every pixel is valid, unless #NODATA comes in.
  /// \throws QuentLog::CPPException<std::runtime_error> "Unsupported PixelType"; or naming the member
  /// that is missing or of the wrong size
  bool operator()(boost::shared_ptr<ComputeMaskParams> params);
};

} // namespace tilx
