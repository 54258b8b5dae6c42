"""The memory budget: kept, and when it is too small, refused with a figure that is enough."""
import os
import re

import numpy
from osgeo import gdal

import harness

UNITS = {"": 1, "K": 1 << 10, "M": 1 << 20, "G": 1 << 30}


# What this process holds must not hide what the command takes.
gdal.SetCacheMax(16 << 20)


class Memory(harness.Case):
    def raster(self, size):
        path = self.folder / f"{size}.tif"
        raster = gdal.GetDriverByName("GTiff").Create(str(path), size, size, 1, gdal.GDT_Float32, ["TILED=YES"])
        row = numpy.linspace(1.0, 2.0, size, dtype=numpy.float32)
        for top in range(0, size, 512):
            raster.GetRasterBand(1).WriteArray(numpy.tile(row, (512, 1)), 0, top)
        raster.FlushCache()
        return path

    def peak(self, *arguments):
        """Runs the command, which must succeed; gives the most memory it held, in bytes, or that this process
        holds if that is more: the system counts from before the program is loaded."""
        child = os.posix_spawn(harness.COMMAND, [harness.COMMAND, *map(str, arguments)], os.environ)
        _, status, usage = os.wait4(child, 0)
        self.assertEqual(os.waitstatus_to_exitcode(status), 0)
        return usage.ru_maxrss << 10

    def test_too_small_a_budget_says_how_much_it_takes(self):
        path = self.raster(2048)
        operation = ("divide", "--tile", "whole", path, path, self.folder / "out.tif")
        line = self.refused(5, *operation, "--memory", "1M")
        self.assertEqual([entry.name for entry in self.folder.iterdir()], ["2048.tif"])
        needed = [
            float(number) * UNITS[unit] for number, unit in re.findall(r"(\d+(?:\.\d+)?) ?([KMG]?)(?:i?B)?\b", line)
        ]
        takes = max(needed)
        self.assertGreater(takes, 3 * 2048 * 2048 * 4, line)
        self.rasterops(*operation, "--memory", str(int(takes) + (1 << 20)))

    def test_budget_is_kept(self):
        path = self.raster(8192)
        budget = 192 << 20
        operation = ("divide", "--memory", str(budget), path, path, self.folder / "out.tif")
        self.assertLess(self.peak(*operation), budget)


if __name__ == "__main__":
    harness.main()
