"""What the tests on desktops share: the command line, the private desktop, and checks that name what they found."""

import argparse
import datetime
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "Scripts"))

from selvanedriver import Selvane  # noqa: E402
from virtualdesktop import WINDOW_MANAGERS, Desktop, Failure  # noqa: E402


def check(holds, what):
    """Fails the test with `what` unless it holds; says what held otherwise, so that a log tells how far it came."""
    if not holds:
        raise Failure(what)
    print(f"ok: {what}", flush=True)


def check_equal(found, wanted, what):
    if found != wanted:
        raise Failure(f"{what}: found {found!r}, wanted {wanted!r}")
    print(f"ok: {what}: {found!r}", flush=True)


def make_it_noon(desktop):
    """Has the programs started from now on live where it is noon, so that no day ends during the test. Gives the
    day there."""
    hours = 12 - datetime.datetime.now(datetime.timezone.utc).hour
    desktop.environment["TZ"] = f"Etc/GMT{-hours:+d}"
    return datetime.datetime.now(datetime.timezone(datetime.timedelta(hours=hours))).date()


def run(test):
    """Runs `test(desktop, selvane)` on the desktop that the command line names. More words there are more arguments
    of the test."""
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("tray", choices=["notifier", "xembed", "none"])
    parser.add_argument("more", nargs="*")
    parser.add_argument("--manager", choices=WINDOW_MANAGERS, default="openbox")
    arguments = parser.parse_args()
    try:
        with Desktop(tray=None if arguments.tray == "none" else arguments.tray, accessible=True,
                     # Desktops with a compositor and without one are both common.
                     compositor=arguments.tray == "notifier", manager=arguments.manager) as desktop:
            selvane = Selvane(desktop, arguments.program)
            try:
                test(desktop, selvane, *arguments.more)
            except BaseException:
                if desktop.log("selvane").exists():
                    print(desktop.log("selvane").read_text(), file=sys.stderr)
                raise
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        return 1
    return 0
