#!/usr/bin/python3
"""The end of a phase is told once, by whichever notification server runs then, and not while the timer is paused."""

import sys
import time

import dbus
import harness
from harness import check, check_equal
from notifications import NAME, PATH, DunstScreen, wait_for_texts
from virtualdesktop import wait

PHASE = 60


def wait_until(moment):
    time.sleep(max(0.0, moment - time.monotonic()))


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
    selvane.press_primary()
    started = time.monotonic()
    selvane.control("Pause")

    # 2. A pause takes the notification back.
    wait_until(started + 5)
    selvane.press_primary()
    selvane.control("Resume")
    ran = time.monotonic() - started
    desktop.start_notifications()
    wait_until(started + PHASE + 3)
    check_equal(screen.texts(), [], "past the moment at which the phase would have ended there is")

    # 3. The server falls over in mid-phase, and the next one tells the end.
    selvane.press_primary()
    resumed = time.monotonic()
    selvane.control("Pause")
    desktop.stop_notifications()
    wait_until(resumed + 5)
    desktop.start_notifications()
    wait_until(resumed + PHASE - ran - 3)
    check_equal(screen.texts(), [], "shortly before the end there is")
    wait_for_texts(screen, "Focus complete", "Nice work. Time for a break.")
    late = time.monotonic() - (resumed + PHASE - ran)
    check(abs(late) < 10, f"it came {late:.1f} s after the end")
    wait("the session to be recorded", lambda: len(selvane.sessions()) == 1)
    check_equal(selvane.sessions()[0]["completed"], True, "the session is completed")

    # 4. Once.
    desktop.bus.call_blocking(NAME, PATH, "org.dunstproject.cmd0", "NotificationCloseAll", "", ())
    time.sleep(2)
    check_equal(screen.texts(), [], "a while later there is")
    check_equal(history(desktop), ["Focus complete"], "in all there was")

    # 5. Without a server the program ends as ever.
    desktop.stop_notifications()
    check_equal(selvane.quit(), 0, "exit status")


sys.exit(harness.run(test))
