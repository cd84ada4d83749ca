#!/usr/bin/python3
"""What the buttons of the mouse do on the dial, and what it says."""

import sys

import harness
from harness import check, check_equal
from virtualdesktop import Area, changed_area, wait


def test(desktop, selvane):
    selvane.start()
    idle = selvane.dial_picture()

    for button in (4, 5, 6, 7):
        desktop.click(*selvane.dial.middle, button=button)
    check(selvane.stays_closed() and not changed_area(idle, selvane.dial_picture()),
          "turning the wheel over the dial does nothing")

    desktop.click(*selvane.dial.middle, button=2)
    wait("the dial to show the running phase", lambda: changed_area(idle, selvane.dial_picture()))
    check(selvane.stays_closed(0.1), "a middle click starts the timer, and opens nothing")
    if desktop.tray == "xembed":
        wide = wait("the time beside the dial", lambda: selvane.shown_in_tray().width > 2.5 * selvane.dial.height)
        check(wide, "the tray shows the time beside the dial")
        first = desktop.picture(desktop.tray_area)
        wait("the time to move", lambda: changed_area(first, desktop.picture(desktop.tray_area)))
    desktop.click(*selvane.dial.middle, button=2)
    desktop.move(20, desktop.size[1] - 20)
    paused = desktop.settled_picture(desktop.tray_area, still=1.5)
    check(True, "a middle click pauses it: nothing moves any more")
    desktop.click(*selvane.dial.middle, button=2)
    desktop.move(20, desktop.size[1] - 20)
    wait("the phase to go on", lambda: changed_area(paused, desktop.picture(desktop.tray_area)))
    check(True, "a middle click resumes it")

    below = Area(desktop.size[0] - 420, desktop.tray_area.height, 420, 60)
    bare = desktop.settled_picture(below)
    desktop.move(*selvane.dial.middle)
    wait("the tooltip", lambda: changed_area(bare, desktop.picture(below)))
    desktop.move(20, desktop.size[1] - 20)
    wait("the tooltip to go", lambda: not changed_area(bare, desktop.picture(below)))
    check(True, "the pointer that rests on the dial gets a tooltip")

    selvane.open_panel()
    check_equal(selvane.quit(), 0, "exit status")


sys.exit(harness.run(test))
