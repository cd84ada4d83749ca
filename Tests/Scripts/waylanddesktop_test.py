#!/usr/bin/python3
"""A Wayland desktop whose start fails says why."""

import pathlib
import shutil
import sys
import tempfile
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "Scripts"))

from waylanddesktop import WaylandDesktop


class WaylandDesktopTest(unittest.TestCase):
    def test_cause_of_a_start_that_fails_is_told(self):
        make = tempfile.mkdtemp

        def make_some(*arguments, prefix, **more):
            if prefix == "selvane-sway.":
                raise OSError("no room for sway")
            return make(*arguments, prefix=prefix, **more)

        folder = make(prefix="selvane-test.")
        self.addCleanup(shutil.rmtree, folder)
        with mock.patch("tempfile.mkdtemp", make_some), self.assertRaisesRegex(OSError, "no room for sway"):
            with WaylandDesktop(folder=folder):
                pass


if __name__ == "__main__":
    unittest.main()
