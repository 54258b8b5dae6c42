"""Band ratios of real scenes equal what GDAL and NumPy compute, on every pixel, mask included."""
import numpy

import harness


class Ratio(harness.Case):
    def check(self, name, dividend=4, divisor=3):
        source = harness.data(name)
        target = self.folder / "ratio.tif"
        self.rasterops(
            "divide", "--as", "F32", "--dividend-bands", dividend, "--divisor-bands", divisor, source, source, target
        )
        over = harness.Raster(source, [dividend])
        under = harness.Raster(source, [divisor])
        result = harness.Raster(target)
        x = over.pixels.astype(numpy.float32)
        y = under.pixels.astype(numpy.float32)
        valid = over.valid & under.valid & (y != 0)
        with numpy.errstate(divide="ignore", invalid="ignore"):
            expected = x / y
        self.assertTrue(valid.any())
        numpy.testing.assert_array_equal(result.valid, valid, name)
        self.assert_same_pixels(result.pixels, expected, valid, name)
        self.assertEqual(result.place(), over.place(), name)
        return valid

    def test_whole_scene_of_valid_pixels(self):
        self.assertTrue(self.check("l8_momotombo_ms6_30m_u16.tif").all())

    def test_scene_edge_that_differs_by_band(self):
        valid = self.check("l5_canberra_nbar6_border_s16.tif")
        self.assertFalse(valid.all())

    def test_bands_in_the_other_order(self):
        self.check("l5_canberra_nbar6_border_s16.tif", dividend=1, divisor=6)

    def test_slanted_nodata_border(self):
        valid = self.check("l8_newyork_ms7_nodata_u16.tif")
        self.assertFalse(valid.all())


if __name__ == "__main__":
    harness.main()
