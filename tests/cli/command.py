"""What the tests of the command share: running it, and making and reading small rasters.

Environment: RASTEROPS_COMMAND is the program under test. The process exits with 77 where GDAL's Python is
missing.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

try:
    import numpy
    from osgeo import gdal, osr
except ImportError as missing:
    print(f"skipped: {missing} (python3-gdal, python3-numpy)")
    sys.exit(77)

gdal.UseExceptions()

COMMAND = os.environ["RASTEROPS_COMMAND"]

GDAL_TYPES = {
    "uint8": gdal.GDT_Byte,
    "int8": gdal.GDT_Byte,
    "uint16": gdal.GDT_UInt16,
    "int16": gdal.GDT_Int16,
    "uint32": gdal.GDT_UInt32,
    "int32": gdal.GDT_Int32,
    "float32": gdal.GDT_Float32,
    "float64": gdal.GDT_Float64,
    "complex64": gdal.GDT_CFloat32,
    "complex128": gdal.GDT_CFloat64,
    "int64": gdal.GDT_Int64,
}


class Case(unittest.TestCase):
    """A test with a folder of its own, `self.folder`, removed afterwards."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory(prefix="rasterops-cli-")
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def run_command(self, *arguments, **options):
        return subprocess.run(
            [COMMAND, *map(str, arguments)], capture_output=True, text=True, check=False, timeout=120,
            cwd=self.folder, **options
        )

    def succeed(self, *arguments, warnings=0):
        """Runs the command, which must succeed with so many warning lines; gives the process."""
        done = self.run_command(*arguments)
        self.assertEqual(done.returncode, 0, done.stderr)
        lines = done.stderr.splitlines()
        self.assertEqual(len(lines), warnings, done.stderr)
        for line in lines:
            self.assertIn("warning", line)
        return done

    def refuse(self, code, *arguments):
        """Runs the command, which must fail with `code` and one line, and leave no file; gives the line."""
        before = sorted(path.name for path in self.folder.iterdir())
        done = self.run_command(*arguments)
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), before, "files were left")
        return done.stderr

    def make(self, name, pixels, nodata=None, mask=None, options=(), transform=None, epsg=None, driver="GTiff"):
        """Writes a raster of one band (2-D array) or several (3-D)."""
        pixels = numpy.asarray(pixels)
        planes = pixels if pixels.ndim == 3 else pixels[None]
        options = list(options)
        if planes.dtype == numpy.int8:
            options.append("PIXELTYPE=SIGNEDBYTE")
            planes = planes.view(numpy.uint8)
        count, height, width = planes.shape
        kind = GDAL_TYPES[pixels.dtype.name]
        raster = gdal.GetDriverByName(driver).Create(str(self.folder / name), width, height, count, kind, options)
        if transform:
            raster.SetGeoTransform(transform)
        if epsg:
            reference = osr.SpatialReference()
            reference.ImportFromEPSG(epsg)
            raster.SetSpatialRef(reference)
        for i, plane in enumerate(planes):
            band = raster.GetRasterBand(i + 1)
            if nodata is not None:
                band.SetNoDataValue(nodata)
            band.WriteArray(plane)
        if mask is not None:
            gdal.SetConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES")
            raster.CreateMaskBand(gdal.GMF_PER_DATASET)
            gdal.SetConfigOption("GDAL_TIFF_INTERNAL_MASK", None)
            raster.GetRasterBand(1).GetMaskBand().WriteArray(numpy.where(mask, 255, 0).astype(numpy.uint8))
        raster.FlushCache()
        return name

    def open(self, name):
        """Opens a raster and keeps it open until the next one: its bands do not."""
        self.kept = gdal.Open(str(self.folder / name))
        return self.kept

    def band(self, name):
        return self.open(name).GetRasterBand(1)

    def read(self, name):
        """Pixels of all bands, as a 3-D array."""
        raster = self.open(name)
        planes = []
        for i in range(raster.RasterCount):
            band = raster.GetRasterBand(i + 1)
            plane = band.ReadAsArray()
            signed = band.GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE") == "SIGNEDBYTE"
            planes.append(plane.view(numpy.int8) if signed else plane)
        return numpy.stack(planes)

    def valid(self, name):
        """Where GDAL sees valid pixels, as a 3-D array."""
        raster = self.open(name)
        masks = [raster.GetRasterBand(i + 1).GetMaskBand().ReadAsArray() for i in range(raster.RasterCount)]
        return numpy.stack(masks) != 0

    def flags(self, name):
        return self.band(name).GetMaskFlags()

    def nodata(self, name):
        return self.band(name).GetNoDataValue()


def main():
    program = unittest.main(exit=False, verbosity=1)
    result = program.result
    for test, reason in result.skipped:
        print(f"skipped: {test}: {reason}")
    sys.exit(0 if result.wasSuccessful() else 1)
