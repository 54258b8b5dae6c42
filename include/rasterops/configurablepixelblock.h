/// \file
/// A window onto a block that can be moved.
#pragma once

#include "rasterops/pixelblock.h"

namespace tilx {

/// A window whose position and size can be changed without making a new block.
///
/// Size, plane records, stacks, text and `set...ToNODATA` see the window. Masks, conditions, NODATA
/// values and flags are those of the whole block, and so are the pixels that both sync operations,
/// Clone(), CloneFromPlanes(), Convert() and accessors see.
class RASTEROPS_API ConfigurablePixelBlock : public virtual PixelBlock {
public:
  /// An empty block.
  ConfigurablePixelBlock();
  /// A window onto `source`, whose pixels it shares.
  /// \throws RfaultException if the window does not lie inside the source
  ConfigurablePixelBlock(PixelBlock& source, long columnOffset, long rowOffset, long width, long height);
  /// Shares block and window.
  ConfigurablePixelBlock(const ConfigurablePixelBlock& other);
  /// Shares block and window.
  virtual ConfigurablePixelBlock& operator=(const ConfigurablePixelBlock& other);
  /// Shares a block, with the window over all of it.
  ConfigurablePixelBlock& operator=(const PixelBlock& other) override;

  const _Rbuf_BaseData* getPlaneData(long plane) const override;
  ~ConfigurablePixelBlock() override;

  /// Moves the window. \throws RfaultException if it does not lie inside the whole block; the window then
  /// stays where it was
  void Reconfigure(long columnOffset, long rowOffset, long width, long height);
  /// Makes the window the whole block again.
  void reset();
  /// Makes `out` a one-plane block over the window of a plane.
  void getPlane(long plane, ConfigurablePixelBlock& out);
  using PixelBlock::getPlane;

  /// Makes `out` share all of `source`, after trying the window.
  /// \throws RfaultException if the window does not lie inside the source
  static void rederive(PixelBlock& source, long columnOffset, long rowOffset, long width, long height,
                       PixelBlock& out);

protected:
  boost::shared_ptr<_Rbuf_BaseData>& getPlane(long plane) override;

private:
  ConfigurablePixelBlock(const boost::shared_ptr<_Rbuf_BaseData>& plane,
                         const boost::shared_array<unsigned char>& noData, DataContentsCondition condition);

  boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>> m_Overlay;
};

} // namespace tilx
