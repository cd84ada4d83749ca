#!/usr/bin/python3
"""Under sway the panel floats beside the bar's end, and waybar shows the time beside the dial."""

import pathlib
import sys

import harness
from harness import check, check_equal
from selvanedriver import CARD_WIDTH, TITLE, Selvane
from virtualdesktop import Area, Failure, changed_area, wait
from waylanddesktop import WaylandDesktop

EDGE_MARGIN = 8
ITEM_GAP = 6
OTHER = "Other"


def expected_card(desktop, card):
    """Where a card of that size belongs."""
    free = desktop.free_area
    right = free.x + free.width - CARD_WIDTH - EDGE_MARGIN
    below = free.y + free.height - card.height - ITEM_GAP
    x = free.x + EDGE_MARGIN if desktop.edge == "left" else right
    # The item at the lower end of an upright bar is a point in the corner of the screen.
    y = free.y + ITEM_GAP if desktop.edge == "top" else below
    return Area(x, y, card.width, card.height)


def check_place(desktop, selvane):
    selvane.open_panel()
    node = desktop.node(TITLE)
    check_equal(node["type"], "floating_con", f"{desktop.edge}: the window's kind")
    card = wait("the panel at its place",
                lambda: selvane.card if selvane.card == expected_card(desktop, selvane.card) else None)
    check(True, f"{desktop.edge}: the panel stands at the bar's end: {card}")


def test_edge(edge, program):
    with WaylandDesktop(tray="notifier", edge=edge, dark=False) as desktop:
        selvane = Selvane(desktop, program)
        selvane.start()
        check_place(desktop, selvane)
        desktop.key("Escape")
        selvane.wait_for_no_panel()
        check(True, "Escape closes the panel")
        check_place(desktop, selvane)
        desktop.command(f"[con_id={desktop.node(TITLE)['id']}] move absolute position 40 px 40 px")
        wait("the panel to be elsewhere", lambda: selvane.panel.x == 40)
        check_equal(selvane.start_again(), 0, "exit status of a second start while the panel is open")
        wait("the panel back at its place", lambda: selvane.card == expected_card(desktop, selvane.card))
        check(True, f"{edge}: the panel that is open goes to its place again")
        check_equal(selvane.quit(), 0, "exit status after quitting by the keyboard")


def test_clicks(program):
    with WaylandDesktop(tray="notifier", dark=False) as desktop:
        selvane = Selvane(desktop, program)
        selvane.start()
        selvane.click_dial()
        selvane.wait_for_panel()
        check(True, "a click on the bar's dial opens the panel")
        selvane.click_dial()
        selvane.wait_for_no_panel()
        check(selvane.stays_closed(), "another one closes it")
        selvane.click_dial()
        selvane.wait_for_panel()
        desktop.click(200, 600)
        selvane.wait_for_no_panel()
        check(selvane.stays_closed(), "so does a click beside it")
        selvane.click_dial()
        selvane.wait_for_panel()
        check_equal(selvane.quit(), 0, "exit status after clicks")


def test_bar(program):
    with WaylandDesktop(tray="notifier", dark=False) as desktop:
        selvane = Selvane(desktop, program)
        selvane.start()
        idle = selvane.dial
        check(idle.width <= idle.height + 2, f"the idle dial is alone: {idle}")
        desktop.click(*idle.middle, button=2)

        wait("the time beside the dial", lambda: selvane.shown_in_tray().width > 2.5 * idle.height)
        before = desktop.picture(desktop.tray_area)
        wait("the time to move", lambda: changed_area(before, desktop.picture(desktop.tray_area)))
        check(True, "the bar shows the time beside the dial, and it moves")
        desktop.stop_tray()
        desktop.start_tray()
        wait("the time in the bar that came back", lambda: selvane.shown_in_tray().width > 2.5 * idle.height)
        check(True, "a bar that comes back shows it too")
        selvane.open_panel()
        check_equal(selvane.quit(), 0, "exit status")


def test_without_bar(program):
    with WaylandDesktop(dark=False) as desktop:
        selvane = Selvane(desktop, program)
        selvane.start()
        desktop.edge = "top"
        check_place(desktop, selvane)
        check_equal(selvane.quit(), 0, "exit status without a bar")


def test_other_applications(program, other_window):
    with WaylandDesktop(tray="notifier", dark=False) as desktop:
        desktop.start("other", [pathlib.Path(other_window).resolve(), OTHER])
        wait("the other window to have the keyboard", lambda: desktop.has_focus(OTHER))
        selvane = Selvane(desktop, program)
        selvane.start()
        selvane.click_dial()
        selvane.wait_for_panel()
        check(not selvane.stays_closed(), "the panel opens over the window of another application")
        check(not desktop.has_focus(OTHER), "and has the keyboard")
        desktop.command(f"[title={OTHER}] focus")
        selvane.wait_for_no_panel()
        check(desktop.has_focus(OTHER), "the activation of that application closes the panel")
        selvane.click_dial()
        selvane.wait_for_panel()
        check_equal(selvane.quit(), 0, "exit status after the other application")


def check_middle(desktop, selvane):
    node = desktop.node(TITLE)
    check_equal(node["type"], "floating_con", "the window's kind on a desktop that takes no commands")
    free, panel = desktop.free_area, selvane.panel
    middle = Area(free.x + (free.width - panel.width) // 2, free.y + (free.height - panel.height) // 2,
                  panel.width, panel.height)
    check_equal(panel, middle, "it stands in the middle")


def test_without_commands(program):
    """As on every desktop but sway: none moves a window when it is asked to."""
    # Windows that are higher than what the bar leaves have another middle.
    with WaylandDesktop(tray="notifier", dark=False, size=(1280, 1024)) as desktop:
        selvane = Selvane(desktop, program)
        commands = desktop.environment.pop("SWAYSOCK")
        selvane.start()
        desktop.environment["SWAYSOCK"] = commands
        for _ in range(2):
            selvane.click_dial()
            selvane.wait_for_panel()
            check_middle(desktop, selvane)
            selvane.click_dial()
            selvane.wait_for_no_panel()
        selvane.open_panel()
        check_equal(selvane.quit(), 0, "exit status without commands")


def main(program, other_window, edge=None):
    try:
        if edge:
            test_edge(edge, program)
            return 0
        test_clicks(program)
        test_other_applications(program, other_window)
        test_without_commands(program)
        test_bar(program)
        test_without_bar(program)
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
