"""Every raster of the data folder goes through info, convert, mask and divide: the right result, or one clear
line for the corrupt ones."""
import csv
import json

import numpy
from osgeo import gdal

import harness

TYPES = {
    gdal.GDT_Byte: "U8",
    gdal.GDT_UInt16: "U16",
    gdal.GDT_Int16: "S16",
    gdal.GDT_UInt32: "U32",
    gdal.GDT_Int32: "S32",
    gdal.GDT_Float32: "F32",
    gdal.GDT_Float64: "F64",
    gdal.GDT_CInt16: "C64",
    gdal.GDT_CInt32: "C128",
    gdal.GDT_CFloat32: "C64",
    gdal.GDT_CFloat64: "C128",
}


def pixel_type(raster):
    """The pixel type by the command's name for it."""
    if raster.bits in ("1", "2", "4"):
        return "U" + raster.bits
    return "S8" if raster.pixels.dtype == numpy.int8 else TYPES[raster.bands[0].DataType]


def quotient_by_itself(pixels):
    """x / x, in the steps that define division for the type."""
    with numpy.errstate(all="ignore"):
        if not numpy.iscomplexobj(pixels):
            return numpy.where(pixels != 0, pixels / pixels, 0).astype(pixels.dtype)
        c, d = pixels.real, pixels.imag
        n = c * c + d * d
        quotient = numpy.empty_like(pixels)
        quotient.real = (c * c + d * d) / n
        quotient.imag = (d * c - c * d) / n
        return quotient


def facts():
    """Rows of the data folder's own table, by file and band."""
    with open(harness.data("facts.csv"), newline="", encoding="utf-8") as table:
        return {(row["file"], int(row["band"])): row for row in csv.DictReader(table)}


class SoundRasters(harness.Case):
    def each(self, check):
        """Calls check(name, path, raster) for all rasters, whichever fail."""
        for name in harness.data_rasters():
            with self.subTest(raster=name):
                path = harness.data(name)
                check(name, path, harness.Raster(path))

    def output_valid(self, expected, result):
        """What validity the output can show: one mask for the file, if it has one, holds a pixel valid where
        all bands are."""
        if result.bands[0].GetMaskFlags() == gdal.GMF_PER_DATASET:
            return numpy.broadcast_to(expected.all(axis=0), expected.shape)
        return expected

    def test_info_agrees_with_the_facts(self):
        known = facts()

        def check(name, path, raster):
            report = json.loads(self.rasterops("info", "--json", path).stdout)
            self.assertEqual((report["width"], report["height"]), raster.pixels.shape[:0:-1], name)
            self.assertEqual(len(report["bands"]), len(raster.bands), name)
            for number, band in enumerate(report["bands"], 1):
                fact = known[name, number]
                valid = int(fact["valid"])
                pixels = int(fact["width"]) * int(fact["height"])
                condition = "ALLDATA" if valid == pixels else "SOMEDATA" if valid else "NODATA"
                self.assertEqual(band["condition"], condition, f"{name} band {number}")
                self.assertEqual(band["type"], pixel_type(raster), name)
                self.assertEqual(int(raster.valid[number - 1].sum()), valid, f"{name} band {number}")

        self.each(check)

    def test_convert_to_f32(self):
        def check(name, path, raster):
            result = self.convert(path, "F32")
            pixels = raster.pixels.real if numpy.iscomplexobj(raster.pixels) else raster.pixels
            self.compare(name, raster, result, pixels.astype(numpy.float32))

        self.each(check)

    def test_convert_to_c64(self):
        def check(name, path, raster):
            self.compare(name, raster, self.convert(path, "C64"), raster.pixels.astype(numpy.complex64))

        self.each(check)

    def test_convert_to_its_own_type(self):
        def check(name, path, raster):
            result = self.convert(path, pixel_type(raster))
            self.compare(name, raster, result, raster.pixels)
            self.assertEqual(pixel_type(result), pixel_type(raster), name)

        self.each(check)

    def test_mask(self):
        def check(name, path, raster):
            target = self.folder / "mask.tif"
            self.rasterops("mask", "--overwrite", path, target)
            expected = numpy.where(raster.valid, 255, 0).astype(numpy.uint8)
            numpy.testing.assert_array_equal(harness.Raster(target).pixels, expected, name)

        self.each(check)

    def test_divide_by_itself(self):
        def check(name, path, raster):
            target = self.folder / "out.tif"
            self.rasterops("divide", "--overwrite", path, path, target)
            result = harness.Raster(target)
            valid = raster.valid & (raster.pixels != 0)
            self.assert_same_pixels(result.pixels, quotient_by_itself(raster.pixels), valid, name)
            numpy.testing.assert_array_equal(result.valid, self.output_valid(valid, result), name)
            self.assertEqual(result.place(), raster.place(), name)
            self.assertEqual(pixel_type(result), pixel_type(raster), name)

        self.each(check)

    def convert(self, path, pixel_type_name):
        target = self.folder / "out.tif"
        self.rasterops("convert", "--overwrite", "--ot", pixel_type_name, path, target)
        return harness.Raster(target)

    def compare(self, name, raster, result, expected):
        self.assert_same_pixels(result.pixels, expected, raster.valid, name)
        numpy.testing.assert_array_equal(result.valid, self.output_valid(raster.valid, result), name)
        self.assertEqual(result.place(), raster.place(), name)


class CorruptRasters(harness.Case):
    def check(self, name, *operation):
        path = harness.data(name)
        inputs = [path] * (2 if operation[0] == "divide" else 1)
        line = self.refused(3, *operation, *inputs, self.folder / "out.tif")
        self.assertIn(name, line)
        self.assertEqual(list(self.folder.iterdir()), [], "nothing is left behind")

    def test_convert(self):
        for name in harness.CORRUPT:
            with self.subTest(raster=name):
                self.check(name, "convert", "--ot", "F64")

    def test_divide(self):
        for name in harness.CORRUPT:
            for tile in ("64", "whole"):
                with self.subTest(raster=name, tile=tile):
                    self.check(name, "divide", "--tile", tile)

    def test_info_of_what_does_not_open(self):
        self.assertIn("corrupt_garbage.tif", self.refused(3, "info", harness.data("corrupt_garbage.tif")))


if __name__ == "__main__":
    harness.main()
