/// \file
/// The host pixel block. This header by itself gives all that is needed to make, wrap, fill and read
/// blocks, records, stacks and accessors, and to catch what they raise.
#pragma once

#include "quentlog/exception.h"
#include "rasterops/bufferaccessor.h"
#include "rasterops/datacontentscondition.h"
#include "rasterops/ipixelblock.h"
#include "rasterops/legacyhelpertemplate.h"
#include "rasterops/maskbufferaccessor.h"
#include "rasterops/pixelbufferaccessor.h"
#include "rasterops/pixelrectdeleter.h"
#include "rasterops/tilx.h"
#include "rasterops/tilxpixelrect.h"
#include "rasterops/tilxpixelrectstack.h"
#include "rasterops/tilxpixelrectstackarray.h"
#include "rcommon/rbufbasedata.h"
#include "rcommon/rfaultexception.h"
#include "rcommon/rfile.h"

#include <boost/shared_array.hpp>

#include <mutex>

namespace tilx {

class ComputeMask;
class ComputeCompositeMask;

/// A block whose pixels lie in host memory.
///
/// **Validity.** A mask byte of 255 is valid data and 0 is NODATA; the library writes nothing else. A
/// condition is scanned from a mask by counting only 255 as valid; operators take any nonzero byte. A
/// plane's mask is computed when it is first asked for: from the condition if that is #NODATA or
/// #ALLDATA, else by comparing the pixels with the NODATA value. "Dirty" says that this is still to be
/// done. With "primacy" the mask is the authority and is never derived from the pixels.
///
/// **Ownership.** Copies, `operator=`, SetFrom(), getPlane(), getMask() and Derive() share pixels; Clone(),
/// CloneFromPlanes() and the copy from an IPixelBlock do not. Wrapped pixels belong to the caller and must
/// outlive the block. In an allocated block plane 0 owns the pixels of all planes.
///
/// **Padding.** A plane's rows lie `pitch` bytes apart. Where an operation copies, converts or fills a
/// whole plane, it does so row by row and leaves the bytes between rows alone.
///
/// **Failures.** RfaultException unless said otherwise; "Invalid index" is raised for a plane that does
/// not exist. An operation that raises leaves the block as it was.
///
/// **Threads.** Reading is safe from many threads once the masks exist. Asking for a missing mask from
/// several threads creates it once, but the flags are not locked: prepare masks and conditions before a
/// parallel loop. Writers hold the block alone, plane by plane.
class RASTEROPS_API PixelBlock : public IPixelBlock {
public:
  /// The state of a block, shared by the accessors that are taken from it.
  struct RASTEROPS_API pixelBlockData {
    pixelBlockData();
    /// \param planeStride bytes from plane to plane; long would be too short for it on some systems
    /// \param conditions one per plane, or null: #UNKNOWN for wrapped pixels and #NODATA for new ones
    pixelBlockData(long planes, long width, long height, Rbuf_PixelType type, unsigned char* data,
                   std::ptrdiff_t planeStride, long pitch, unsigned char* const* noData,
                   const DataContentsCondition* conditions);
    /// State over one rectangle: dirty, without mask or primacy.
    pixelBlockData(const boost::shared_ptr<_Rbuf_BaseData>& plane,
                   const boost::shared_array<unsigned char>& noData, DataContentsCondition condition);
    /// Shares all arrays of another state, under a lock of its own.
    pixelBlockData(const pixelBlockData& other);
    pixelBlockData& operator=(const pixelBlockData&) = delete;
    ~pixelBlockData();

    boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>> m_Planes;
    boost::shared_array<boost::shared_ptr<_Rbuf_BaseData>> m_Masks;
    boost::shared_array<boost::shared_array<unsigned char>> m_NoDataValues;
    boost::shared_array<DataContentsCondition> m_PlanesCondition;
    boost::shared_array<bool> m_MaskDirty;
    boost::shared_array<bool> m_MaskHasPrimacy;
    std::int32_t m_NumOfPlanes = 0;
    mutable std::mutex m_MaskLock; ///< guards the creation of masks
    std::mutex m_ComputeLock;      ///< held while a mask is brought up to date, so that one thread does it
    /// The block that owns the pixels of a window; null otherwise.
    boost::shared_ptr<IPixelBlock> m_Source;

