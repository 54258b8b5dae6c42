/// \file
/// Combines several masks into one.
#pragma once

#include "rasterops/datacontentscondition.h"
#include "rcommon/rbuf.h"

#include <boost/shared_array.hpp>
#include <boost/shared_ptr.hpp>

namespace tilx {

/// Writes the byte minimum of all masks. A composite byte of 0 counts as invalid, 255 as valid, and any
/// other as both. Without masks the composite is all 255 and the condition #UNKNOWN.
///
/// Threads: stateless; runs on different composites may go on at once.
class RASTEROPS_API ComputeCompositeMask {
public:
  /// What a run reads and writes. All members are null or 0 at first.
  class RASTEROPS_API ComputeCompositeMaskParams {
  public:
    /// Number of masks.
    void SetMaskArraySize(long size) { m_MaskArraySize = size; }
    long GetMaskArraySize() const { return m_MaskArraySize; }
    /// The masks, U8, read.
    void SetMaskArray(const boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>>& masks) {
      m_MaskArray = masks;
    }
    boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>> GetMaskArray() const { return m_MaskArray; }
    /// The result, U8, of the size and pitch of the masks, written.
    void SetCompositeMask(const boost::shared_ptr<_Rbuf_BaseData>& mask) { m_CompositeMask = mask; }
    boost::shared_ptr<_Rbuf_BaseData> GetCompositeMask() const { return m_CompositeMask; }
    /// Out: what the composite says.
    void SetDataCondition(const boost::shared_ptr<DataContentsCondition>& condition) {
      m_DataCondition = condition;
    }
    boost::shared_ptr<DataContentsCondition> GetDataCondition() const { return m_DataCondition; }

  private:
    long m_MaskArraySize = 0;
    boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>> m_MaskArray;
    boost::shared_ptr<_Rbuf_BaseData> m_CompositeMask;
    boost::shared_ptr<DataContentsCondition> m_DataCondition;
  };

  virtual ~ComputeCompositeMask();
  virtual boost::shared_ptr<ComputeCompositeMaskParams> CreateParams();
  /// True, or an exception. \throws QuentLog::CPPException<std::runtime_error> naming the member that is
  /// missing, or the mask whose size does not fit
  bool operator()(boost::shared_ptr<ComputeCompositeMaskParams> params);
};

} // namespace tilx
