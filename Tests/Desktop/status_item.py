#!/usr/bin/python3
"""What the buttons of the mouse do on the dial, what it says, and what another application does to the panel."""

import sys

import Xlib.X
import Xlib.protocol.event

import harness
from harness import check, check_equal
from virtualdesktop import Area, changed_area, wait


class OtherApplication:
    """A window of another process, which the window manager makes the active one without a click."""

    def __init__(self, desktop):
        self._display = desktop.connect()
        self._root = self._display.screen().root
        self._window = self._root.create_window(40, 500, 200, 150, 0, Xlib.X.CopyFromParent)
        self._window.set_wm_name("Other")
        self._window.map()
        self._display.sync()

    def activate(self):
        """As task bars do it."""
        message = Xlib.protocol.event.ClientMessage(
            window=self._window, client_type=self._display.intern_atom("_NET_ACTIVE_WINDOW"),
            data=(32, [2, Xlib.X.CurrentTime, 0, 0, 0]))
        self._root.send_event(message, Xlib.X.SubstructureRedirectMask | Xlib.X.SubstructureNotifyMask)
        self._display.sync()

    def close(self):
        self._display.close()


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

    other = OtherApplication(desktop)
    wait("the other window", lambda: desktop.window("Other"))
    selvane.open_panel()
    other.activate()
    selvane.wait_for_no_panel()
    check(True, "another application that becomes active closes the panel")
    selvane.open_panel()
    check(not selvane.stays_closed(), "and the panel opens over it")
    other.close()
    wait("the other window to go", lambda: not desktop.window("Other"))
    check(not selvane.stays_closed(), "a window that closes elsewhere leaves the panel open")
    check_equal(selvane.quit(), 0, "exit status")


sys.exit(harness.run(test))
