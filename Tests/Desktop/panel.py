#!/usr/bin/python3
"""The panel opens and closes by every way that a user knows."""

import pathlib
import signal
import sys

import harness
from harness import check, check_equal
from otherwindow import OtherWindow
from virtualdesktop import Area, changed_area, wait


def check_launcher(desktop, selvane, behind):
    """A launcher closes as it starts the program, and the window manager goes back to the window behind it."""
    launcher = OtherWindow(desktop, "Launcher")
    if desktop.manager == "openbox":
        # Before it gets to the panel.
        manager = desktop.process(desktop.manager)
        manager.send_signal(signal.SIGSTOP)
        try:
            launcher.close()
            check_equal(selvane.start_again(), 0, "exit status of a start by a launcher")
        finally:
            manager.send_signal(signal.SIGCONT)
        selvane.wait_for_panel()
        check(True, "an activation that was under way leaves the panel open")
    else:
        # From one that has no part in it, the panel keeps the keyboard for a moment, which a slow machine may outlast.
        launcher.close()
        wait("the window behind to be active", lambda: behind.is_active() and desktop.has_focus("Behind"))
        check_equal(selvane.start_again(), 0, "exit status of a start by a launcher")
        selvane.wait_for_panel()
    behind.activate()
    selvane.wait_for_no_panel()
    check(True, "the next activation closes it")


def check_other_applications(desktop, selvane):
    behind = OtherWindow(desktop, "Behind")
    selvane.open_panel()
    wait("the window behind not to be active", lambda: not behind.is_active())
    check(True, "the panel has the keyboard")
    behind.activate()
    selvane.wait_for_no_panel()
    check(True, "the activation of another application closes the panel")

    check_launcher(desktop, selvane, behind)

    selvane.open_panel()
    behind.close()
    wait("the window behind to go", lambda: not desktop.window("Behind"))
    check(not selvane.stays_closed(), "a window that closes elsewhere leaves the panel open")
    desktop.key("Escape")
    selvane.wait_for_no_panel()


def check_keyboard_comes_back(desktop, selvane):
    before = OtherWindow(desktop, "Before")

    def check_comes_back(way):
        selvane.wait_for_no_panel()
        wait("the keyboard to come back", lambda: desktop.has_focus("Before") and before.is_active())
        check(True, f"{way} gives the keyboard back to the window that had it")

    selvane.open_panel()
    check(not desktop.has_focus("Before"), "the panel has the keyboard")
    if desktop.manager == "openbox":
        wait("the window manager to tell of the panel", lambda: selvane.is_managed)
    is_managed = selvane.is_managed
    check_equal(is_managed, desktop.manager == "openbox", "the window manager has a part in the panel")
    desktop.key("Escape")
    check_comes_back("Escape")
    if not is_managed:
        # The other window manager gives it to nobody then.
        selvane.open_panel()
        desktop.click(20, desktop.size[1] - 20)
        check_comes_back("a click on the desktop")
    selvane.open_panel()
    desktop.click(*desktop.window("Before").middle)
    selvane.wait_for_no_panel()
    wait("the keyboard to go there", lambda: desktop.has_focus("Before") and before.is_active())
    check(True, "a click on another window closes the panel and gives that the keyboard")

    selvane.open_panel()
    desktop.key("alt+F4")
    if is_managed:
        selvane.wait_for_no_panel()
    else:
        check(not selvane.stays_closed(), "the keys that close windows don't reach the panel")
        desktop.key("Escape")
        selvane.wait_for_no_panel()
    check(selvane.process.poll() is None and desktop.window("Before"),
          "the keys that close a window close no other while the panel is open")
    before.close()


def inside(inner, outer):
    return (outer.x <= inner.x and outer.y <= inner.y and inner.x + inner.width <= outer.x + outer.width and
            inner.y + inner.height <= outer.y + outer.height)


def loaded(selvane, library):
    return library in pathlib.Path(f"/proc/{selvane.process.pid}/maps").read_text()


