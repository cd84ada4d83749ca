#!/usr/bin/python3
"""The end of a phase is told once, by whichever notification server runs then, and not while the timer is paused."""

import sys
import time

import dbus
import harness
from harness import check, check_equal
from notifications import NAME, PATH, DunstScreen, wait_for_texts
from selvanedriver import BUS_NAME
from virtualdesktop import wait

PHASE = 60


def wait_until(moment):
    time.sleep(max(0.0, moment - time.time()))


def wait_for_program(desktop):
    """Waits until what has been due was done: each answer of the program begins a new turn of its main loop, and what
    it told the notification server before, over the same connection, is there before the answer."""
    for _ in range(2):
        desktop.bus.call_blocking(BUS_NAME, "/com/lorbin/selvane", "org.freedesktop.Application", "Activate", "a{sv}",
                                  ({},), timeout=120)


def history(desktop):
    """The titles of what dunst has shown and closed."""
    answer = desktop.bus.call_blocking(NAME, PATH, "org.dunstproject.cmd0", "NotificationListHistory", "", ())
    return [str(notification["summary"]) for notification in answer]


def test(desktop, selvane):
    screen = DunstScreen(desktop)
    screen.prepare()
    desktop.stop_notifications()

    # 1. No server at all at the start, nor when the phase begins.
    selvane.have_settings(focusMinutes=1, shortBreakMinutes=1, autoStartBreaks=False, playEndSound=False)
    selvane.start()
    selvane.open_panel()
    # What happens at a press lies between the moment before it and the one at which it is seen.
    starting = time.time()
    selvane.press_primary()
    selvane.control("Pause")
    started = time.time()

    # 2. A pause takes the notification back.
    wait_until(started + 5)
    selvane.press_primary()
    selvane.control("Resume")
    paused = time.time()
    desktop.start_notifications()
    wait_until(started + PHASE)
    wait_for_program(desktop)
    check_equal(screen.texts(), [], "past the moment at which the phase would have ended there is")

    # 3. The server falls over in mid-phase, and the next one tells the end.
    resuming = time.time()
    selvane.press_primary()
    selvane.control("Pause")
    resumed = time.time()
    desktop.stop_notifications()
    wait_until(resumed + 5)
    desktop.start_notifications()
    earliest = resuming + PHASE - (paused - starting)
    wait_until(earliest)
    wait_for_texts(screen, "Focus complete", "Nice work. Time for a break.", seconds=120)
    after = screen.told() - earliest
    check(after > -0.5, f"it did not come before the end, but {after:.1f} s after its earliest moment")
    wait("the session to be recorded", lambda: len(selvane.sessions()) == 1)
    check_equal(selvane.sessions()[0]["completed"], True, "the session is completed")

    # 4. Once: nothing more has come when the next phase was started and paused.
    desktop.bus.call_blocking(NAME, PATH, "org.dunstproject.cmd0", "NotificationCloseAll", "", ())
    selvane.press_primary()
    selvane.control("Pause")
    selvane.press_primary()
    selvane.control("Resume")
    wait_for_program(desktop)
    check_equal(screen.texts(), [], "when a break was started and paused there is")
    check_equal(history(desktop), ["Focus complete"], "in all there was")

    # 5. Without a server the program ends as ever.
    desktop.stop_notifications()
    check_equal(selvane.quit(), 0, "exit status")


sys.exit(harness.run(test))
