"""What the command sees in its inputs: types, bands, masks, values, grids."""
import json

import numpy
from osgeo import gdal, osr

import command

TYPES = {
    "U8": "uint8", "S8": "int8", "U16": "uint16", "S16": "int16", "U32": "uint32", "S32": "int32", "F32": "float32",
    "F64": "float64", "C64": "complex64", "C128": "complex128",
}


class Reading(command.Case):
    def info(self, name):
        return json.loads(self.succeed("info", "--json", name).stdout)

    def conditions(self, name):
        return [band["condition"] for band in self.info(name)["bands"]]

    def test_every_type_is_told_and_divides_by_itself(self):
        for name, dtype in TYPES.items():
            with self.subTest(type=name):
                pixels = numpy.arange(1, 61).reshape(6, 10).astype(dtype)
                self.make("a.tif", pixels)
                self.assertEqual(self.info("a.tif")["bands"][0]["type"], name)
                self.succeed("divide", "--overwrite", "a.tif", "a.tif", "o.tif")
                result = self.read("o.tif")
                self.assertEqual(result.dtype, pixels.dtype)
                self.assertTrue((result == 1).all())

    def test_types_of_few_bits_survive(self):
        for bits, name in ((1, "U1"), (2, "U2"), (4, "U4")):
            with self.subTest(bits=bits):
                pixels = (numpy.arange(60).reshape(6, 10) % (1 << bits)).astype(numpy.uint8)
                self.make("a.tif", pixels, options=[f"NBITS={bits}"])
                self.assertEqual(self.info("a.tif")["bands"][0]["type"], name)
                self.succeed("convert", "--ot", name, "--overwrite", "a.tif", "o.tif")
                self.assertEqual(self.info("o.tif")["bands"][0]["type"], name)
                numpy.testing.assert_array_equal(self.read("o.tif")[0], pixels)

    def test_complex_integers_become_complex_floats(self):
        raster = gdal.GetDriverByName("GTiff").Create(str(self.folder / "a.tif"), 2, 1, 1, gdal.GDT_CInt16)
        raster.GetRasterBand(1).WriteArray(numpy.array([[3 - 4j, -32768 + 32767j]], numpy.complex64))
        raster.FlushCache()
        self.assertEqual(self.info("a.tif")["bands"][0]["type"], "C64")
        self.succeed("convert", "--ot", "C128", "a.tif", "o.tif")
        self.assertEqual(self.read("o.tif")[0].tolist(), [[3 - 4j, -32768 + 32767j]])

    def test_wide_integers_need_as_f64(self):
        self.make("a.tif", numpy.full((3, 3), 1 << 40, numpy.int64))
        self.assertIn("--as F64", self.refuse(3, "mask", "a.tif", "o.tif"))
        self.succeed("convert", "--as", "F64", "--ot", "F64", "a.tif", "o.tif")
        self.assertTrue((self.read("o.tif") == float(1 << 40)).all())
        self.assertEqual(self.conditions("a.tif"), ["ALLDATA"])

    def test_types_that_differ_are_refused(self):
        self.make("a.tif", numpy.ones((3, 3), numpy.uint8))
        self.make("b.tif", numpy.full((3, 3), 2, numpy.float32))
        self.assertIn("--as F32", self.refuse(3, "divide", "a.tif", "b.tif", "o.tif"))
        self.succeed("divide", "--as", "F32", "a.tif", "b.tif", "o.tif")
        self.assertTrue((self.read("o.tif") == 0.5).all())

    def test_bands_in_any_order(self):
        planes = numpy.stack([numpy.full((3, 3), 10 * i, numpy.uint8) for i in range(1, 6)])
        self.make("a.tif", planes, options=["PHOTOMETRIC=MINISBLACK"])
        self.succeed("convert", "--ot", "U8", "-b", "5,2-3,2", "a.tif", "o.tif")
        self.assertEqual(self.read("o.tif")[:, 0, 0].tolist(), [50, 20, 30, 20])
        self.succeed("divide", "--dividend-bands", "4", "--divisor-bands", "2", "a.tif", "a.tif", "p.tif")
        self.assertEqual(self.read("p.tif")[:, 0, 0].tolist(), [2])
        self.succeed("divide", "--divisor-bands", "1", "a.tif", "a.tif", "q.tif")
        self.assertEqual(self.read("q.tif")[:, 0, 0].tolist(), [1, 2, 3, 4, 5])
        self.refuse(3, "convert", "--ot", "U8", "-b", "6", "a.tif", "r.tif")
        self.refuse(3, "divide", "--dividend-bands", "1-2", "--divisor-bands", "1-3", "a.tif", "a.tif", "r.tif")

    def test_four_bands_of_bytes_do_not_become_alpha(self):
        self.make("a.tif", numpy.full((4, 3, 3), 7, numpy.uint8), options=["PHOTOMETRIC=MINISBLACK"])
        self.succeed("convert", "--ot", "U8", "a.tif", "o.tif")
        self.assertEqual(self.flags("o.tif"), gdal.GMF_ALL_VALID)
        self.assertEqual(self.read("o.tif").shape[0], 4)

    def test_alpha_is_a_mask_unless_named(self):
        planes = numpy.full((4, 5, 5), 9, numpy.uint8)
        planes[3] = 255
        planes[3, 1, 2] = 0
        planes[3, 2, 2] = 3
        self.make("a.tif", planes, options=["ALPHA=YES"])
        self.assertEqual(self.conditions("a.tif"), ["SOMEDATA"] * 3 + ["ALLDATA"])
        self.succeed("mask", "a.tif", "m.tif")
        expected = numpy.full((3, 5, 5), 255, numpy.uint8)
        expected[:, 1, 2] = 0
        numpy.testing.assert_array_equal(self.read("m.tif"), expected)
        self.succeed("convert", "--ot", "U16", "-b", "4", "a.tif", "o.tif")
        numpy.testing.assert_array_equal(self.read("o.tif")[0], planes[3])

    def test_conditions(self):
        self.make("all.tif", numpy.ones((5, 5), numpy.uint8), nodata=0)
        self.make("none.tif", numpy.zeros((5, 5), numpy.uint8), nodata=0)
        self.make("some.tif", numpy.eye(5, dtype=numpy.uint8), nodata=0)
        self.make("plain.tif", numpy.zeros((5, 5), numpy.uint8))
        self.make("masked.tif", numpy.zeros((5, 5), numpy.uint8), mask=numpy.eye(5))
        for name, condition in (("all", "ALLDATA"), ("none", "NODATA"), ("some", "SOMEDATA"), ("plain", "ALLDATA"),
                                ("masked", "SOMEDATA")):
            self.assertEqual(self.conditions(f"{name}.tif"), [condition], name)

    def test_value_that_the_type_cannot_hold_marks_nothing(self):
        for value in (-9999, 0.5, 256):
            with self.subTest(value=value):
                self.make("a.tif", numpy.zeros((3, 3), numpy.uint8), nodata=value)
                self.assertEqual(self.conditions("a.tif"), ["ALLDATA"])
                self.succeed("mask", "--overwrite", "a.tif", "m.tif")
                self.assertTrue((self.read("m.tif") == 255).all())

    def test_nan_marks_every_nan(self):
        pixels = numpy.array([[1, numpy.nan], [numpy.inf, 0]], numpy.float32)
        pixels.view(numpy.uint32)[0, 1] = 0xFFC12345
        self.make("a.tif", pixels, nodata=float("nan"))
        self.succeed("mask", "a.tif", "m.tif")
        self.assertEqual(self.read("m.tif")[0].tolist(), [[255, 0], [255, 255]])

    def test_lowest_single_in_rounded_text(self):
        lowest = numpy.finfo(numpy.float32).min
        self.make("a.tif", numpy.array([[lowest, 1]], numpy.float32), nodata=-3.40282347e38)
        self.succeed("mask", "a.tif", "m.tif")
        self.assertEqual(self.read("m.tif")[0].tolist(), [[0, 255]])

    def test_signed_bytes_compare_signed(self):
        self.make("a.tif", numpy.array([[-1, 1, -128, 127]], numpy.int8), nodata=-128)
        self.succeed("mask", "a.tif", "m.tif")
        self.assertEqual(self.read("m.tif")[0].tolist(), [[255, 255, 0, 255]])

    def test_masks_come_from_the_type_that_was_read(self):
        # 300 becomes 255 as U8, but only the real 255 is NODATA.
        self.make("a.tif", numpy.array([[255, 300, 7]], numpy.uint16), nodata=255)
        self.succeed("mask", "--as", "U8", "a.tif", "m.tif")
        self.assertEqual(self.read("m.tif")[0].tolist(), [[0, 255, 255]])

    def test_one_value_in_place_of_a_raster(self):
        pixels = numpy.arange(1, 13, dtype=numpy.float32).reshape(3, 4)
        self.make("a.tif", pixels)
        self.make("one.tif", numpy.array([[4]], numpy.float32))
        self.succeed("divide", "--divisor-value", "4", "a.tif", "v.tif")
        self.succeed("divide", "a.tif", "one.tif", "f.tif")
        self.succeed("divide", "--dividend-value", "-4", "a.tif", "w.tif")
        numpy.testing.assert_array_equal(self.read("v.tif")[0], pixels / 4)
        numpy.testing.assert_array_equal(self.read("f.tif")[0], pixels / 4)
        numpy.testing.assert_array_equal(self.read("w.tif")[0], numpy.float32(-4) / pixels)
        self.succeed("divide", "--divisor-value", "0", "a.tif", "z.tif")
        self.assertFalse(self.valid("z.tif").any())

    def test_grids_must_agree(self):
        ones = numpy.ones((4, 4), numpy.uint8)
        self.make("a.tif", ones, transform=(100, 10, 0, 200, 0, -10), epsg=32633)
        self.make("near.tif", ones, transform=(100.001, 10, 0, 200, 0, -10), epsg=32633)
        self.make("far.tif", ones, transform=(110, 10, 0, 200, 0, -10), epsg=32633)
        self.make("zone.tif", ones, transform=(100, 10, 0, 200, 0, -10), epsg=32634)
        self.make("bare.tif", ones)
        self.make("wide.tif", numpy.ones((4, 5), numpy.uint8))
        self.succeed("divide", "a.tif", "near.tif", "o1.tif")
        self.succeed("divide", "bare.tif", "a.tif", "o2.tif")
        self.assertEqual(self.open("o2.tif").GetGeoTransform(), (100, 10, 0, 200, 0, -10))
        for other in ("far.tif", "zone.tif", "wide.tif"):
            self.assertIn(other, self.refuse(3, "divide", "a.tif", other, "o3.tif"))

    def test_what_is_no_raster(self):
        (self.folder / "text.tif").write_text("no raster")
        for name in ("text.tif", "absent.tif"):
            self.assertIn(name, self.refuse(3, "info", name))
            self.assertIn(name, self.refuse(3, "mask", name, "o.tif"))


    def test_alpha_counts_wherever_it_stands(self):
        planes = numpy.full((5, 1, 6), 7, numpy.uint16)
        planes[4] = [0, 0, 1, 300, 65534, 65535]
        self.make("a.tif", planes, options=["PHOTOMETRIC=MINISBLACK"])
        raster = gdal.Open(str(self.folder / "a.tif"), gdal.GA_Update)
        raster.GetRasterBand(5).SetColorInterpretation(gdal.GCI_AlphaBand)
        raster = None
        self.succeed("mask", "a.tif", "o.tif")
        self.assertEqual(self.read("o.tif").tolist(), [[[0, 0, 255, 255, 255, 255]]] * 4)

    def test_alpha_of_fractions(self):
        planes = numpy.stack([numpy.full((1, 4), 7), [[0, 0.2, 0.7, 1]]]).astype(numpy.float32)
        self.make("a.tif", planes)
        raster = gdal.Open(str(self.folder / "a.tif"), gdal.GA_Update)
        raster.GetRasterBand(2).SetColorInterpretation(gdal.GCI_AlphaBand)
        raster = None
        self.succeed("mask", "a.tif", "o.tif")
        self.assertEqual(self.read("o.tif")[0].tolist(), [[0, 255, 255, 255]])

    def test_inputs_together_tell_the_place(self):
        reference = osr.SpatialReference()
        reference.ImportFromEPSG(32633)
        transform = [5e5, 10, 0, 4e6, 0, -10]
        for name, has_crs, has_transform in (("c.tif", True, False), ("t.tif", False, True)):
            self.make(name, numpy.ones((4, 4), numpy.uint8))
            raster = gdal.Open(str(self.folder / name), gdal.GA_Update)
            if has_crs:
                raster.SetProjection(reference.ExportToWkt())
            if has_transform:
                raster.SetGeoTransform(transform)
            raster = None
        for first, second in (("c.tif", "t.tif"), ("t.tif", "c.tif")):
            with self.subTest(first=first):
                self.succeed("divide", "--overwrite", first, second, "o.tif")
                result = self.open("o.tif")
                self.assertEqual(list(result.GetGeoTransform()), transform)
                self.assertTrue(result.GetSpatialRef().IsSame(reference))


if __name__ == "__main__":
    command.main()