    /// The operator that derives masks, one for the process.
    static const boost::shared_ptr<ComputeMask>& MaskOperator();
    /// The operator that combines masks, one for the process.
    static const boost::shared_ptr<ComputeCompositeMask>& CompositeMaskOperator();

    /// Allocates the arrays for `planes` planes.
    void Allocate(long planes);
    /// Makes sure that mask `plane` exists; it is not filled. True if it was made.
    bool InitMask(long plane);
    /// Mask `plane`, or null.
    boost::shared_ptr<_Rbuf_BaseData> Mask(long plane) const;
    /// True if any mask was ever made.
    bool HasMasks() const;
    /// Replaces mask `plane`.
    void StoreMask(long plane, const boost::shared_ptr<_Rbuf_BaseData>& mask);
    /// Stores a copy of a NODATA value, or none for null. True if it differs from the one before.
    bool StoreNODATAValue(long plane, const unsigned char* value);
  };

  /// A block without planes.
  PixelBlock();
  /// New pixels, all 0, or the plane's NODATA value where one is given. Condition #NODATA.
  /// \param noData null, or for each plane the bytes of one pixel or null; copied
  /// \throws RfaultException "Invalid noOfPlanes" below one plane; "No Memory"
  PixelBlock(long planes, long width, long height, Rbuf_PixelType type, unsigned char** noData);
  /// Wraps the caller's pixels, condition #UNKNOWN, or with `data` null makes new ones as above.
  /// \param planeStride bytes from the first pixel of a plane to that of the next
  /// \param pitch       bytes from row to row
  /// \throws RfaultException "Inter-row pitch is not an even multiple of the pixel size"
  PixelBlock(long planes, long width, long height, Rbuf_PixelType type, unsigned char* data, long planeStride,
             long pitch, unsigned char** noData);
  /// A copy of a stack, condition #ALLDATA. Column-major layers are transposed.
  /// \throws RfaultException "Base data stack is null or contains no layers."
  explicit PixelBlock(const _Rbuf_BaseDataStack* stack);
  /// Shares everything with `other`.
  PixelBlock(const PixelBlock& other);
  /// A deep copy of planes, masks and conditions; masks have primacy, NODATA values are not carried.
  explicit PixelBlock(const IPixelBlock& other);
  /// Shares a state, lock included.
  explicit PixelBlock(boost::shared_ptr<pixelBlockData> data);

