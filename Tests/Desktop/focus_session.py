#!/usr/bin/python3
"""The road of a focus session, from the click on the dial to the file and back after a restart."""

import stat
import sys
import time

import harness
from harness import check, check_equal
from virtualdesktop import changed_area, wait

# A run is recorded from a minute on.
RECORDED_AFTER = 60


def test(desktop, selvane):
    harness.make_it_noon(desktop)
    selvane.start()
    check(not selvane.sessions_file.exists(), "a first start writes no history")
    idle_panel_area = selvane.open_panel()
    check(selvane.today().startswith("Today: 0m of "), "the panel tells that there was no focus today")
    idle_panel = desktop.settled_picture(idle_panel_area)
    idle_dial = selvane.dial and selvane.dial_picture()

    pressed = time.monotonic()
    selvane.press_primary()
    wait("the panel to show the running phase",
         lambda: changed_area(idle_panel, desktop.picture(idle_panel_area)))
    if selvane.dial:
        wait("the dial to show the running phase", lambda: changed_area(idle_dial, selvane.dial_picture()))
    started = time.monotonic()
    first_panel = desktop.picture(idle_panel_area)
    wait("the panel's time to go on", lambda: changed_area(first_panel, desktop.picture(idle_panel_area)))

    # With the panel closed, only the dial tells that the phase goes on.
    desktop.key("Escape")
    selvane.wait_for_no_panel()
    if selvane.dial:
        # The time beside the dial, where the tray has room for it, moves the dial.
        early_tray = desktop.picture(desktop.tray_area)
    time.sleep(max(0.0, started + RECORDED_AFTER + 1 - time.monotonic()))
    if selvane.dial:
        check(changed_area(early_tray, desktop.picture(desktop.tray_area)), "the dial moves while the phase runs")

    selvane.open_panel()
    selvane.press_reset()
    wait("the session to be recorded", selvane.sessions_file.exists)
    recorded = time.monotonic()
    sessions = selvane.sessions()
    check_equal(len(sessions), 1, "sessions in the history")
    session = sessions[0]
    check_equal(session["completed"], False, "a run that was cut short is not completed")
    check_equal(session["phase"], "focus", "its phase")
    check(RECORDED_AFTER <= session["actualSeconds"] <= recorded - pressed + 1,
          f"it ran for {session['actualSeconds']} s of {recorded - pressed:.1f} s")
    check_equal(oct(stat.S_IMODE(selvane.data_folder.stat().st_mode)), "0o700", "mode of the data folder")
    check(not [path for path in selvane.data_folder.iterdir() if path.name.endswith((".tmp", "~"))],
          "nothing temporary lies beside the history")

    check_equal(selvane.quit(), 0, "exit status after quitting by the keyboard")
    written = selvane.sessions_file.read_bytes()
    if desktop.tray:
        selvane.wait_for_no_dial()

    selvane.start()
    selvane.open_panel()
    check(selvane.today().startswith("Today: 1m of "), "after a restart the panel tells of today's minute")
    check_equal(selvane.sessions_file.read_bytes(), written, "the history after a restart, byte for byte")
    check_equal(selvane.quit(), 0, "exit status of the second run")
    check_equal(selvane.sessions_file.read_bytes(), written, "the history after the second run")


sys.exit(harness.run(test))
