#!/usr/bin/python3
"""The program as it is installed in some folder: it finds what came with it, and desktops can start it."""

import os
import pathlib
import subprocess
import sys

import harness
from harness import check, check_equal
from selvanedriver import BUS_NAME, TITLE
from virtualdesktop import wait

# A menu of programs, as far as it matters here: it has the bus start one, and stays until that is done.
LAUNCHER = """
from gi.repository import Gio, GLib
loop = GLib.MainLoop()
def launched(entry, result):
    entry.launch_uris_finish(result)
    loop.quit()
Gio.DesktopAppInfo.new("com.lorbin.selvane.desktop").launch_uris_async([], None, None, launched)
loop.run()
"""


def mapped_files(pid):
    """The files that a process has in its memory."""
    lines = pathlib.Path(f"/proc/{pid}/maps").read_text().splitlines()
    return {line.split(maxsplit=5)[5] for line in lines if line.count(" /") == 1}


def install(selvane, prefix):
    tree = selvane.binary.parent.parent
    subprocess.run(["cmake", "--install", tree, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
    return prefix / "bin/selvane"


def check_files(prefix):
    """What desktops look for is where they look for it."""
    share = prefix / "share"
    entry = share / "applications/com.lorbin.selvane.desktop"
    subprocess.run(["desktop-file-validate", entry], check=True)
    subprocess.run(["appstreamcli", "validate-tree", "--no-net", prefix], check=True, stdout=subprocess.DEVNULL)
    check(True, "the desktop entry and the metainfo are valid where they are installed")
    icons = share / "icons/hicolor"
    for side in (16, 22, 24, 32, 48, 64, 128, 256, 512):
        picture = icons / f"{side}x{side}/apps/com.lorbin.selvane.png"
        size = subprocess.run(["identify", "-format", "%w %h", picture], check=True, capture_output=True, text=True)
        check_equal(size.stdout, f"{side} {side}", f"the size of the icon of {side} pixels")
    for drawing in ("scalable/apps/com.lorbin.selvane.svg", "symbolic/apps/com.lorbin.selvane-symbolic.svg"):
        check((icons / drawing).is_file(), f"there is {drawing}")
    check((share / "selvane/Changelog.json").is_file(), "there are the release notes")
    check((share / "man/man1/selvane.1").is_file(), "there is the manual page")
    service = (share / "dbus-1/services/com.lorbin.selvane.service").read_text()
    check_equal(service, f"[D-BUS Service]\nName=com.lorbin.selvane\nExec=\"{prefix}/bin/selvane\" --service\n",
                "what the bus starts")


def check_program(desktop, selvane, prefix):
    """A start by its path, as a login makes it: the dial alone, and a click finds the views."""
    selvane.start()
    check(not desktop.window(TITLE), "a start shows no panel")
    selvane.open_panel()
    files = mapped_files(selvane.process.pid)
    check(f"{prefix}/bin/selvane" in files, "the installed program runs")
    check(f"{prefix}/lib/selvane/libselvane-popover.so" in files, "it has found the views beside it")
    check(not any(str(selvane.built) in file for file in files), "it uses nothing of the tree where it was built")
    check_equal(selvane.quit(), 0, "exit status")
    selvane.wait_for_no_dial()
    check_equal(desktop.log("selvane").read_text(), "", "what it had to say")


def check_activation(desktop, selvane, prefix):
    """Starts from a menu of programs: the bus makes the first, and only those after it open the panel."""
    services = pathlib.Path(desktop.environment["XDG_RUNTIME_DIR"]) / "services"
    os.symlink(prefix / "share/dbus-1/services/com.lorbin.selvane.service", services / "com.lorbin.selvane.service")
    desktop.bus.call_blocking("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                              "ReloadConfig", "", ())
    check(not desktop.owner(BUS_NAME), "the program does not run")
    for number in range(3):
        launcher = desktop.start(f"launcher-{number}", ["/usr/bin/python3", "-c", LAUNCHER],
                                 PATH=f"{prefix}/bin:/usr/bin:/bin", XDG_DATA_DIRS=f"{prefix}/share:/usr/share")
        check_equal(launcher.wait(20), 0, "exit status of what starts programs")
        if number == 0:
            wait("the dial", lambda: selvane.shown_in_tray().width)
            desktop.settled_picture()
            check(not desktop.window(TITLE), "the start over the bus shows no panel")
            continue
        wait("the panel", lambda: desktop.window(TITLE))
        wait("the panel to have the keyboard", lambda: desktop.has_focus(TITLE))
        desktop.key("Escape")
        wait("the panel to go", lambda: not desktop.window(TITLE))
    check(True, "the next ones show it")
    pid = desktop.bus.call_blocking("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                    "GetConnectionUnixProcessID", "s", (BUS_NAME,))
    check_equal(os.readlink(f"/proc/{pid}/exe"), f"{prefix}/bin/selvane", "the program that the bus started")


def test(desktop, selvane):
    prefix = desktop.folder / "installed here"
    selvane.built = selvane.binary.parent.parent
    selvane.binary = install(selvane, prefix)
    check_files(prefix)
    check_program(desktop, selvane, prefix)
    check_activation(desktop, selvane, prefix)


sys.exit(harness.run(test))