  /// Stores a condition and leaves the mask as current. \throws QuentLog::CPPException<std::runtime_error>
  /// "Invalid Index"
  void setConditionWithoutMarkingDirty(long plane, DataContentsCondition condition) override;
  /// Shares a PixelBlock. From another class, the target becomes an empty block of its shape.
  /// \throws std::runtime_error "tilx::PixelBlock::SetFrom TODO" for a block of another class with planes
  void SetFrom(const IPixelBlock& source) override;
  /// A deep copy, with masks, conditions, flags and NODATA values.
  boost::shared_ptr<IPixelBlock> Clone() const override;
  /// The same of the listed planes, in that order, repeats allowed.
  /// \throws RfaultException "Plane index out of range"; boost::numeric::positive_overflow for more
  /// than 2^31 - 1 planes
  boost::shared_ptr<IPixelBlock> CloneFromPlanes(const std::vector<long>& planes) const override;
  long getNumOfPlanes() const override;
  /// Rows; 0 without planes.
  long getHeight() const override;
  /// Columns; 0 without planes.
  long getWidth() const override;
  /// Type of all planes; -1 without planes.
  Rbuf_PixelType getDataType() const override;
  /// Bytes per pixel; -1 without planes.
  long getNumBytes() const override;
  /// Makes `out` a one-plane block over the same pixels, with NODATA value, condition and primacy, its
  /// mask dirty.
  void getPlane(long plane, IPixelBlock& out) const override;
  /// The record of a plane, owned by the block.
  const _Rbuf_BaseData* getPlaneData(long plane) const override;
  /// A stack of views of all planes, to be deleted with tilx_PixelRectStackDelete().
  _Rbuf_BaseDataStack* asPixelRectStack() override;
  /// Makes one pixel invalid: NODATA value into the pixel, 0 into a current mask, condition adapted.
  /// \throws RfaultException "Invalid Pixel Position"; "No Mask or NODATA value set for this plane"
  void setPixelToNODATA(long plane, long column, long row) override;
  /// Condition #NODATA with the mask dirty; fills with the NODATA value if there is one.
  /// \throws RfaultException "Invalid Index"
  void setPlaneToNODATA(long plane) override;
  /// The same for all planes, leaving the dirty flags as they are.
  void setBlockToNODATA() override;
  /// The condition. An #UNKNOWN one is taken from the mask if that is current and a NODATA value is set.
  DataContentsCondition getCondition(long plane) const override;
  /// Condition of the byte minimum of all masks, as far as the conditions tell.
  DataContentsCondition getCompositeCondition() const override;
  /// Stores one condition for all planes and marks all masks dirty.
  void setCompositeCondition(DataContentsCondition condition) override;
  /// Stores a condition and marks the mask dirty.
  void setCondition(long plane, DataContentsCondition condition) override;
  /// Takes the condition from the mask, if there is one, and marks the mask current.
  /// \throws QuentLog::CPPException<std::runtime_error> "Invalid Index"
  void computeCondition(long plane) override;
  /// Makes the mask follow the NODATA fill, compared byte by byte. Nothing happens under primacy or
  /// without a NODATA value. Condition and dirty flag stay.
  void syncMaskWithNODATAFill(long plane) override;
  /// Makes the NODATA fill follow the mask. False if an #ALLDATA plane without primacy holds the value.
  /// \throws QuentLog::CPPException<std::runtime_error> "Condition set to ALLDATA, but found NODATA pixel
  /// value" instead of returning false if `strict`
  bool syncNODATAFillWithMask(long plane, bool strict) override;
  /// Makes `out` a one-plane U8 block over the mask, computing it first if it is dirty.
  void getMask(long plane, IPixelBlock& out) const override;
  /// Combines plane 0 of each block, by byte minimum, into the mask. An empty list changes nothing.
  void setMask(long plane, const std::vector<boost::shared_ptr<IPixelBlock>>& masks) override;
  /// Copies plane 0 of a U8 block of this size into the mask and takes the condition from it.
  void setMask(long plane, const boost::shared_ptr<IPixelBlock>& mask) override;
  /// Makes `out` a one-plane U8 block that holds the byte minimum of all masks.
  void getCompositeMask(IPixelBlock& out) override;
  /// The mask, computed first if it is dirty; null for a plane that does not exist or has none.
  const _Rbuf_BaseData* getMaskData(long plane) const override;
  /// True if getMask() would succeed.
  bool canComputeMask(long plane) override;
  /// Converts a plane of a block of this size into a plane, and takes over its mask.
  /// \throws RfaultException "Invalid dimensions"
  void setPlaneFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) override;
  /// Takes over mask and condition of a plane of a block of this size.
  /// \throws RfaultException "Invalid dimensions"
  void setMaskFromPixelBlock(long plane, const IPixelBlock& source, long sourcePlane) override;
  /// Row access to the pixels; see PixelBufferAccessor.
  boost::shared_ptr<BufferAccessor> getPixelAccessor(long plane, bool readOnly) override;
  /// Writable.
  boost::shared_ptr<BufferAccessor> getPixelAccessor(long plane) override;
  /// Row access to the mask, computed first if it is dirty; see MaskBufferAccessor.
  boost::shared_ptr<BufferAccessor> getMaskAccessor(long plane, bool readOnly) override;
  /// Writable.
  boost::shared_ptr<BufferAccessor> getMaskAccessor(long plane) override;
  /// All pixels as text: a line a row, "{" and "}" around a plane. Whole numbers that a long holds print as
  /// such, all others as doubles.
  void ToString(std::wstring& out) override;
  ~PixelBlock() override;

