#!/usr/bin/python3
"""The end of a phase is heard and seen: a sound on a real sound server, and a status item that asks for attention."""

import array
import pathlib
import re
import sys

import harness
from harness import check, check_equal
from virtualdesktop import changed_area, wait

FRAMES_A_SECOND = 48000
SIDES = 2
DEVICE = "module-null-sink sink_name=hall rate=48000 format=float32le channels=2 norewinds=1"


def start_sound(desktop):
    desktop.start("sound server", ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
                                   "-L", DEVICE, "-L", "module-native-protocol-unix auth-anonymous=1"])
    socket = pathlib.Path(desktop.environment["XDG_RUNTIME_DIR"], "pulse/native")
    wait("the sound server", socket.exists)
    # What it records goes to its log.
    desktop.start("recording", ["parec", "--device=hall.monitor", "--format=float32le", "--raw",
                                f"--rate={FRAMES_A_SECOND}", f"--channels={SIDES}"])
    wait("the recording to begin", lambda: desktop.log("recording").stat().st_size)


def heard(desktop):
    """What was recorded so far, without the silence before and after."""
    recorded = desktop.log("recording").read_bytes()
    size = SIDES * array.array("f").itemsize
    samples = array.array("f", recorded[:len(recorded) // size * size])
    loud = [index for index, sample in enumerate(samples) if abs(sample) > 0.0005]
    return samples[loud[0]:loud[-1] + 1] if loud else samples[:0]


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


def test(desktop, selvane):
    start_sound(desktop)
    bare_tray = desktop.settled_picture(desktop.tray_area)
    selvane.have_settings(focusMinutes=1, shortBreakMinutes=60)
    selvane.start()
    selvane.open_panel()
    selvane.press_primary()
    desktop.key("Escape")
    selvane.wait_for_no_panel()
    check(not carries_sound_library(selvane), "before its first sound the program doesn't carry the sound library")
    check(not plays(selvane), "nothing plays while the phase runs")
    watch_status(desktop)
    check_equal(len(heard(desktop)), 0, "samples heard while the phase runs")

    wait("the item to ask for attention", lambda: told_status(desktop), 70)
    check(changed_area(bare_tray, desktop.settled_picture(desktop.tray_area)), "the dial is seen at the end")
    check_equal(len(selvane.sessions()), 1, "sessions in the history")
    wait("the item to be content", lambda: len(told_status(desktop)) == 2)
    check_equal(told_status(desktop), ["NeedsAttention", "Active"], "what panels were told")
    check(changed_area(bare_tray, desktop.settled_picture(desktop.tray_area)), "the dial is there afterwards")

    sound = heard(desktop)
    seconds = len(sound) / SIDES / FRAMES_A_SECOND
    check(0.5 < seconds < 1.0, f"a sound of {seconds:.2f} s was heard")
    check(0.3 < max(sound) < 0.4, f"its peak was {max(sound):.2f}")
    wait("what plays to end", lambda: not plays(selvane))
    check(True, "a while later nothing plays any more")


sys.exit(harness.run(test))
