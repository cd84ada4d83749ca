"""A Wayland desktop without a screen: sway with waybar, private as the X11 desktop of `virtualdesktop` is.

sway runs here without any input device: keys come from a virtual keyboard, clicks from a virtual mouse. Needs the
packages of the group `virtual`.
"""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

from PIL import Image

from virtualdesktop import Area, Desktop, TRAY_HEIGHT, wait
from waylandpointer import WaylandPointer

NOBODY = 65534

SWAY = """output HEADLESS-1 resolution {width}x{height} position 0 0 scale {scale}
output * bg {background} solid_color
seat * hide_cursor 1
"""

BAR_STYLE = """* {{ border: none; font-family: sans-serif; font-size: 13px; }}
window#waybar {{ background: {ground}; }}
"""


class WaylandDesktop(Desktop):
    """As `Desktop`, with its `tray` "notifier" or None, on that `edge`."""

    _pointer = None
    _sway_folder = None

    def _make_environment(self):
        environment = super()._make_environment()
        environment |= {"XDG_SESSION_TYPE": "wayland", "QT_QPA_PLATFORM": "wayland", "GDK_BACKEND": "wayland"}
        # The screen itself is scaled here.
        environment.pop("QT_SCALE_FACTOR", None)
        return environment

    def _start_display(self):
        # sway refuses to run as root; what it makes can be used by root all the same.
        self._sway_folder = pathlib.Path(tempfile.mkdtemp(prefix="selvane-sway."))
        command = ["sway", "--config", self._sway_folder / "config"]
        if os.geteuid() == 0:
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", *command]
            os.chown(self._sway_folder, NOBODY, NOBODY)
        width, height = (side * self.scale for side in self.size)
        (self._sway_folder / "config").write_text(SWAY.format(width=width, height=height, scale=self.scale,
                                                              background=self.background))
        self.start("sway", command, HOME=str(self._sway_folder), XDG_RUNTIME_DIR=str(self._sway_folder),
                   WLR_BACKENDS="headless", WLR_RENDERER="pixman", WLR_LIBINPUT_NO_DEVICES="1")
        sockets = wait("sway", lambda: self._sockets() if self._check_sway() else None)
        self.environment["SWAYSOCK"], self.environment["WAYLAND_DISPLAY"] = (str(path) for path in sockets)
        wait("the screen", lambda: self._ask("get_outputs"))
        # Before any program, since programs need a moment to take notice of them. Each key brings a keyboard of its
        # own besides, and with this one there is never none.
        self._pointer = WaylandPointer(self.environment["WAYLAND_DISPLAY"], (width, height))
        self.start("keyboard", ["wtype", "-s", "3600000", "-k", "Shift_L"])
        wait("the keyboard", lambda: any(device["type"] == "keyboard" for device in self._ask("get_inputs") or ()))

    def _check_sway(self):
        self._check_alive("sway")
        return True

    def _sockets(self):
        commands = list(self._sway_folder.glob("sway-ipc.*.sock"))
        displays = [path for path in self._sway_folder.glob("wayland-*") if path.suffix != ".lock"]
        return (commands[0], displays[0]) if commands and displays else None

    def _end(self, failed):
        if self._pointer:
            self._pointer.close()
        super()._end(failed)
        if self._sway_folder:
            shutil.rmtree(self._sway_folder, ignore_errors=True)

    def _start_window_manager(self):
        pass

    def start_tray(self):
        if not self.tray:
            return
        settings = self.home / "waybar.json"
        depth = "width" if self.edge in ("left", "right") else "height"
        settings.write_text(json.dumps({"position": self.edge, depth: TRAY_HEIGHT, "modules-right": ["tray"],
                                        "tray": {"icon-size": 20}}))
        style = self.home / "waybar.css"
        style.write_text(BAR_STYLE.format(ground="#" + 3 * f"{self._bar_shade:02x}"))
        self.start("tray", ["waybar", "--config", settings, "--style", style])
        wait("the bar's status notifier host", lambda: self.owner("org.kde.StatusNotifierWatcher"))
        wait("the bar", lambda: self.free_area != Area(0, 0, *self.size))
        wait("the bar's colour", self._has_bar)

    # Looking

    def _ask(self, question, *more):
        answer = subprocess.run(["swaymsg", "--raw", "--type", question, *more], env=self.environment,
                                stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
        return json.loads(answer.stdout) if answer.returncode == 0 else None

    def command(self, words):
        """Has sway do something."""
        self._ask("command", words)

    @property
    def free_area(self):
        """What the bar leaves of the screen."""
        rect = next(space["rect"] for space in self._ask("get_workspaces") or () if space["focused"])
        return Area(rect["x"], rect["y"], rect["width"], rect["height"])

    def picture(self, area=None):
        file = self._runtime / "picture.ppm"
        subprocess.run(["grim", "-t", "ppm", file], env=self.environment, stdin=subprocess.DEVNULL, check=True,
                       stderr=subprocess.DEVNULL)
        with Image.open(file) as picture:
            return picture.convert("RGB").crop(area.box if area else None)

    def node(self, title):
        """What sway tells of the visible window with that title, or None."""
        nodes = [self._ask("get_tree") or {}]
        while nodes:
            node = nodes.pop()
            if node.get("pid") and node.get("name") == title and node.get("visible"):
                return node
            nodes += node.get("nodes", []) + node.get("floating_nodes", [])
        return None

    def window(self, title, narrowest=100):
        node = self.node(title)
        if not node or node["rect"]["width"] < narrowest:
            return None
        return Area(*(node["rect"][side] for side in ("x", "y", "width", "height")))

    def has_focus(self, title):
        node = self.node(title)
        return bool(node and node["focused"])

    # Acting

    def click(self, x, y, button=1, held=0.03):
        self.move(x, y)
        for is_down in (True, False):
            self._pointer.press(button, is_down)
            time.sleep(held)

    def move(self, x, y):
        self._pointer.move(x, y)

    def key(self, combination):
        *modifiers, last = combination.split("+")
        command = ["wtype"]
        for modifier in modifiers:
            command += ["-M", modifier]
        command += ["-k", last]
        for modifier in modifiers:
            command += ["-m", modifier]
        subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, check=True)