  /// Shares everything with `other`; accessors taken before keep what they had.
  virtual PixelBlock& operator=(const PixelBlock& other);

protected:
  /// The shared record of a plane.
  virtual boost::shared_ptr<_Rbuf_BaseData>& getPlane(long plane);

public:
  /// Copies plane 0 of a block of this size and type, with NODATA value, condition and primacy.
  /// \throws RfaultException "Invalid source PixelBlock"; "Invalid argument"
  virtual void setPlane(long plane, PixelBlock& source);
  /// Brings a dirty mask up to date. \throws RfaultException "Unable to compute the mask.  The condition
  /// requires a NoData value, and one isn't set."
  virtual void computeMask(long plane) const;
  /// computeMask() for each plane.
  virtual void computeMasks() const;
  /// All pixels as text, without line breaks between rows.
  virtual void ToFileAsString(_rfile_FdRec* file);
  /// Gives the mask primacy, stores a NODATA value and writes it to every invalid pixel.
  virtual void syncNODATAFillWithMask(long plane, unsigned char* value);

  /// The bytes of the NODATA value, or null.
  boost::shared_array<unsigned char> getNODATAValue(long plane) const;
  /// Stores a copy of a value, or none for null. A change under no primacy makes the condition #UNKNOWN.
  void setNODATAValue(long plane, unsigned char* value);
  bool getMaskHasNODATAPrimacy(long plane) const;
  /// Giving primacy computes the mask first.
  void setMaskHasNODATAPrimacy(long plane, bool primacy);
  /// Bytes from plane 0 to plane 1, which all planes are taken to keep; 0 below two planes.
  long getPlanePitch() const;
  /// A new block of another pixel type with the same masks, converted as by rbuf_ConvertPixels(). NODATA
  /// values are not carried.
  boost::shared_ptr<PixelBlock> Convert(Rbuf_PixelType type) const;
  /// Counts, conditions, flags and, below 11 by 11 pixels, all values.
  std::wstring ToDebugString() const;
  /// Record of plane 0. \throws std::runtime_error "Empty Pixel Block"
  operator _Rbuf_BaseData*();
  /// Record of plane 0. \throws std::runtime_error "Empty Pixel Block"
  _Rbuf_BaseData* operator->();

  /// A window that shares the pixels and masks of `block` and keeps it alive. Its conditions are those
  /// of the window. Writing through it changes pixels and mask bytes of `block`, but neither its
  /// conditions nor its flags. Null if the planes are not evenly spaced in one allocation.
  /// \throws std::runtime_error "Invalid width", "Invalid height", "Invalid columnOffset", "Invalid
  /// rowOffset"; RfaultException if the window runs past the end of the block or a mask cannot be computed
  static boost::shared_ptr<IPixelBlock> Derive(const boost::shared_ptr<IPixelBlock>& block, long columnOffset,
                                               long rowOffset, long width, long height);
  /// The condition that all planes share; #UNKNOWN with `homogenous` false if they differ.
  /// \throws RfaultException "No planes on PixelBlock"
  static DataContentsCondition getHomogenousCondition(const IPixelBlock& block, bool& homogenous);

protected:
  /// True if `plane` is a plane of the block.
  bool HasPlane(long plane) const;
  /// Raises "Invalid index" in the name of `function` unless `plane` is a plane of the block.
  void CheckIndex(long plane, const char* function, long line) const;
  /// Writes the NODATA value, if there is one, to all pixels of a plane.
  void FillWithNODATA(long plane);
  /// A one-plane block over a mask rectangle or a plane, for `getMask` and its like to share.
  static void ShareRectangle(const boost::shared_ptr<_Rbuf_BaseData>& rect,
                             const boost::shared_array<unsigned char>& noData,
                             DataContentsCondition condition, bool primacy, IPixelBlock& out);
  /// Condition from a scan of mask `plane`, which exists.
  DataContentsCondition ScanMask(long plane) const;
  /// The work of computeMask() under its lock. With `required`, a mask that is missing is computed even if it
  /// is not dirty.
  void BringMaskUpToDate(long plane, bool required) const;

  boost::shared_ptr<pixelBlockData> m_Data;
};

} // namespace tilx
