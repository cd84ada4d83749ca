#!/usr/bin/python3
"""Scripts/check-qml lets good views pass and fails on bad ones."""

import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "Scripts/check-qml"

GOOD = """import QtQuick
Item {
    id: root
    property int minutes: 25
    Text { text: root.minutes }
}
"""

BAD = (
    ("a name that nothing has", GOOD.replace("root.minutes", "root.hours")),
    ("a name without its owner", GOOD.replace("root.minutes", "minutes")),
    ("an unknown type", GOOD.replace("Text {", "Txet {")),
    ("an unknown property", GOOD.replace("Text { text:", "Text { txet:")),
    ("an import that nothing uses", "import QtQuick.Layouts\n" + GOOD),
    ("no QML at all", "Item {"),
)


def check(text):
    with tempfile.TemporaryDirectory() as root:
        folder = pathlib.Path(root, "Sources")
        folder.mkdir()
        if text is not None:
            (folder / "View.qml").write_text(text)
        return subprocess.run([SCRIPT, root, root], capture_output=True, text=True)


class CheckQml(unittest.TestCase):
    def test_a_good_view_passes(self):
        result = check(GOOD)
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_bad_views_fail(self):
        for name, text in BAD:
            with self.subTest(name):
                self.assertEqual(check(text).returncode, 1)

    def test_a_tree_without_views_does_not_pass(self):
        self.assertEqual(check(None).returncode, 1)


if __name__ == "__main__":
    unittest.main()
