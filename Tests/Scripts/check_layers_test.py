#!/usr/bin/python3
"""Scripts/check-layers lets good trees pass and names what is wrong in bad ones."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "Scripts/check-layers"

# Name, file below Sources, include line.
GOOD = (
    ("core includes core", "SelvaneCore/A.cpp", '#include "SelvaneCore/A.h"'),
    ("core includes the standard library", "SelvaneCore/A.cpp", "#include <vector>"),
    ("core includes the system's headers", "SelvaneCore/A.cpp", "#include <sys/stat.h>"),
    ("core includes abseil", "SelvaneCore/A.h", '#include <absl/time/time.h>'),
    ("text includes ICU", "SelvaneCore/Text.cpp", "#include <unicode/uchar.h>"),
    ("addresses include uriparser", "SelvaneCore/URL.cpp", "#include <uriparser/Uri.h>"),
    ("the JSON reader includes simdjson", "SelvaneCore/JSONReader.cpp", "#include <simdjson.h>"),
    ("a port includes core", "Selvane/Platform/A.h", '#include "SelvaneCore/A.h"'),
    ("Linux includes a port", "Selvane/Platform/Linux/A.h", '#include "Selvane/Platform/A.h"'),
    ("Linux includes Qt's D-Bus", "Selvane/Platform/Linux/A.h", "#include <QDBusConnection>"),
    ("Linux includes a system library", "Selvane/Platform/Linux/A.cpp", "#include <xcb/xcb.h>"),
    ("Music includes App", "Selvane/Music/A.h", '#include "Selvane/App/A.h"'),
    ("App includes Qt Core", "Selvane/App/A.h", "#include <QObject>"),
    ("UI includes App", "Selvane/UI/A.h", '#include "Selvane/App/A.h"'),
    ("the panel includes UI", "Selvane/UI/Popover/A.h", '#include "Selvane/UI/A.h"'),
    ("UI includes Qt Quick", "Selvane/UI/A.h", "#include <QQuickItem>"),
    ("a source includes what moc made of it", "Selvane/UI/A.cpp", '#include "A.moc"'),
    ("main includes everything", "Selvane/main.cpp",
     '#include "Selvane/Platform/Linux/A.h"\n#include "Selvane/UI/A.h"\n#include <QGuiApplication>'),
    ("a comment is no include", "SelvaneCore/A.h", "// #include <QString>"),
)

BAD = (
    ("core includes App", "SelvaneCore/A.cpp", '#include "Selvane/App/A.h"'),
    ("core includes a port", "SelvaneCore/A.cpp", '#include "Selvane/Platform/A.h"'),
    ("core includes Qt", "SelvaneCore/A.cpp", "#include <QString>"),
    ("core includes Qt by its module", "SelvaneCore/A.cpp", "#include <QtCore/QString>"),
    ("core includes Qt's lower-case header", "SelvaneCore/A.cpp", "#include <qglobal.h>"),
    ("core includes a library of its own choice", "SelvaneCore/A.cpp", "#include <boost/any.hpp>"),
    ("core includes simdjson outside the reader", "SelvaneCore/JSONWriter.cpp", "#include <simdjson.h>"),
    ("core includes ICU outside of text", "SelvaneCore/TaskList.cpp", "#include <unicode/uchar.h>"),
    ("core includes uriparser outside of addresses", "SelvaneCore/SiteRule.cpp", "#include <uriparser/Uri.h>"),
    ("a header hides ICU badly", "SelvaneCore/Text.h", "#include <unicode/uchar.h>"),
    ("a port includes Qt", "Selvane/Platform/A.h", "#include <QObject>"),
    ("a port includes its implementation", "Selvane/Platform/A.h", '#include "Selvane/Platform/Linux/A.h"'),
    ("a port includes App", "Selvane/Platform/A.h", '#include "Selvane/App/A.h"'),
    ("Linux includes App", "Selvane/Platform/Linux/A.cpp", '#include "Selvane/App/A.h"'),
    ("Linux includes Music", "Selvane/Platform/Linux/A.cpp", '#include "Selvane/Music/A.h"'),
    ("Linux includes UI", "Selvane/Platform/Linux/A.cpp", '#include "Selvane/UI/A.h"'),
    ("Linux includes Qt Quick", "Selvane/Platform/Linux/A.cpp", "#include <QQuickView>"),
    ("Linux includes macOS", "Selvane/Platform/Linux/A.cpp", '#include "Selvane/Platform/macOS/A.h"'),
    ("App includes UI", "Selvane/App/A.cpp", '#include "Selvane/UI/A.h"'),
    ("App includes Music", "Selvane/App/A.h", '#include "Selvane/Music/A.h"'),
    ("App includes Linux", "Selvane/App/A.cpp", '#include "Selvane/Platform/Linux/A.h"'),
    ("App includes Qt's D-Bus", "Selvane/App/A.cpp", "#include <QDBusConnection>"),
    ("Music includes UI", "Selvane/Music/A.cpp", '#include "Selvane/UI/A.h"'),
    ("UI includes Linux", "Selvane/UI/A.cpp", '#include "Selvane/Platform/Linux/A.h"'),
    ("the panel includes Linux", "Selvane/UI/Popover/A.cpp", '#include "Selvane/Platform/Linux/A.h"'),
    ("a neighbour is named without its folder", "Selvane/App/A.cpp", '#include "B.h"'),
    ("a neighbour is named by a way up", "Selvane/App/A.cpp", '#include "../UI/A.h"'),
    ("a header of ours stands in angle brackets", "Selvane/App/A.cpp", "#include <Selvane/UI/A.h>"),
    ("an include with blanks in it", "SelvaneCore/A.cpp", "  #  include <QString>"),
    ("a folder that is no layer", "Selvane/Elsewhere/A.cpp", ""),
)


def check(file, text):
    with tempfile.TemporaryDirectory() as root:
        path = pathlib.Path(root, "Sources", file)
        path.parent.mkdir(parents=True)
        path.write_text(f"#pragma once\n{text}\n")
        return subprocess.run([sys.executable, SCRIPT, root], capture_output=True, text=True)


class CheckLayers(unittest.TestCase):
    def test_good_includes_pass(self):
        for name, file, text in GOOD:
            with self.subTest(name):
                result = check(file, text)
                self.assertEqual(result.returncode, 0, result.stderr)

    def test_bad_includes_are_named_with_file_and_line(self):
        for name, file, text in BAD:
            with self.subTest(name):
                result = check(file, text)
                self.assertEqual(result.returncode, 1, result.stdout)
                self.assertIn(f"Sources/{file}:{2 if text else 1}: ", result.stderr)

    def test_an_empty_tree_does_not_pass(self):
        with tempfile.TemporaryDirectory() as root:
            result = subprocess.run([sys.executable, SCRIPT, root], capture_output=True, text=True)
            self.assertEqual(result.returncode, 1)


if __name__ == "__main__":
    unittest.main()
