#!/usr/bin/python3
"""A tray that goes and comes back shows the dial again, and so does one that comes only after the program, or one of
the other kind that takes its place."""

import sys

import harness
from harness import check, check_equal
from virtualdesktop import changed_area, wait


OTHER_KIND = {"notifier": "xembed", "xembed": "notifier"}


def change_tray(desktop):
    """One that embeds windows ends, and one of status notifier items begins; or the other way round."""
    desktop.stop_tray()
    desktop.tray = OTHER_KIND[desktop.tray]
    desktop.start_tray()


def test_change_of_kind(desktop, selvane):
    selvane.remember_bare_tray()
    change_tray(desktop)
    selvane.remember_bare_tray()
    change_tray(desktop)
    selvane.start()
    for _ in range(3):
        change_tray(desktop)
        selvane.find_dial()
        selvane.open_panel()
        check(True, f"the {desktop.tray} tray has the dial now, and a click on it opens the panel")
        desktop.key("Escape")
        selvane.wait_for_no_panel()
    idle = selvane.dial_picture()
    desktop.click(*selvane.dial.middle, button=2)
    wait("the dial of a running phase", lambda: changed_area(idle, selvane.dial_picture()))
    change_tray(desktop)
    selvane.find_dial()
    selvane.open_panel()
    check(True, f"the {desktop.tray} tray has the dial of a running phase, and a click on it opens the panel")
    check_equal(selvane.quit(), 0, "exit status of the third run")


def test_restart(desktop, selvane):
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
    selvane.wait_for_no_dial()


def test(desktop, selvane):
    test_restart(desktop, selvane)
    test_change_of_kind(desktop, selvane)


sys.exit(harness.run(test))
