#!/usr/bin/python3
"""Scripts/check-symbols lets views with drawn symbols pass and fails on others."""

import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "Scripts/check-symbols"

GOOD = (
    ("an item", "View.qml", 'Symbol { name: "flame"; size: 13 }'),
    ("an item over several lines", "View.qml", 'Symbol {\n    size: 13\n    name: "flame"\n}'),
    ("one of two", "View.qml", 'Symbol { name: root.on ? "flame" : "chevron.down" }'),
    ("a property of another item", "View.qml", 'IconButton { symbol: "flame" }'),
    ("the name of something else", "View.qml", 'Accessible.name: "star"'),
    ("the name of an item inside", "View.qml", 'Symbol { name: "flame"; Item { name: "star" } }'),
    ("no symbol", "View.qml", 'IconButton { symbol: "" }'),
    ("what a symbol is compared with", "View.qml", 'visible: symbol === "star"'),
    ("a condition before the names", "View.qml", 'symbol: root.kind === "star" ? "flame" : ""'),
    ("a member", "Row.cpp", 'row.symbol = "flame";'),
    ("another text", "Row.cpp", 'row.title = "star";'),
)

BAD = (
    ("an item", "View.qml", 'Symbol { name: "star" }'),
    ("an item over several lines", "View.qml", 'Symbol {\n    id: mark\n    name: "star"\n}'),
    ("one of two", "View.qml", 'Symbol { name: root.on ? "flame" : "star" }'),
    ("the other of two", "View.qml", 'Symbol { name: root.on ? "star" : "flame" }'),
    ("a property of another item", "View.qml", 'IconButton { symbol: "star" }'),
    ("a member", "Row.cpp", 'row.symbol = QStringLiteral("star");'),
    ("a member with another name", "Row.cpp", '_phaseSymbol = "star";'),
    ("a default", "Row.h", 'QString symbol{"star"};'),
    ("another case of letters", "View.qml", 'Symbol { name: "Flame" }'),
)


def check(file, text, drawings=("flame", "chevron.down")):
    with tempfile.TemporaryDirectory() as root:
        views = pathlib.Path(root, "Sources/Selvane/UI")
        views.mkdir(parents=True)
        (views / file).write_text(text)
        symbols = pathlib.Path(root, "Resources/Symbols")
        symbols.mkdir(parents=True)
        for name in drawings:
            (symbols / f"{name}.svg").touch()
        return subprocess.run([SCRIPT, root], capture_output=True, text=True)


class CheckSymbols(unittest.TestCase):
    def test_drawn_symbols_pass(self):
        for name, file, text in GOOD:
            with self.subTest(name):
                result = check(file, text)
                self.assertEqual(result.returncode, 0, result.stderr)

    def test_other_symbols_fail(self):
        for name, file, text in BAD:
            with self.subTest(name):
                result = check(file, text)
                self.assertEqual(result.returncode, 1, result.stdout)
                self.assertIn("there is no drawing of", result.stderr)

    def test_the_place_is_told(self):
        self.assertIn("Sources/Selvane/UI/View.qml:2:", check("View.qml", '\nSymbol { name: "star" }').stderr)

    def test_a_tree_without_drawings_does_not_pass(self):
        self.assertEqual(check("View.qml", 'Symbol { name: "" }', drawings=()).returncode, 1)


if __name__ == "__main__":
    unittest.main()
