#!/usr/bin/python3
"""The end of a phase is heard and seen: a sound on a real sound server, and a status item that asks for attention.

    phase_end.py PROGRAM TRAY pulseaudio|pipewire
"""

import pathlib
import re
import sys

import harness
import soundserver
from harness import check, check_equal
from virtualdesktop import changed_area, wait

def carries_sound_library(selvane):
    return "libpulse" in pathlib.Path(f"/proc/{selvane.process.pid}/maps").read_text()


def plays(selvane):
    """Whether the program has the thread that plays sounds."""
    names = set()
    for task in pathlib.Path(f"/proc/{selvane.process.pid}/task").iterdir():
        try:
            names.add((task / "comm").read_text().strip())
        except FileNotFoundError:
            pass
    return "sounds" in names


def watch_status(desktop):
    desktop.start("status", ["dbus-monitor", "--address", desktop.environment["DBUS_SESSION_BUS_ADDRESS"],
                             "type=signal,interface=org.kde.StatusNotifierItem,member=NewStatus"])
    wait("the watch to begin", lambda: desktop.log("status").stat().st_size)


def told_status(desktop):
    """What the item told panels about its status, one after the other."""
    return re.findall(r'^   string "(NeedsAttention|Active)"', desktop.log("status").read_text(), re.MULTILINE)


def check_sound(sound, name, shortest, longest, pitch):
    check(shortest < sound.seconds < longest, f"{name}: a sound of {sound.seconds:.2f} s was heard")
    check(0.3 < sound.peak < 0.4, f"{name}: its peak was {sound.peak:.2f}")
    check_equal(round(sound.pitch), pitch, f"{name}: it begins with a note of so many hertz")


def test(desktop, selvane, server):
    recording = soundserver.start(desktop, server)
    bare_tray = desktop.settled_picture(desktop.tray_area)
    selvane.have_settings(focusMinutes=1, shortBreakMinutes=1, autoStartBreaks=True, autoStartFocus=False)
    selvane.start()
    selvane.open_panel()
    selvane.press_primary()
    desktop.key("Escape")
    selvane.wait_for_no_panel()
    check(not carries_sound_library(selvane), "before its first sound the program doesn't carry the sound library")
    check(not plays(selvane), "nothing plays while the phase runs")
    watch_status(desktop)
    check_equal(len(recording.sounds()), 0, "sounds heard while the phase runs")

    wait("the item to ask for attention", lambda: told_status(desktop), 100)
    check(changed_area(bare_tray, desktop.settled_picture(desktop.tray_area)), "the dial is seen at the end")
    check_equal(len(selvane.sessions()), 1, "sessions in the history")
    wait("the item to be content", lambda: len(told_status(desktop)) == 2)
    check_equal(told_status(desktop), ["NeedsAttention", "Active"], "what panels were told")
    check(changed_area(bare_tray, desktop.settled_picture(desktop.tray_area)), "the dial is there afterwards")
    check_equal(len(recording.wait_for_sounds(1)), 1, "sounds at the end of the focus phase")
    wait("what plays to end", lambda: not plays(selvane))
    check(True, "a while later nothing plays any more")

    wait("the item to ask for attention again", lambda: len(told_status(desktop)) == 3, 100)
    focus, rest = recording.wait_for_sounds(2)
    check_sound(focus, "Glass", 0.7, 1.0, pitch=1047)
    check_sound(rest, "Hero", 1.0, 1.3, pitch=349)
    wait("the item to be content again", lambda: len(told_status(desktop)) == 4)
    check_equal(told_status(desktop), 2 * ["NeedsAttention", "Active"], "what panels were told in all")
    wait("what plays to end", lambda: not plays(selvane))
    check_equal(len(recording.sounds()), 2, "sounds in all")


sys.exit(harness.run(test))
