#!/usr/bin/python3
"""A window that does nothing but appear: what opening costs on a desktop whatever the program.

    barewindow.py X Y WIDTH HEIGHT

It is ready when it says so in a line. Each byte that it reads shows it or hides it; it fills itself with black when the
server asks for its contents. The window manager has no part in it.
"""

import select
import sys

import Xlib.display
from Xlib import X


def main():
    x, y, width, height = map(int, sys.argv[1:])
    display = Xlib.display.Display()
    screen = display.screen()
    window = screen.root.create_window(x, y, width, height, 0, screen.root_depth, background_pixel=screen.white_pixel,
                                       event_mask=X.ExposureMask, override_redirect=True)
    ink = window.create_gc(foreground=screen.black_pixel)
    display.sync()
    print("ready", flush=True)

    is_shown = False
    while True:
        ready = select.select([sys.stdin, display], [], [])[0]
        if sys.stdin in ready:
            if not sys.stdin.buffer.raw.read(1):
                return
            is_shown = not is_shown
            if is_shown:
                window.map()
            else:
                window.unmap()
            display.flush()
        while display.pending_events():
            if display.next_event().type == X.Expose:
                window.fill_rectangle(ink, 0, 0, width, height)
                display.flush()


main()
