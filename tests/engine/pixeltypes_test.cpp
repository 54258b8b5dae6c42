#include "engine/pixeltypes.h"

#include "engine/gdalerrors.h"

#include <gdal_priv.h>
#include <gtest/gtest.h>

namespace quent::rasterops::engine {

namespace {

/// A band in memory.
struct Memory {
  GDALDatasetUniquePtr dataset;

  explicit Memory(GDALDataType type) {
    PrepareGdal();
    dataset.reset(GetGDALDriverManager()->GetDriverByName("MEM")->Create("", 1, 1, 1, type, nullptr));
  }
  GDALRasterBand& band() { return *dataset->GetRasterBand(1); }
};

} // namespace

TEST(BandType, FollowsGdalsType) {
  const std::pair<GDALDataType, Rbuf_PixelType> types[] = {
      {GDT_Byte, U8},     {GDT_UInt16, U16},   {GDT_Int16, S16},    {GDT_UInt32, U32},
      {GDT_Int32, S32},   {GDT_Float32, F32},  {GDT_Float64, F64},  {GDT_CInt16, C64},
      {GDT_CInt32, C128}, {GDT_CFloat32, C64}, {GDT_CFloat64, C128}};
  for (const auto& [gdal, type] : types)
    EXPECT_EQ(BandType(Memory(gdal).band()), type) << GDALGetDataTypeName(gdal);
}

TEST(BandType, HasNoneForWideIntegers) {
  EXPECT_FALSE(BandType(Memory(GDT_Int64).band()));
  EXPECT_FALSE(BandType(Memory(GDT_UInt64).band()));
}

TEST(BandType, HeedsBitsAndSignOfBytes) {
  const std::pair<const char*, Rbuf_PixelType> widths[] = {
      {"1", U1}, {"2", U2}, {"4", U4}, {"7", U8}, {"8", U8}};
  for (const auto& [bits, type] : widths) {
    Memory memory(GDT_Byte);
    memory.band().SetMetadataItem("NBITS", bits, "IMAGE_STRUCTURE");
    EXPECT_EQ(BandType(memory.band()), type) << bits;
  }
  Memory memory(GDT_Byte);
  memory.band().SetMetadataItem("PIXELTYPE", "SIGNEDBYTE", "IMAGE_STRUCTURE");
  EXPECT_EQ(BandType(memory.band()), S8);
  Memory wide(GDT_UInt16);
  wide.band().SetMetadataItem("NBITS", "12", "IMAGE_STRUCTURE");
  EXPECT_EQ(BandType(wide.band()), U16);
}

TEST(UnionType, HoldsAllValues) {
  EXPECT_EQ(UnionType({U8}), U8);
  EXPECT_EQ(UnionType({S8}), S8);
  EXPECT_EQ(UnionType({U1, U4}), U4);
  EXPECT_EQ(UnionType({U8, S8}), S16);
  EXPECT_EQ(UnionType({U16, S16}), S32);
  EXPECT_EQ(UnionType({U32, S32}), F64);
  EXPECT_EQ(UnionType({U16, F32}), F32);
  EXPECT_EQ(UnionType({S32, F32}), F64);
  EXPECT_EQ(UnionType({F32, C64}), C64);
  EXPECT_EQ(UnionType({F64, C64}), C128);
  EXPECT_EQ(UnionType({S16, C64}), C64);
  EXPECT_EQ(UnionType({U32, C64}), C128);
}

} // namespace quent::rasterops::engine
