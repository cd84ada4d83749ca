#!/usr/bin/python3
"""Scripts/package asks everything that has code in it for what it depends on."""

import importlib.machinery
import importlib.util
import pathlib
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "Scripts/package"


def loaded():
    loader = importlib.machinery.SourceFileLoader("package", str(SCRIPT))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("package", loader))
    loader.exec_module(module)
    return module


class PackageTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="selvane-test.")
        self.addCleanup(folder.cleanup)
        self.stage = pathlib.Path(folder.name)

    def put(self, place):
        path = self.stage / place
        path.parent.mkdir(parents=True, exist_ok=True)
        path.touch()
        return path

    def test_plugins_count(self):
        program = self.put("usr/bin/selvane")
        plugins = [self.put(f"usr/lib/selvane/lib{name}.so") for name in ("one", "two")]
        self.assertEqual(loaded().programs(self.stage), [program, *plugins])

    def test_plugins_that_lie_elsewhere_are_missed(self):
        self.put("usr/bin/selvane")
        self.put("usr/lib/x86_64-linux-gnu/selvane/libone.so")
        with self.assertRaisesRegex(SystemExit, "no plugins"):
            loaded().programs(self.stage)


if __name__ == "__main__":
    unittest.main()