def closes_by_dial(selvane, held):
    """Whether a click on the dial closes the panel for good. A tray that is late to tell of a click tells of a new
    one; three tries that go well must speak against one that didn't."""
    needed = 1
    for _ in range(5):
        selvane.open_panel()
        selvane.click_dial(held)
        selvane.wait_for_no_panel()
        if selvane.stays_closed():
            needed -= 1
            if needed == 0:
                return True
            continue
        needed = 3
        selvane.wait_for_panel()
        selvane.desktop.key("Escape")
        selvane.wait_for_no_panel()
    return False


def test(desktop, selvane):
    selvane.start()
    check(selvane.stays_closed(), "a start by itself opens nothing")

    selvane.open_panel()
    check(loaded(selvane, "libQt6Quick."), "the panel is drawn by Qt Quick")
    check(not loaded(selvane, "QuickTemplates2") and not loaded(selvane, "QuickLayouts"),
          "what only menus need isn't loaded for the first frame")
    panel = selvane.card
    check(inside(panel, Area(0, 0, *desktop.size)), f"the panel lies on the screen: {panel}")
    if selvane.dial:
        check(panel.y >= selvane.dial.y + selvane.dial.height, "the panel lies below the dial")
        left, right = panel.x, panel.x + panel.width
        check(left <= selvane.dial.middle[0] <= right, "the dial lies above the panel's width")
    desktop.key("Escape")
    selvane.wait_for_no_panel()
    check(True, "Escape closes the panel")

    selvane.open_panel()
    desktop.click(20, desktop.size[1] - 20)
    selvane.wait_for_no_panel()
    check(True, "a click elsewhere closes the panel")

    selvane.open_panel()
    desktop.click(20, desktop.size[1] - 20, button=7)
    check(not selvane.stays_closed(), "a turn of the wheel elsewhere leaves the panel open")
    desktop.move(2, desktop.size[1] - 2)
    idle = desktop.settled_picture(selvane.panel)
    selvane.click_control("More")
    wait("a menu loads what menus need", lambda: loaded(selvane, "QuickTemplates2"))
    desktop.key("Escape")
    desktop.move(2, desktop.size[1] - 2)
    wait("the menu to close", lambda: not changed_area(idle, desktop.picture(selvane.panel)))
    selvane.click_control("Start")
    wait("the countdown", lambda: changed_area(idle, desktop.picture(selvane.panel)))
    check(not selvane.stays_closed(1.5), "a click on Start leaves the panel open")
    first = desktop.picture(selvane.panel)
    wait("the time to move", lambda: changed_area(first, desktop.picture(selvane.panel)))
    check(True, "a click on Start starts the phase")
    selvane.click_control("Reset")
    desktop.move(2, desktop.size[1] - 2)
    wait("the idle panel", lambda: not changed_area(idle, desktop.picture(selvane.panel)))
    check(True, "a click on Reset ends it")
    selvane.click_control("Skip")
    desktop.move(2, desktop.size[1] - 2)
    wait("the break", lambda: changed_area(idle, desktop.picture(selvane.panel)))
    check(True, "a click on Skip goes on to the break")
    desktop.key("Escape")
    selvane.wait_for_no_panel()

    if selvane.dial:
        check(closes_by_dial(selvane, held=0.4),
              "a long click on the dial closes the panel, and does not open it again")
        check(closes_by_dial(selvane, held=0.03), "a click on the dial closes the panel, and does not open it again")
        selvane.click_dial()
        selvane.wait_for_panel()
        check(True, "the next click on the dial opens it")
        desktop.key("Escape")
        selvane.wait_for_no_panel()

    check_keyboard_comes_back(desktop, selvane)
    check_other_applications(desktop, selvane)

    check_equal(selvane.start_again(), 0, "exit status of a second start")
    selvane.wait_for_panel()
    check(True, "a second start opens the panel of the first")
    check_equal(selvane.start_again(), 0, "exit status of a second start while the panel is open")
    selvane.wait_for_panel()
    check(selvane.process.poll() is None, "the first goes on")
    check_equal(selvane.quit(), 0, "exit status after quitting by the keyboard")


sys.exit(harness.run(test))
