#!/usr/bin/python3
"""Noise to focus by, from the panel's controls to a real sound server's device.

    music.py PROGRAM TRAY pulseaudio|pipewire
"""

import sys
import time

import harness
import soundserver
from harness import check, check_equal
from virtualdesktop import wait

# A fade is over after a few seconds; a machine may be slow.
PATIENCE = 30
SILENCE = 0.0005
# White noise at full volume is anything between -0.16 and 0.16, as often as anything else.
WHITE = 0.16 / 3 ** 0.5


def test(desktop, selvane, server):
    recording = soundserver.start(desktop, server)

    def wait_for_noise(louder_than=0.005):
        wait("noise", lambda: recording.loudness() > louder_than, PATIENCE)

    def wait_for_silence():
        wait("silence", lambda: recording.loudness() < SILENCE, PATIENCE)

    selvane.is_silent = False
    # Time enough for a slow machine to try everything in one phase.
    selvane.have_settings(focusMinutes=2, shortBreakMinutes=1, autoStartBreaks=True, playEndSound=False)
    selvane.start()
    selvane.click_dial()
    wait("the panel", lambda: selvane.panel)
    selvane.control("Turn sound on")
    check(recording.loudness() < SILENCE, "nothing is heard before the phase begins")

    began = time.monotonic()
    selvane.control("Start").press()
    selvane.control("Turn sound off")
    wait_for_noise()
    check(True, "rain is heard with the phase")
    selvane.control("Pause").press()
    selvane.control("Turn sound on")
    wait_for_silence()
    check(True, "it pauses with the phase")
    selvane.control("Resume").press()
    wait_for_noise()
    check(True, "it goes on with the phase")

    # By its own button, and live.
    selvane.control("Turn sound off").press()
    selvane.control("Turn sound on")
    wait_for_silence()
    check(True, "its button ends it, the phase goes on")
    selvane.control("Turn sound on").press()
    wait_for_noise()
    selvane.control("Rain").press()
    selvane.control("White noise", "menu item").press()
    selvane.control("Volume", "slider").set_value(1)
    wait_for_noise(louder_than=0.9 * WHITE)
    selvane.control("Volume", "slider").set_value(0.25)
    wait("the noise to be a quarter as loud", lambda: 0.2 * WHITE < recording.loudness() < 0.3 * WHITE, PATIENCE)
    check(True, "kind and volume are heard while it plays")

    wait("the break to begin", lambda: selvane.find_control("Turn sound on"), 160)
    check(time.monotonic() - began > 115, "noise until the break")
    wait_for_silence()
    check(True, "in the break it is silent")

    # Without a phase, and at the end of the program.
    selvane.control("Turn sound on").press()
    wait_for_noise(louder_than=0.01)
    check_equal(selvane.terminate(), 0, "exit status of a program that plays")
    wait_for_silence()


sys.exit(harness.run(test))
