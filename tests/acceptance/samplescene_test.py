"""The sample scene: repeatable, complete, and its rasters agree with each other."""
import pathlib
import tempfile

import numpy

import harness

FILES = ("landcover.tif", "landcover.tif.aux.xml", "ms.tif", "pan.tif", "terrain.tif")
WATER, FOREST, GRASS, CROP, ROCK, SNOW, BUILT_UP = range(1, 8)


class SampleScene(harness.Case):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory(prefix="rasterops-acceptance-")
        cls.addClassCleanup(holder.cleanup)
        cls.scene = pathlib.Path(holder.name) / "scene"
        harness.run("sample-scene", cls.scene).check_returncode()

    def test_same_seed_same_bytes(self):
        first = self.scene
        self.assertEqual(sorted(path.name for path in first.iterdir()), sorted(FILES))
        again = self.folder / "again"
        other = self.folder / "other"
        self.rasterops("sample-scene", again)
        self.rasterops("sample-scene", "--seed", "7", other)
        for name in FILES:
            content = (first / name).read_bytes()
            self.assertTrue(content == (again / name).read_bytes(), name)
            if not name.endswith(".xml"):
                self.assertFalse(content == (other / name).read_bytes(), name)

    def test_rasters_lie_on_one_another(self):
        folder = self.scene
        corners = set()
        for name, size in (("terrain", 1024), ("ms", 512), ("pan", 2048), ("landcover", 512)):
            raster = harness.Raster(folder / f"{name}.tif")
            left, pixel, _, top, _, _ = raster.dataset.GetGeoTransform()
            self.assertEqual(raster.pixels.shape[1:], (size, size), name)
            self.assertEqual(raster.bands[0].GetBlockSize(), [256, 256], name)
            self.assertEqual(raster.dataset.GetSpatialRef().GetAuthorityCode(None), "32633", name)
            corners.add((left, top, pixel * size))
        self.assertEqual(len(corners), 1, "one extent for all")

    def test_border_is_the_same_and_slanted(self):
        folder = self.scene
        ms = harness.Raster(folder / "ms.tif")
        pan = harness.Raster(folder / "pan.tif")
        for band in ms.valid[1:]:
            numpy.testing.assert_array_equal(band, ms.valid[0])
        numpy.testing.assert_array_equal(pan.valid[0], ms.valid[0].repeat(4, 0).repeat(4, 1))
        first_valid = ms.valid[0].argmax(axis=1)
        self.assertGreater(first_valid[10], first_valid[500] + 30)
        self.assertGreater(ms.valid.mean(), 0.8)

    def test_pan_is_the_sharper_image(self):
        folder = self.scene
        ms = harness.Raster(folder / "ms.tif")
        pan = harness.Raster(folder / "pan.tif").pixels[0].astype(float)
        coarse = pan.reshape(512, 4, 512, 4).mean(axis=(1, 3))
        weighted = numpy.tensordot([0.16, 0.40, 0.38, 0.06], ms.pixels.astype(float), 1)
        self.assertGreater(numpy.corrcoef(coarse[ms.valid[0]], weighted[ms.valid[0]])[0, 1], 0.999)

    def test_land_cover_shows_in_terrain_and_image(self):
        folder = self.scene
        cover = harness.Raster(folder / "landcover.tif")
        classes = cover.pixels[0]
        self.assertEqual(cover.bands[0].GetCategoryNames()[FOREST], "forest")
        self.assertEqual(cover.bands[0].GetColorTable().GetCount(), 256)
        for value in (WATER, FOREST, GRASS, CROP, ROCK, SNOW, BUILT_UP):
            self.assertGreater((classes == value).sum(), 500, f"class {value}")

        terrain = harness.Raster(folder / "terrain.tif")
        lakes = ~terrain.valid[0][::2, ::2]
        self.assertGreater(lakes.mean(), 0.005)
        self.assertGreater((classes[lakes] == WATER).mean(), 0.9)
        metres = numpy.where(terrain.valid[0], terrain.pixels[0], numpy.nan)[::2, ::2]
        mean = {value: numpy.nanmean(metres[classes == value]) for value in (CROP, FOREST, ROCK, SNOW)}
        self.assertLess(mean[CROP], mean[FOREST])
        self.assertLess(mean[FOREST], mean[ROCK])
        self.assertLess(mean[ROCK], mean[SNOW])

        ms = harness.Raster(folder / "ms.tif")
        _, _, red, infrared = ms.pixels.astype(float)
        ratio = infrared / numpy.maximum(red, 1.0)
        typical = {value: numpy.median(ratio[(classes == value) & ms.valid[0]]) for value in range(1, 8)}
        self.assertLess(typical[WATER], 1.0)
        self.assertLess(typical[SNOW], 1.2)
        self.assertLess(typical[ROCK], 2.0)
        self.assertGreater(typical[FOREST], 4.0)

    def test_files_that_exist_are_kept(self):
        kept = self.folder / "ms.tif"
        kept.write_text("mine")
        self.assertIn("ms.tif", self.refused(4, "sample-scene", self.folder))
        self.assertEqual([path.name for path in self.folder.iterdir()], ["ms.tif"])
        self.assertEqual(kept.read_text(), "mine")

    def test_full_disk(self):
        scene = harness.small_disk(self, "6m") / "scene"
        self.refused(4, "sample-scene", scene)
        self.assertEqual(list(scene.iterdir()), [], "no file of it")

    def test_place_that_cannot_be_made(self):
        taken = self.folder / "taken"
        taken.write_text("a file")
        self.assertIn("taken", self.refused(4, "sample-scene", taken / "scene"))


if __name__ == "__main__":
    harness.main()
