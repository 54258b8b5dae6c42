#include "engine/outputformat.h"

#include "engine/errors.h"

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace quent::rasterops::engine {

namespace {

OutputRequest request(const std::string& path, const std::string& driver = {},
                      const std::vector<std::string>& options = {}) {
  return {path, driver, options, false};
}

OutputShape shape(Rbuf_PixelType type, long bands = 1, Size size = {1000, 1000}) {
  return {size, bands, type, false};
}

bool has(const OutputFormat& format, const std::string& option) {
  const auto& options = format.TileOptions();
  return std::find(options.begin(), options.end(), option) != options.end();
}

} // namespace

TEST(OutputFormat, FollowsTheExtension) {
  EXPECT_EQ(OutputFormat(request("a.tif"), shape(U8)).Name(), "GTiff");
  EXPECT_EQ(OutputFormat(request("a.TIFF"), shape(U8)).Name(), "GTiff");
  EXPECT_EQ(OutputFormat(request("a.png"), shape(U8)).Name(), "PNG");
  EXPECT_EQ(OutputFormat(request("a.img"), shape(U8)).Name(), "HFA");
  EXPECT_EQ(OutputFormat(request("a"), shape(U8)).Name(), "GTiff");
  EXPECT_EQ(OutputFormat(request("a.unheard-of"), shape(U8)).Name(), "GTiff");
}

TEST(OutputFormat, GeoTiffIsTiledByBands) {
  const OutputFormat format(request("a.tif"), shape(F32, 3));
  EXPECT_TRUE(has(format, "TILED=YES"));
  EXPECT_TRUE(has(format, "BLOCKXSIZE=512"));
  EXPECT_TRUE(has(format, "INTERLEAVE=BAND"));
  EXPECT_TRUE(has(format, "BIGTIFF=IF_SAFER"));
  EXPECT_EQ(format.Block(), (Size{512, 512}));
  EXPECT_FALSE(format.Copies());
  EXPECT_FALSE(format.Compressed());
}

TEST(OutputFormat, BlocksOfSmallRastersAreSmall) {
  EXPECT_EQ(OutputFormat(request("a.tif"), shape(U8, 1, {37, 51})).Block(), (Size{48, 64}));
}

TEST(OutputFormat, TheUsersOptionsWin) {
  const OutputFormat tiles(request("a.tif", "", {"blockxsize=128", "INTERLEAVE=PIXEL", "COMPRESS=LZW"}),
                           shape(U8));
  EXPECT_EQ(tiles.Block(), (Size{128, 512}));
  EXPECT_TRUE(has(tiles, "INTERLEAVE=PIXEL"));
  EXPECT_FALSE(has(tiles, "INTERLEAVE=BAND"));
  EXPECT_TRUE(tiles.Compressed());
  const OutputFormat strips(request("a.tif", "", {"TILED=NO", "BLOCKYSIZE=16"}), shape(U8));
  EXPECT_EQ(strips.Block(), (Size{1000, 16}));
}

TEST(OutputFormat, TypesThatFillNoByteAreToldToTheDriver) {
  EXPECT_TRUE(has(OutputFormat(request("a.tif"), shape(U1)), "NBITS=1"));
  EXPECT_TRUE(has(OutputFormat(request("a.tif"), shape(U2)), "NBITS=2"));
  EXPECT_TRUE(has(OutputFormat(request("a.tif"), shape(U4)), "NBITS=4"));
#if GDAL_VERSION_NUM < GDAL_COMPUTE_VERSION(3, 7, 0)
  EXPECT_TRUE(has(OutputFormat(request("a.tif"), shape(S8)), "PIXELTYPE=SIGNEDBYTE"));
  EXPECT_THROW(OutputFormat(request("a.png"), shape(S8)), UsageError);
#endif
}

TEST(OutputFormat, DriversThatOnlyCopyGetATemporaryGeoTiff) {
  const OutputFormat format(request("a.tif", "COG", {"COMPRESS=DEFLATE"}), shape(U8));
  EXPECT_TRUE(format.Copies());
  EXPECT_EQ(format.Name(), "COG");
  EXPECT_EQ(std::string(format.TileDriver().GetDescription()), "GTiff");
  EXPECT_EQ(format.CopyOptions(), std::vector<std::string>{"COMPRESS=DEFLATE"});
  EXPECT_FALSE(has(format, "COMPRESS=DEFLATE")) << "the temporary file is not compressed";
}

TEST(OutputFormat, RefusesWhatCannotBe) {
  EXPECT_THROW(OutputFormat(request("a.tif", "NoSuchFormat"), shape(U8)), UsageError);
  EXPECT_THROW(OutputFormat(request("a.vrt", "VRT"), shape(U8)), UsageError);
  EXPECT_THROW(OutputFormat(request("a.png"), shape(F32)), UsageError);
  EXPECT_THROW(OutputFormat(request("a.tif", "", {"TILED"}), shape(U8)), UsageError);
  EXPECT_THROW(OutputFormat(request("a.tif", "", {"NO_SUCH_OPTION=1"}), shape(U8)), UsageError);
  EXPECT_THROW(OutputFormat(request("a.tif", "", {"BLOCKXSIZE=0"}), shape(U8)), UsageError);
}

} // namespace quent::rasterops::engine
