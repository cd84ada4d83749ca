#!/usr/bin/python3
"""What is said of the program in several places is the same in all of them."""

import configparser
import json
import pathlib
import re
import subprocess
import sys
import unittest
import xml.etree.ElementTree

ROOT = pathlib.Path(sys.argv[1])
VERSION = sys.argv[2]
ID = "com.lorbin.selvane"
SVG = "{http://www.w3.org/2000/svg}"


def metainfo():
    return xml.etree.ElementTree.parse(ROOT / f"Packaging/{ID}.metainfo.xml").getroot()


def desktop_entry():
    entry = configparser.ConfigParser(interpolation=None, delimiters="=")
    entry.optionxform = str
    entry.read(ROOT / f"Packaging/{ID}.desktop")
    return entry["Desktop Entry"]


def control():
    """The fields of the Debian package; a field goes on in lines that begin with a blank."""
    text = (ROOT / "Packaging/debian/control").read_text()
    return dict(re.findall(r"^(\S+):((?:.*\n)(?: .*\n)*)", text, re.MULTILINE))


class FilesAgree(unittest.TestCase):
    def test_the_releases_are_those_of_the_release_notes(self):
        notes = json.loads((ROOT / "Resources/Changelog.json").read_text())
        told = [(release.get("version"), release.get("date"), [
            (heading.text, [line.text for line in lines])
            for heading, lines in zip(release.findall("description/p"), release.findall("description/ul"))])
            for release in metainfo().iter("release")]
        self.assertEqual(told, [(note["version"], note["date"], [
            (title, note[key]) for key, title in (("new", "New"), ("improved", "Improved"), ("fixed", "Fixed"))
            if note[key]]) for note in notes])

    def test_the_newest_release_is_what_is_built(self):
        notes = json.loads((ROOT / "Resources/Changelog.json").read_text())
        self.assertEqual(notes[0]["version"], VERSION)
        title = (ROOT / "Packaging/selvane.1").read_text().splitlines()[0]
        self.assertEqual(title, f'.TH SELVANE 1 "{notes[0]["date"]}" "Selvane {VERSION}" "User Commands"')

    def test_everything_has_the_same_id(self):
        self.assertEqual(metainfo().findtext("id"), ID)
        self.assertEqual(metainfo().findtext("launchable"), f"{ID}.desktop")
        self.assertEqual(metainfo().findtext("provides/dbus"), ID)
        self.assertEqual(desktop_entry()["Icon"], ID)
        self.assertIn(f"Name={ID}\n", (ROOT / f"Packaging/{ID}.service.in").read_text())

    def test_everything_has_the_same_name_and_program(self):
        self.assertEqual(metainfo().findtext("name"), desktop_entry()["Name"])
        self.assertEqual(metainfo().findtext("provides/binary"), desktop_entry()["Exec"])
        self.assertEqual(desktop_entry()["TryExec"], desktop_entry()["Exec"])

    def test_the_desktop_may_start_it_over_the_bus(self):
        # The program owns the name and answers there; the bus starts it by the service file.
        self.assertEqual(desktop_entry()["DBusActivatable"], "true")

    def test_the_package_brings_what_running_needs(self):
        needed = subprocess.run([ROOT / "Scripts/packages", "list", "run"], check=True, capture_output=True,
                                text=True).stdout.split()
        self.assertTrue(needed)
        fields = control()
        brought = re.split(r"[,|\s]+", fields["Depends"] + "," + fields["Recommends"])
        self.assertLessEqual(set(needed), set(brought))

    def test_drawings_of_the_icon_are_of_shapes_alone(self):
        drawings = list((ROOT / "Resources/Icons").glob("*.svg"))
        self.assertEqual({drawing.stem for drawing in drawings}, {ID, f"{ID}-small", f"{ID}-symbolic"})
        for drawing in drawings:
            root = xml.etree.ElementTree.parse(drawing).getroot()
            allowed = {SVG + name for name in ("svg", "g", "path", "circle", "rect", "linearGradient", "stop")}
            self.assertLessEqual({element.tag for element in root.iter()}, allowed, drawing.name)
            self.assertEqual(root.get("width"), root.get("height"), drawing.name)

    def test_the_icon_in_one_colour_has_no_strokes(self):
        # Desktops fill every shape in it with the colour of their text.
        drawing = (ROOT / f"Resources/Icons/{ID}-symbolic.svg").read_text()
        self.assertNotIn("stroke", drawing)


unittest.main(argv=sys.argv[:1])
