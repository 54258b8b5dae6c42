"""What the acceptance tests share: running the command, reading rasters as GDAL sees them.

Environment: RASTEROPS_COMMAND is the program under test, RASTEROPS_TEST_DATA the folder of real rasters.
A test file ends with `harness.main()`; the process exits with 77 if nothing could be tested.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

try:
    import numpy
    from osgeo import gdal
except ImportError as missing:
    print(f"skipped: {missing} (python3-gdal, python3-numpy)")
    sys.exit(77)

gdal.UseExceptions()

COMMAND = os.environ["RASTEROPS_COMMAND"]
DATA = os.environ.get("RASTEROPS_TEST_DATA", "")

# What the data folder says of itself: opening or reading these must fail.
CORRUPT = ("corrupt_garbage.tif", "corrupt_jpeg_tile.tif", "corrupt_truncated_strips_f32.tif")


def data(name):
    """Path of a real raster; the test is skipped where it is absent."""
    if not DATA:
        raise unittest.SkipTest("RASTEROPS_TEST_DATA is not set")
    path = os.path.join(DATA, name)
    if not os.path.exists(path):
        raise unittest.SkipTest(f"{path} does not exist")
    return path


def data_rasters():
    """Names of all sound rasters of the data folder."""
    if not DATA:
        raise unittest.SkipTest("RASTEROPS_TEST_DATA is not set")
    names = sorted(path.name for path in pathlib.Path(DATA).glob("*.tif"))
    if not names:
        raise unittest.SkipTest(f"{DATA} holds no rasters")
    return [name for name in names if name not in CORRUPT]


def run(*arguments, **options):
    """Runs the command; gives the finished process with text output."""
    return subprocess.run(
        [COMMAND, *map(str, arguments)], capture_output=True, text=True, check=False, timeout=300, **options
    )


def small_disk(case, size):
    """A file system of its own for a test, `size` large; the test is skipped where it can't be made."""
    disk = case.folder / "disk"
    disk.mkdir()
    mount = ["mount", "-t", "tmpfs", "-o", f"size={size}", "tmpfs", str(disk)]
    if os.geteuid() != 0 or subprocess.run(mount, capture_output=True, check=False).returncode != 0:
        raise unittest.SkipTest("making a small disk needs root and the right to mount")
    case.addCleanup(subprocess.run, ["umount", str(disk)], check=True)
    return disk


class Case(unittest.TestCase):
    """A test with a folder of its own, `self.folder`, removed afterwards."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory(prefix="rasterops-acceptance-")
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def rasterops(self, *arguments):
        """Runs the command, which must succeed."""
        done = run(*arguments)
        self.assertEqual(done.returncode, 0, f"{' '.join(map(str, arguments))}\n{done.stderr}")
        return done

    def refused(self, code, *arguments, **options):
        """Runs the command, which must fail with `code` and one line; gives the line."""
        done = run(*arguments, **options)
        text = f"{' '.join(map(str, arguments))}\n{done.stderr}"
        self.assertEqual(done.returncode, code, text)
        self.assertEqual(len(done.stderr.splitlines()), 1, text)
        return done.stderr.strip()

    def assert_same_pixels(self, got, expected, valid, message):
        """Equal to the bit where `valid`, NaN for NaN."""
        self.assertEqual(got.shape, expected.shape, message)
        self.assertEqual(got.dtype, expected.dtype, message)
        same = (got == expected) | ((got != got) & (expected != expected))
        wrong = ~same & valid
        if wrong.any():
            where = tuple(index[0] for index in numpy.nonzero(wrong))
            self.fail(
                f"{message}: {int(wrong.sum())} pixels differ, the first at {where}: "
                f"{got[where]} in place of {expected[where]}"
            )


class Raster:
    """Pixels, masks and metadata of a file, all bands, as GDAL reads them."""

    def __init__(self, path, bands=None):
        self.dataset = gdal.Open(str(path))
        self.numbers = bands or range(1, self.dataset.RasterCount + 1)
        self.bands = [self.dataset.GetRasterBand(number) for number in self.numbers]
        self.pixels = numpy.stack([self._pixels(band) for band in self.bands])
        self.valid = numpy.stack([self._valid(band) for band in self.bands])

    @staticmethod
    def _pixels(band):
        pixels = band.ReadAsArray()
        # GDAL 3.6 has no type of its own for signed bytes.
        signed = band.GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE") == "SIGNEDBYTE"
        return pixels.view(numpy.int8) if signed else pixels

    @staticmethod
    def _valid(band):
        return band.GetMaskBand().ReadAsArray() != 0

    @property
    def bits(self):
        """Bits of a pixel where they are fewer than the type has, as text, or None."""
        return self.bands[0].GetMetadataItem("NBITS", "IMAGE_STRUCTURE")

    def place(self):
        """All that ties pixels to the ground."""
        gcps = [(g.GCPPixel, g.GCPLine, g.GCPX, g.GCPY, g.GCPZ) for g in self.dataset.GetGCPs()]
        crs = self.dataset.GetSpatialRef()
        gcp_crs = self.dataset.GetGCPSpatialRef()
        return (
            self.dataset.GetGeoTransform(can_return_null=True),
            crs.ExportToWkt() if crs else None,
            gcps,
            gcp_crs.ExportToWkt() if gcp_crs else None,
        )


def main():
    program = unittest.main(exit=False, verbosity=1)
    result = program.result
    for test, reason in result.skipped:
        print(f"skipped: {test}: {reason}")
    # A test may be skipped once for each of its subtests.
    skipped = {getattr(test, "test_case", test).id() for test, _ in result.skipped}
    if result.wasSuccessful() and result.testsRun == len(skipped):
        sys.exit(77)
    sys.exit(0 if result.wasSuccessful() else 1)
