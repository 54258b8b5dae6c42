"""Output formats, and what goes from input to output besides pixels."""
import numpy
from osgeo import gdal

import command


class Formats(command.Case):
    def setUp(self):
        super().setUp()
        self.pixels = numpy.arange(1, 2401).reshape(40, 60).astype(numpy.uint8)

    def driver(self, name):
        return self.open(name).GetDriver().ShortName

    def structure(self, name, item):
        of_band = self.band(name).GetMetadataItem(item, "IMAGE_STRUCTURE")
        return of_band or self.open(name).GetMetadataItem(item, "IMAGE_STRUCTURE")

    def test_tiled_geotiff_by_default(self):
        self.make("a.tif", numpy.ones((3, 700, 1300), numpy.uint16))
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertEqual(self.band("o.tif").GetBlockSize(), [512, 512])
        self.assertEqual(self.structure("o.tif", "INTERLEAVE"), "BAND")

    def test_creation_options_win(self):
        self.make("a.tif", numpy.ones((3, 100, 130), numpy.uint16))
        options = ("--co", "COMPRESS=DEFLATE", "--co", "INTERLEAVE=PIXEL", "--co", "BLOCKXSIZE=64")
        self.succeed("divide", *options, "a.tif", "a.tif", "o.tif")
        self.assertEqual(self.structure("o.tif", "COMPRESSION"), "DEFLATE")
        self.assertEqual(self.structure("o.tif", "INTERLEAVE"), "PIXEL")
        self.assertEqual(self.band("o.tif").GetBlockSize()[0], 64)
        self.assertTrue((self.read("o.tif") == 1).all())

    def test_formats_keep_pixels_and_masks(self):
        mask = numpy.ones((40, 60), bool)
        mask[5:9, 7:20] = False
        self.make("a.tif", self.pixels, mask=mask)
        for name, driver in (("o.tif", "COG"), ("o.png", "PNG"), ("o.img", "HFA"), ("o.dat", "ENVI")):
            with self.subTest(driver=driver):
                if gdal.GetDriverByName(driver) is None:
                    self.skipTest(f"GDAL has no {driver}")
                self.succeed("convert", "--ot", "U8", "--overwrite", "--of", driver, "a.tif", name)
                numpy.testing.assert_array_equal(self.read(name)[0][mask], self.pixels[mask])
                numpy.testing.assert_array_equal(self.valid(name)[0], mask)
        self.assertEqual(self.driver("o.png"), "PNG")
        self.assertEqual([path.name for path in self.folder.iterdir() if "rasterops-" in path.name], [])

    def test_a_cog_is_one(self):
        self.make("a.tif", numpy.ones((600, 600), numpy.uint8))
        self.succeed("divide", "--of", "COG", "a.tif", "a.tif", "o.tif")
        self.assertEqual(self.structure("o.tif", "LAYOUT"), "COG")

    def test_a_format_that_refuses_leaves_nothing(self):
        self.make("a.tif", numpy.ones((2, 5, 5), numpy.uint8))
        line = self.refuse(4, "convert", "--ot", "U8", "--of", "AAIGrid", "a.tif", "o.asc")
        self.assertIn("AAIGrid", line)
        self.assertNotIn("rasterops-", line, "the temporary name means nothing to the user")

    def test_output_type(self):
        self.make("a.tif", numpy.array([[300, 7, 0]], numpy.uint16))
        self.succeed("divide", "--divisor-value", "1", "--ot", "U8", "a.tif", "o.tif")
        self.assertEqual(self.read("o.tif").dtype, numpy.uint8)
        self.assertEqual(self.read("o.tif")[0].tolist(), [[255, 7, 0]])

    def test_place_survives(self):
        transform = (500000, 25, 5, 4000000, 4, -20)
        self.make("a.tif", self.pixels, transform=transform, epsg=32633)
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertEqual(self.open("o.tif").GetGeoTransform(), transform)
        self.assertEqual(self.open("o.tif").GetSpatialRef().GetAuthorityCode(None), "32633")

    def test_ground_control_points_survive(self):
        self.make("a.tif", self.pixels)
        raster = gdal.Open(str(self.folder / "a.tif"), gdal.GA_Update)
        points = [gdal.GCP(10 + i, 20 + i * i, 0, 5.5 * i, 3.5 * i) for i in range(4)]
        raster.SetGCPs(points, 'GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],'
                               'PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]]')
        raster.FlushCache()
        del raster
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        got = self.open("o.tif").GetGCPs()
        self.assertEqual([(p.GCPX, p.GCPY, p.GCPPixel, p.GCPLine) for p in got],
                         [(p.GCPX, p.GCPY, p.GCPPixel, p.GCPLine) for p in points])

    def label(self, name):
        raster = gdal.Open(str(self.folder / name), gdal.GA_Update)
        band = raster.GetRasterBand(1)
        table = gdal.ColorTable()
        table.SetColorEntry(3, (10, 20, 30, 255))
        band.SetColorTable(table)
        band.SetDescription("classes")
        band.SetScale(0.5)
        band.SetOffset(7)
        raster.FlushCache()

    def test_labels_go_with_convert(self):
        self.make("a.tif", self.pixels)
        self.label("a.tif")
        self.succeed("convert", "--ot", "U8", "a.tif", "o.tif")
        band = self.band("o.tif")
        self.assertEqual(band.GetColorTable().GetColorEntry(3), (10, 20, 30, 255))
        self.assertEqual((band.GetDescription(), band.GetScale(), band.GetOffset()), ("classes", 0.5, 7))
        self.succeed("convert", "--ot", "F32", "a.tif", "f.tif")
        band = self.band("f.tif")
        self.assertIsNone(band.GetColorTable())
        self.assertEqual(band.GetScale(), 0.5)

    def test_labels_do_not_go_with_divide(self):
        self.make("a.tif", self.pixels)
        self.label("a.tif")
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        band = self.band("o.tif")
        self.assertIsNone(band.GetColorTable())
        self.assertIn(band.GetScale(), (None, 1.0))
        self.assertEqual(band.GetDescription(), "")

    def test_an_earlier_mask_file_does_not_haunt_the_output(self):
        self.make("a.tif", self.pixels)
        self.make("o.tif", self.pixels)
        (self.folder / "o.tif.msk").write_bytes((self.folder / "a.tif").read_bytes())
        self.succeed("convert", "--ot", "U8", "--overwrite", "a.tif", "o.tif")
        self.assertEqual(self.flags("o.tif"), gdal.GMF_ALL_VALID)
        self.assertFalse((self.folder / "o.tif.msk").exists())

    def test_an_output_of_several_files_overwrites_none_unasked(self):
        self.make("a.tif", self.pixels)
        (self.folder / "o.hdr").write_text("of someone else")
        self.assertIn("o.hdr", self.refuse(4, "convert", "--ot", "U8", "--of", "ENVI", "a.tif", "o.dat"))
        self.assertEqual((self.folder / "o.hdr").read_text(), "of someone else")


    def test_jpeg2000_is_lossless_unless_asked(self):
        if not gdal.GetDriverByName("JP2OpenJPEG"):
            self.skipTest("this GDAL has no JP2OpenJPEG")
        noise = numpy.random.default_rng(1).integers(1, 256, (40, 60)).astype(numpy.uint8)
        self.make("a.tif", noise)
        self.succeed("convert", "--ot", "U8", "a.tif", "o.jp2")
        numpy.testing.assert_array_equal(self.read("o.jp2")[0], noise)

    def test_a_copied_format_without_masks_is_refused(self):
        pixels = self.pixels.copy()
        pixels[3, 4] = 0
        self.make("a.tif", pixels)
        self.assertIn("--output-nodata", self.refuse(4, "divide", "--of", "XYZ", "a.tif", "a.tif", "o.xyz"))
        self.assertFalse((self.folder / "o.xyz").exists())

    def test_a_link_stays_a_link(self):
        self.make("a.tif", self.pixels)
        (self.folder / "link.tif").symlink_to("later.tif")
        self.succeed("convert", "--ot", "U8", "a.tif", "link.tif")
        self.assertTrue((self.folder / "link.tif").is_symlink())
        numpy.testing.assert_array_equal(self.read("later.tif")[0], self.pixels)

    def test_a_name_as_long_as_they_come(self):
        self.make("a.tif", self.pixels)
        name = "n" * 240 + ".tif"
        self.succeed("convert", "--ot", "U8", "a.tif", name)
        numpy.testing.assert_array_equal(self.read(name)[0], self.pixels)

if __name__ == "__main__":
    command.main()
