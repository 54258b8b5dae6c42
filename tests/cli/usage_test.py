"""What the command says of itself, and how it refuses what makes no sense."""
import json
import shutil
import subprocess
import unittest

import numpy

import command


class Usage(command.Case):
    def test_version(self):
        self.assertRegex(self.succeed("--version").stdout, r"^rasterops \d+\.\d+\.\d+ \(GDAL \d")

    def test_help_names_every_operator_and_exit_status(self):
        text = self.succeed("--help").stdout
        for word in ("convert", "divide", "mask", "130 cancelled"):
            self.assertIn(word, text)

    def test_help_of_an_operator_names_its_options(self):
        text = self.succeed("divide", "--help").stdout
        options = ("--dividend-bands", "--divisor-bands", "--divisor-value", "--as", "--ot", "--of", "--co", "--oo",
                   "--overwrite", "--output-nodata", "--tile", "--threads", "--memory", "--quiet", "OUTPUT")
        for option in options:
            self.assertIn(option, text)
        self.assertIn("--bands", self.succeed("convert", "--help").stdout)

    def test_list(self):
        names = [line.split()[0] for line in self.succeed("list").stdout.splitlines()]
        self.assertEqual(names, sorted(names))
        self.assertIn("divide", names)

    def test_describe(self):
        for line in self.succeed("list").stdout.splitlines():
            name = line.split()[0]
            self.assertIn(name, self.succeed("describe", name).stdout)
            description = json.loads(self.succeed("describe", name, "--json").stdout)
            self.assertEqual(description["name"], name)
            self.assertIn("halo", description)
        self.refuse(2, "describe", "nothing")

    def test_completion_is_bash(self):
        script = self.succeed("completion", "bash").stdout
        shell = shutil.which("bash")
        if not shell:
            raise unittest.SkipTest("no bash")
        ask = 'COMP_WORDS=(rasterops div); COMP_CWORD=1; _rasterops; echo "${COMPREPLY[@]}"\n' \
              'COMP_WORDS=(rasterops divide --divis); COMP_CWORD=2; _rasterops; echo "${COMPREPLY[@]}"\n' \
              'COMP_WORDS=(rasterops plan mask --out); COMP_CWORD=3; _rasterops; echo "${COMPREPLY[@]}"\n'
        done = subprocess.run([shell, "-c", script + ask], capture_output=True, text=True, check=True)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.stdout.splitlines(), ["divide", "--divisor-bands --divisor-value", "--output-nodata"])
        self.refuse(2, "completion", "fish")

    def test_plan_reads_no_pixel(self):
        self.make("a.tif", numpy.ones((70, 600), numpy.uint16))
        # The header stays, the pixels go.
        path = self.folder / "a.tif"
        path.write_bytes(path.read_bytes()[:2000])
        text = self.succeed("plan", "divide", "--as", "F32", "--threads", "1", "a.tif", "a.tif", "o.tif").stdout
        lines = dict(line.split(": ", 1) for line in text.splitlines())
        self.assertEqual(lines["output size"], "600 x 70")
        self.assertEqual(lines["output type"], "F32")
        self.assertEqual(lines["threads"], "1")
        self.assertEqual(lines["halo"], "left 0, top 0, right 0, bottom 0")
        self.assertIn("tile", lines)
        self.assertIn("memory", lines)
        self.assertFalse((self.folder / "o.tif").exists())
        self.refuse(3, "divide", "a.tif", "a.tif", "o.tif")

    def test_refused_usage(self):
        self.make("a.tif", numpy.ones((4, 4), numpy.uint8))
        wrong = (
            (), ("nothing",), ("divide",), ("divide", "a.tif"), ("divide", "a.tif", "o.tif"),
            ("divide", "a.tif", "a.tif", "a.tif", "o.tif"), ("divide", "--nothing", "a.tif", "a.tif", "o.tif"),
            ("divide", "--divisor-value", "2", "a.tif", "a.tif", "o.tif"),
            ("divide", "--divisor-value", "2", "--dividend-value", "2", "o.tif"),
            ("divide", "--divisor-value", "x", "a.tif", "o.tif"),
            ("divide", "--divisor-value", "0.5", "a.tif", "o.tif"),
            ("divide", "--divisor-value", "2", "--divisor-bands", "1", "a.tif", "o.tif"),
            ("divide", "--dividend-bands", "1-", "a.tif", "a.tif", "o.tif"),
            ("convert", "a.tif", "o.tif"), ("convert", "--ot", "U9", "a.tif", "o.tif"),
            ("mask", "--as", "float", "a.tif", "o.tif"), ("mask", "--tile", "0", "a.tif", "o.tif"),
            ("mask", "--threads", "0", "a.tif", "o.tif"), ("mask", "--memory", "much", "a.tif", "o.tif"),
            ("mask", "--output-nodata", "300", "a.tif", "o.tif"), ("mask", "--of", "NoSuch", "a.tif", "o.tif"),
            ("mask", "--co", "NO_SUCH=1", "a.tif", "o.tif"), ("mask", "--ot", "F32", "a.tif", "o.png"),
            ("plan", "nothing"), ("plan",), ("info",),
        )
        for arguments in wrong:
            with self.subTest(arguments=arguments):
                self.refuse(2, *arguments)

    def test_a_small_budget_says_what_it_takes(self):
        self.make("a.tif", numpy.ones((1000, 1000), numpy.float64))
        line = self.refuse(5, "divide", "--memory", "1M", "a.tif", "a.tif", "o.tif")
        self.assertRegex(line, r"--memory \d+M")
        line = self.refuse(5, "divide", "--tile", "whole", "--memory", "40M", "a.tif", "a.tif", "o.tif")
        self.assertIn("1000 x 1000", line)

    def test_quiet_run_says_nothing(self):
        self.make("a.tif", numpy.ones((4, 4), numpy.uint8))
        done = self.succeed("mask", "-q", "a.tif", "o.tif")
        self.assertEqual(done.stdout + done.stderr, "")


if __name__ == "__main__":
    command.main()
