"""Odd shapes, and results that depend on neither tiles nor threads."""
import itertools
import re

import numpy

import command


class Tiles(command.Case):
    def check(self, operation, layouts=((),)):
        """All tile sizes, thread counts and output layouts give the same pixels and masks."""
        expected = None
        for tile, threads, layout in itertools.product(("16", "100x33", "whole", "auto"), ("1", "3"), layouts):
            variant = ("--tile", tile, "--threads", threads, "--overwrite", *layout)
            self.succeed(*operation, *variant, "o.tif")
            got = self.read("o.tif").tobytes(), self.valid("o.tif").tobytes()
            expected = expected or got
            self.assertTrue(got == expected, variant)

    def test_results_do_not_depend_on_tiles(self):
        random = numpy.random.default_rng(3)
        layouts = ((), ("--co", "INTERLEAVE=PIXEL"), ("--co", "COMPRESS=LZW"), ("--co", "TILED=NO"), ("--of", "COG"))
        for dtype in (numpy.uint8, numpy.float32, numpy.complex64):
            with self.subTest(dtype=dtype.__name__):
                self.make("a.tif", random.integers(0, 5, (2, 150, 210)).astype(dtype), nodata=3,
                          options=["INTERLEAVE=PIXEL"])
                self.make("b.tif", random.integers(0, 4, (150, 210)).astype(dtype),
                          options=["TILED=YES", "BLOCKXSIZE=32", "BLOCKYSIZE=16"])
                self.check(("divide", "-q", "--output-nodata", "77", "a.tif", "b.tif"), layouts)

    def test_masks_do_not_depend_on_tiles(self):
        random = numpy.random.default_rng(4)
        self.make("a.tif", random.integers(0, 255, (150, 210)).astype(numpy.uint8), mask=random.random((150, 210)) > 0.3)
        self.check(("convert", "--ot", "U16", "a.tif"))
        self.check(("mask", "a.tif"))

    def test_one_pixel(self):
        self.make("a.tif", numpy.array([[6]], numpy.uint8))
        self.make("b.tif", numpy.array([[4]], numpy.uint8))
        self.succeed("divide", "--as", "F32", "a.tif", "b.tif", "o.tif")
        self.assertEqual(self.read("o.tif").tolist(), [[[1.5]]])
        self.make("z.tif", numpy.array([[0]], numpy.uint8))
        self.succeed("divide", "a.tif", "z.tif", "p.tif")
        self.assertEqual(self.valid("p.tif").tolist(), [[[False]]])

    def test_an_edge_tile_of_one_pixel_is_no_single_value(self):
        pixels = numpy.arange(1, 1090, dtype=numpy.float32).reshape(33, 33)
        self.make("a.tif", pixels)
        self.make("b.tif", pixels[::-1].copy())
        self.succeed("divide", "--tile", "16", "a.tif", "b.tif", "o.tif")
        numpy.testing.assert_array_equal(self.read("o.tif")[0], pixels / pixels[::-1])

    def test_long_and_narrow(self):
        for shape in ((1, 100000), (100000, 1)):
            with self.subTest(shape=shape):
                pixels = numpy.arange(100000, dtype=numpy.float64).reshape(shape)
                self.make("a.tif", pixels, nodata=5)
                self.succeed("divide", "--divisor-value", "8", "--overwrite", "--threads", "2", "a.tif", "o.tif",
                             warnings=1)  # 40 / 8 is 5
                expected = pixels / 8
                expected[pixels == 5] = 5
                numpy.testing.assert_array_equal(self.read("o.tif")[0], expected)

    def test_strips_and_tiles_of_any_byte_order(self):
        pixels = numpy.random.default_rng(5).integers(1, 60000, (3, 77, 130)).astype(numpy.uint16)
        layouts = (["BLOCKYSIZE=1"], ["BLOCKYSIZE=77"], ["INTERLEAVE=BAND", "BLOCKYSIZE=5"], ["TILED=YES", "BLOCKXSIZE=16",
                   "BLOCKYSIZE=32"], ["ENDIANNESS=BIG"], ["TILED=YES", "INTERLEAVE=BAND", "ENDIANNESS=BIG"])
        for layout in layouts:
            with self.subTest(layout=layout):
                self.make("a.tif", pixels, options=layout)
                self.succeed("convert", "--ot", "S32", "--overwrite", "a.tif", "o.tif")
                numpy.testing.assert_array_equal(self.read("o.tif"), pixels)
                self.succeed("convert", "--ot", "S32", "--overwrite", "--tile", "16", "a.tif", "o.tif")
                numpy.testing.assert_array_equal(self.read("o.tif"), pixels)

    def test_memory_budgets_give_the_same_result(self):
        pixels = numpy.random.default_rng(6).integers(1, 100, (700, 900)).astype(numpy.float64)
        self.make("a.tif", pixels)
        operation = ("divide", "--divisor-value", "7", "a.tif", "o.tif")
        least = re.search(r"--memory (\d+M)", self.refuse(5, *operation, "--memory", "1M")).group(1)
        for memory in ("1G", least):
            self.succeed(*operation, "--memory", memory, "--overwrite")
            numpy.testing.assert_array_equal(self.read("o.tif")[0], pixels / 7)


if __name__ == "__main__":
    command.main()
