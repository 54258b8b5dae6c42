"""What is left, said and returned when a run does not end well."""
import contextlib
import os
import signal
import subprocess
import time

import numpy
from osgeo import gdal

import harness


class Failure(harness.Case):
    def big_raster(self):
        """About 150 MB, so that a run can be met in the middle."""
        path = self.folder / "big.tif"
        size = 6144
        options = ["TILED=YES", "BIGTIFF=NO"]
        raster = gdal.GetDriverByName("GTiff").Create(str(path), size, size, 1, gdal.GDT_Float32, options)
        row = numpy.linspace(1.0, 2.0, size, dtype=numpy.float32)
        for top in range(0, size, 512):
            raster.GetRasterBand(1).WriteArray(numpy.tile(row, (512, 1)), 0, top)
        raster.FlushCache()
        return path

    def small_raster(self, name="small.tif"):
        path = self.folder / name
        raster = gdal.GetDriverByName("GTiff").Create(str(path), 40, 30, 1, gdal.GDT_Byte)
        raster.GetRasterBand(1).WriteArray(numpy.full((30, 40), 7, numpy.uint8))
        raster.FlushCache()
        return path

    @staticmethod
    def written(output):
        """Bytes under a folder while it changes."""
        total = 0
        for folder, _, names in os.walk(output):
            for name in names:
                with contextlib.suppress(FileNotFoundError):
                    total += os.stat(os.path.join(folder, name)).st_size
        return total

    def interrupt(self, how):
        """Sends a signal once the run writes; gives the finished process and the target's folder."""
        big = self.big_raster()
        output = self.folder / "output"
        output.mkdir()
        target = output / "out.tif"
        target.write_bytes(b"what was there before")
        run = subprocess.Popen(
            [harness.COMMAND, "divide", "--overwrite", "--tile", "256", "--threads", "1", str(big), str(big), str(target)],
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            text=True,
        )
        deadline = time.monotonic() + 60
        while run.poll() is None and time.monotonic() < deadline:
            if self.written(output) > 1 << 22:
                break
            time.sleep(0.001)
        self.assertIsNone(run.poll(), "the run ended before it could be met")
        run.send_signal(how)
        _, stderr = run.communicate(timeout=60)
        self.assertEqual(target.read_bytes(), b"what was there before")
        return run.returncode, stderr, output

    def test_kill_leaves_the_target_as_it_was(self):
        code, _, output = self.interrupt(signal.SIGKILL)
        self.assertEqual(code, -signal.SIGKILL)
        # What the killed run left does not stand in the way of the next one.
        small = self.small_raster()
        self.rasterops("divide", "--overwrite", small, small, output / "out.tif")
        self.assertTrue((harness.Raster(output / "out.tif").pixels == 1).all())

    def check_cancelled(self, how):
        code, stderr, output = self.interrupt(how)
        self.assertEqual(code, 130, stderr)
        self.assertEqual([path.name for path in output.iterdir()], ["out.tif"])
        self.assertLessEqual(len(stderr.splitlines()), 1, stderr)

    def test_interrupt_leaves_nothing(self):
        self.check_cancelled(signal.SIGINT)

    def test_termination_leaves_nothing(self):
        self.check_cancelled(signal.SIGTERM)

    def test_full_disk(self):
        big = self.big_raster()
        disk = harness.small_disk(self, "8m")
        for options in ([], ["--of", "COG"], ["--threads", "2", "--tile", "512"]):
            with self.subTest(options=options):
                line = self.refused(4, "divide", *options, big, big, disk / "out.tif")
                self.assertIn("out.tif", line)
                self.assertEqual(list(disk.iterdir()), [], "no output and no temporary file")

    def test_folder_that_does_not_exist(self):
        small = self.small_raster()
        line = self.refused(4, "divide", small, small, self.folder / "absent" / "out.tif")
        self.assertIn("absent", line)

    def test_folder_that_cannot_be_written(self):
        small = self.small_raster()
        if os.geteuid() == 0:
            folder = "/proc"  # where even root makes no file
        else:
            folder = self.folder / "closed"
            folder.mkdir(mode=0o555)
        line = self.refused(4, "divide", small, small, f"{folder}/out.tif")
        self.assertIn(str(folder), line)

    def test_refusal_comes_before_any_work(self):
        # The corrupt tile would be met first if pixels were read.
        broken = harness.data("corrupt_jpeg_tile.tif")
        self.refused(4, "divide", broken, broken, self.folder / "absent" / "out.tif")

    def test_existing_output(self):
        small = self.small_raster()
        target = self.small_raster("out.tif")
        before = target.read_bytes()
        line = self.refused(4, "divide", small, small, target)
        self.assertIn("--overwrite", line)
        self.assertEqual(target.read_bytes(), before)
        self.rasterops("divide", "--overwrite", small, small, target)
        self.assertNotEqual(target.read_bytes(), before)

    def test_output_onto_its_own_input(self):
        small = self.small_raster()
        self.rasterops("divide", "--overwrite", small, small, small)
        self.assertTrue((harness.Raster(small).pixels == 1).all())

    def test_missing_input(self):
        line = self.refused(3, "convert", "--ot", "F32", self.folder / "none.tif", self.folder / "out.tif")
        self.assertIn("none.tif", line)

    def test_inputs_that_do_not_fit(self):
        small = self.small_raster()
        other = self.folder / "other.tif"
        gdal.GetDriverByName("GTiff").Create(str(other), 41, 30, 1, gdal.GDT_Byte).FlushCache()
        self.refused(3, "divide", small, other, self.folder / "out.tif")
        self.assertFalse((self.folder / "out.tif").exists())


if __name__ == "__main__":
    harness.main()
