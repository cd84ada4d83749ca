#!/usr/bin/python3
"""Docs/Architecture.md has a word for every folder of sources and of tests."""

import pathlib
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = (ROOT / "Docs/Architecture.md").read_text()


class ArchitectureTest(unittest.TestCase):
    def test_every_folder_is_named(self):
        for place in ("Sources", "Sources/Selvane", "Sources/Selvane/Platform", "Sources/Selvane/UI", "Tests"):
            for folder in sorted(path for path in (ROOT / place).iterdir() if path.is_dir()):
                name = str(folder.relative_to(ROOT))
                if name == "Sources/Selvane":
                    continue
                with self.subTest(folder=name):
                    self.assertIn(f"`{name}`", PAGE)


if __name__ == "__main__":
    unittest.main()
