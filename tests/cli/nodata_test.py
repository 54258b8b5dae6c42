"""How outputs tell their invalid pixels: values, NaN, masks, and what is lost is said."""
import numpy
from osgeo import gdal

import command


class NoData(command.Case):
    def test_the_inputs_value_goes_on(self):
        self.make("a.tif", numpy.array([[10, -999, 30]], numpy.int16), nodata=-999)
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertEqual(self.nodata("o.tif"), -999)
        self.assertEqual(self.read("o.tif")[0].tolist(), [[1, -999, 1]])

    def test_the_first_value_that_is_declared_counts(self):
        self.make("a.tif", numpy.array([[10, 20]], numpy.int16))
        self.make("b.tif", numpy.array([[10, 0]], numpy.int16), nodata=-5)
        self.succeed("divide", "a.tif", "b.tif", "o.tif")
        self.assertEqual(self.nodata("o.tif"), -5)
        self.assertEqual(self.read("o.tif")[0].tolist(), [[1, -5]])

    def test_floats_without_a_value_get_nan(self):
        self.make("a.tif", numpy.array([[1, 0, 4]], numpy.float32))
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertTrue(numpy.isnan(self.nodata("o.tif")))
        self.assertEqual(self.valid("o.tif")[0].tolist(), [[True, False, True]])
        self.assertTrue(numpy.isnan(self.read("o.tif")[0, 0, 1]))

    def test_complex_outputs_get_nan_and_come_back(self):
        self.make("a.tif", numpy.array([[1 + 1j, 0, 4]], numpy.complex64))
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertTrue(numpy.isnan(self.read("o.tif")[0, 0, 1].real))
        self.assertEqual(self.read("o.tif")[0, 0, 1].imag, 0)
        self.succeed("mask", "o.tif", "m.tif")
        self.assertEqual(self.read("m.tif")[0].tolist(), [[255, 0, 255]])

    def test_integers_without_a_value_get_a_mask(self):
        self.make("a.tif", numpy.array([[6, 0, 4]], numpy.uint8))
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertIsNone(self.nodata("o.tif"))
        self.assertEqual(self.flags("o.tif"), gdal.GMF_PER_DATASET)
        self.assertEqual(self.valid("o.tif")[0].tolist(), [[True, False, True]])
        self.assertEqual(self.read("o.tif")[0].tolist(), [[1, 0, 1]])
        self.assertEqual([path.name for path in self.folder.glob("o.tif*")], ["o.tif"], "the mask lies inside")

    def test_an_all_valid_result_has_no_mask(self):
        self.make("a.tif", numpy.full((600, 600), 3, numpy.uint8))
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertEqual(self.flags("o.tif"), gdal.GMF_ALL_VALID)

    def test_a_mask_that_starts_late_is_whole(self):
        pixels = numpy.ones((1500, 1100), numpy.uint8)
        pixels[1400, 1000] = 0
        self.make("a.tif", pixels)
        for threads in ("1", "2"):
            self.succeed("divide", "--threads", threads, "--overwrite", "a.tif", "a.tif", "o.tif")
            numpy.testing.assert_array_equal(self.valid("o.tif")[0], pixels != 0)

    def test_none_asks_for_a_mask(self):
        self.make("a.tif", numpy.array([[1, -1, 4]], numpy.float32), nodata=-1)
        self.succeed("divide", "--output-nodata", "none", "a.tif", "a.tif", "o.tif")
        self.assertIsNone(self.nodata("o.tif"))
        self.assertEqual(self.valid("o.tif")[0].tolist(), [[True, False, True]])
        self.assertEqual(self.read("o.tif")[0].tolist(), [[1, 0, 1]])

    def test_the_users_value(self):
        self.make("a.tif", numpy.array([[6, 0, 4]], numpy.uint8))
        self.succeed("divide", "--output-nodata", "255", "a.tif", "a.tif", "o.tif")
        self.assertEqual(self.nodata("o.tif"), 255)
        self.assertEqual(self.read("o.tif")[0].tolist(), [[1, 255, 1]])

    def test_valid_results_that_equal_the_value_are_counted(self):
        self.make("a.tif", numpy.array([[6, 8, 5]], numpy.uint8))
        done = self.succeed("divide", "--output-nodata", "1", "a.tif", "a.tif", "o.tif", warnings=1)
        self.assertIn(" 3 valid", done.stderr)
        self.assertIn("--output-nodata", done.stderr)

    def test_valid_nan_is_counted_where_nan_is_declared(self):
        self.make("a.tif", numpy.array([[numpy.nan, 8, 5]], numpy.float32))
        done = self.succeed("divide", "--divisor-value", "2", "a.tif", "o.tif", warnings=1)
        self.assertIn(" 1 valid", done.stderr)
        self.succeed("divide", "--divisor-value", "2", "--output-nodata", "none", "a.tif", "p.tif")
        self.assertEqual(self.flags("p.tif"), gdal.GMF_ALL_VALID)

    def test_masks_that_differ_by_band(self):
        planes = numpy.array([[[6, 0, 4]], [[6, 6, 0]]], numpy.uint8)
        self.make("a.tif", planes)
        done = self.succeed("divide", "a.tif", "a.tif", "o.tif", warnings=1)
        self.assertIn(" 2 pixels", done.stderr)
        self.assertEqual(self.valid("o.tif").tolist(), [[[True, False, False]], [[True, False, False]]])
        self.assertEqual(self.read("o.tif").tolist(), [[[1, 0, 1]], [[1, 1, 0]]])
        self.succeed("divide", "--output-nodata", "255", "a.tif", "a.tif", "p.tif")
        self.assertEqual(self.valid("p.tif").tolist(), [[[True, False, True]], [[True, True, False]]])

    def test_nothing_valid_at_all(self):
        self.make("a.tif", numpy.zeros((3, 3), numpy.int16), nodata=0)
        self.succeed("divide", "a.tif", "a.tif", "o.tif")
        self.assertFalse(self.valid("o.tif").any())
        self.assertTrue((self.read("o.tif") == 0).all())
        self.succeed("divide", "--output-nodata", "-7", "a.tif", "a.tif", "p.tif")
        self.assertTrue((self.read("p.tif") == -7).all())

    def test_a_mask_goes_through_convert(self):
        mask = numpy.eye(20) == 0
        self.make("a.tif", numpy.full((20, 20), 200, numpy.uint8), mask=mask)
        self.succeed("convert", "--ot", "S8", "a.tif", "o.tif")
        numpy.testing.assert_array_equal(self.valid("o.tif")[0], mask)
        numpy.testing.assert_array_equal(self.read("o.tif")[0], numpy.where(mask, 127, 0))
        self.succeed("convert", "--ot", "F32", "a.tif", "p.tif")
        numpy.testing.assert_array_equal(~numpy.isnan(self.read("p.tif")[0]), mask)

    def test_mask_declares_nothing(self):
        self.make("a.tif", numpy.array([[1, 0]], numpy.uint8), nodata=0)
        self.succeed("mask", "a.tif", "m.tif")
        self.assertIsNone(self.nodata("m.tif"))
        self.assertEqual(self.flags("m.tif"), gdal.GMF_ALL_VALID)
        self.assertEqual(self.read("m.tif")[0].tolist(), [[255, 0]])


if __name__ == "__main__":
    command.main()
