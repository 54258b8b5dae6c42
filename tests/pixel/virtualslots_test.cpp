/// Order of the virtual functions, which callers that were compiled before rely on.
#include "devicehost/gpuoperation.h"
#include "rasterops/computecompositemask.h"
#include "rasterops/computemask.h"
#include "rasterops/configurablepixelblock.h"
#include "rasterops/divide.h"
#include "rasterops/pixelblock.h"
#include "support/virtualslot.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using testsupport::VirtualSlot;
using tilx::DataContentsCondition;
using tilx::IPixelBlock;
using tilx::PixelBlock;
using AccessorPtr = boost::shared_ptr<tilx::BufferAccessor>;
using BlockPtr = boost::shared_ptr<IPixelBlock>;

/// Reaches the protected member.
class Opened : public PixelBlock {
public:
  static long SlotOfGetPlane() {
    return VirtualSlot(
        static_cast<boost::shared_ptr<_Rbuf_BaseData>& (PixelBlock::*)(long)>(&Opened::getPlane));
  }
};

#define OVERLOAD(Class, result, name, ...) static_cast<result(Class::*) __VA_ARGS__>(&Class::name)

TEST(VirtualSlots, OfTheBlockInterfaceStandInTheirOrder) {
  // The first one is private in the interface; PixelBlock keeps its slot.
  EXPECT_EQ(VirtualSlot(&PixelBlock::setConditionWithoutMarkingDirty), 0);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::SetFrom), 1);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::Clone), 2);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::CloneFromPlanes), 3);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getNumOfPlanes), 4);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getHeight), 5);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getWidth), 6);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getDataType), 7);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getNumBytes), 8);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getPlane), 9);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getPlaneData), 10);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::asPixelRectStack), 11);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::setPixelToNODATA), 12);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::setPlaneToNODATA), 13);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::setBlockToNODATA), 14);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getCondition), 15);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getCompositeCondition), 16);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::setCompositeCondition), 17);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::setCondition), 18);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::computeCondition), 19);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::syncMaskWithNODATAFill), 20);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::syncNODATAFillWithMask), 21);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getMask), 22);
  EXPECT_EQ(VirtualSlot(OVERLOAD(IPixelBlock, void, setMask, (long, const std::vector<BlockPtr>&))), 23);
  EXPECT_EQ(VirtualSlot(OVERLOAD(IPixelBlock, void, setMask, (long, const BlockPtr&))), 24);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getCompositeMask), 25);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::getMaskData), 26);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::canComputeMask), 27);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::setPlaneFromPixelBlock), 28);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::setMaskFromPixelBlock), 29);
  EXPECT_EQ(VirtualSlot(OVERLOAD(IPixelBlock, AccessorPtr, getPixelAccessor, (long, bool))), 30);
  EXPECT_EQ(VirtualSlot(OVERLOAD(IPixelBlock, AccessorPtr, getPixelAccessor, (long))), 31);
  EXPECT_EQ(VirtualSlot(OVERLOAD(IPixelBlock, AccessorPtr, getMaskAccessor, (long, bool))), 32);
  EXPECT_EQ(VirtualSlot(OVERLOAD(IPixelBlock, AccessorPtr, getMaskAccessor, (long))), 33);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::ToString), 34);
  EXPECT_EQ(VirtualSlot(&IPixelBlock::ToDebugString), -1);
}

TEST(VirtualSlots, OfPixelBlockFollowTheDestructorOfTheInterface) {
  // Slots 35 and 36 are the destructor's: complete and deleting.
  EXPECT_EQ(VirtualSlot(OVERLOAD(PixelBlock, PixelBlock&, operator=, (const PixelBlock&))), 37);
  EXPECT_EQ(Opened::SlotOfGetPlane(), 38);
  EXPECT_EQ(VirtualSlot(&PixelBlock::setPlane), 39);
  EXPECT_EQ(VirtualSlot(&PixelBlock::computeMask), 40);
  EXPECT_EQ(VirtualSlot(&PixelBlock::computeMasks), 41);
  EXPECT_EQ(VirtualSlot(&PixelBlock::ToFileAsString), 42);
  EXPECT_EQ(VirtualSlot(OVERLOAD(PixelBlock, void, syncNODATAFillWithMask, (long, unsigned char*))), 43);
  EXPECT_EQ(VirtualSlot(OVERLOAD(PixelBlock, bool, syncNODATAFillWithMask, (long, bool))), 21);
}

TEST(VirtualSlots, OtherMembersOfPixelBlockAreNotVirtual) {
  EXPECT_EQ(VirtualSlot(&PixelBlock::getNODATAValue), -1);
  EXPECT_EQ(VirtualSlot(&PixelBlock::setNODATAValue), -1);
  EXPECT_EQ(VirtualSlot(&PixelBlock::getMaskHasNODATAPrimacy), -1);
  EXPECT_EQ(VirtualSlot(&PixelBlock::setMaskHasNODATAPrimacy), -1);
  EXPECT_EQ(VirtualSlot(&PixelBlock::getPlanePitch), -1);
  EXPECT_EQ(VirtualSlot(&PixelBlock::Convert), -1);
  EXPECT_EQ(VirtualSlot(&PixelBlock::ToDebugString), -1);
}

TEST(VirtualSlots, OfAConfigurableBlockBeginWithItsAssignment) {
  using tilx::ConfigurablePixelBlock;
  EXPECT_EQ(VirtualSlot(OVERLOAD(ConfigurablePixelBlock, ConfigurablePixelBlock&, operator=,
                                 (const ConfigurablePixelBlock&))),
            0);
  EXPECT_TRUE((std::is_base_of_v<PixelBlock, ConfigurablePixelBlock>));
}

/// Tells by the slot of its own function how many there are before it.
class MoreThanAccessor : public tilx::BufferAccessor {
public:
  virtual void OneMore();
};

TEST(VirtualSlots, OfAccessorsStandInTheirOrderWithTheDestructorLast) {
  using tilx::BufferAccessor;
  EXPECT_EQ(VirtualSlot(&BufferAccessor::GetWidth), 0);
  EXPECT_EQ(VirtualSlot(&BufferAccessor::GetHeight), 1);
  EXPECT_EQ(VirtualSlot(&BufferAccessor::GetRowPtr), 2);
  EXPECT_EQ(VirtualSlot(&BufferAccessor::GetPitch), 3);
  EXPECT_EQ(VirtualSlot(&BufferAccessor::CloneBuffer), 4);
  EXPECT_EQ(VirtualSlot(&MoreThanAccessor::OneMore), 7);
}

TEST(VirtualSlots, OfOperatorsFollowTheDestructor) {
  using quent::gpu::GPUOperation;
  EXPECT_EQ(VirtualSlot(&GPUOperation::CreateParams), 2);
  EXPECT_EQ(VirtualSlot(&GPUOperation::runOnCPU), 3);
  EXPECT_EQ(VirtualSlot(&GPUOperation::runOnGPU), 4);
  EXPECT_EQ(VirtualSlot(&GPUOperation::prefersGPU), 5);
  EXPECT_EQ(VirtualSlot(&GPUOperation::Run), -1);
  EXPECT_TRUE(std::has_virtual_destructor_v<GPUOperation::Parameters>);
}

TEST(VirtualSlots, OfMaskOperatorsAreDestructorAndParameters) {
  EXPECT_EQ(VirtualSlot(&tilx::ComputeMask::CreateParams), 2);
  EXPECT_EQ(VirtualSlot(&tilx::ComputeCompositeMask::CreateParams), 2);
}

} // namespace
