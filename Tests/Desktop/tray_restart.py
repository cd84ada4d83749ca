#!/usr/bin/python3
"""A tray that goes and comes back shows the dial again, and so does one that comes only after the program."""

import sys

import harness
from harness import check, check_equal
from virtualdesktop import changed_area


def test(desktop, selvane):
    selvane.start()
    before = desktop.settled_picture(desktop.tray_area)
    for _ in range(2):
        desktop.stop_tray()
        desktop.start_tray()
        selvane.find_dial()
        check(not changed_area(before, desktop.settled_picture(desktop.tray_area)),
              "after the tray's restart the dial looks as before")
    selvane.open_panel()
    check(True, "a click on the dial opens the panel")
    check_equal(selvane.quit(), 0, "exit status after quitting by the keyboard")
    selvane.wait_for_no_dial()

    desktop.stop_tray()
    selvane.start_without_dial()
    desktop.start_tray()
    selvane.find_dial()
    check(not changed_area(before, desktop.settled_picture(desktop.tray_area)),
          "a tray that comes after the program shows the dial")
    selvane.open_panel()
    check(True, "a click on that dial opens the panel")
    check_equal(selvane.quit(), 0, "exit status of the second run")


sys.exit(harness.run(test))
