"""The output is the same, byte for byte of pixels and mask, for all tile sizes and thread counts."""
import itertools

import harness

TILES = ("64", "256", "1000", "whole", "auto")
THREADS = ("1", "2")


class Tiling(harness.Case):
    def contents(self, name, operation, tile, threads):
        target = self.folder / "out.tif"
        self.rasterops(*operation, "--overwrite", "--tile", tile, "--threads", threads, target)
        raster = harness.Raster(target)
        return raster.pixels.tobytes(), raster.valid.tobytes(), raster.place()

    def check(self, name, operation):
        variants = list(itertools.product(TILES, THREADS))
        first = self.contents(name, operation, *variants[0])
        for variant in variants[1:]:
            self.assertTrue(self.contents(name, operation, *variant) == first, f"{name}, tile and threads {variant}")

    def test_divide_by_itself(self):
        for name in harness.data_rasters():
            with self.subTest(raster=name):
                path = harness.data(name)
                self.check(name, ("divide", path, path))

    def test_ratio_as_float(self):
        for name in ("l8_momotombo_ms6_30m_u16.tif", "l5_canberra_nbar6_border_s16.tif"):
            with self.subTest(raster=name):
                path = harness.data(name)
                bands = ("--dividend-bands", "4,1", "--divisor-bands", "3")
                self.check(name, ("divide", "--as", "F32", *bands, path, path))

    def test_convert_and_mask(self):
        for name in ("dem_exploradores_30m_f32_voids.tif", "ortho_colorado_mask_u8.tif", "bit1_tiled_16.tif"):
            with self.subTest(raster=name):
                path = harness.data(name)
                self.check(name, ("convert", "--ot", "S16", path))
                self.check(name, ("mask", path))


if __name__ == "__main__":
    harness.main()
