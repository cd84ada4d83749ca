"""A desktop without a screen, private to the process that starts it.

It has a display, a session bus, a window manager, a tray of the wanted kind, a notification server, and folders of
its own for everything that a program would keep in the user's home; the real home, bus and display are out of reach
of everything that runs on it. Whatever was started on it, and whatever that started, is ended with it, by process
id. Needs the packages of the group `virtual`.

    with Desktop(tray="notifier") as desktop:
        program = desktop.start("program", ["/usr/bin/program"])
        window = desktop.wait("the window", lambda: desktop.window("Title"))
        desktop.click(*window.middle)
        desktop.picture().save("picture.png")
"""

import ctypes
import dataclasses
import glob
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import dbus
import dbus.bus
from PIL import Image, ImageChops, ImageGrab
import Xlib.display
import Xlib.error
import Xlib.ext.xtest
import Xlib.X
import Xlib.Xatom
import Xlib.XK

from accessibletree import Tree

# Values of prctl(2), which Python does not wrap.
PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36

TRAY_HEIGHT = 28
XFCE_SETTINGS = "/usr/share/dbus-1/services/org.xfce.Xfconf.service"
ACCESSIBILITY_BUS = "/usr/libexec/at-spi-bus-launcher"
# Where the packages put the notification servers; none of them is started by the bus here.
NOTIFICATION_SERVERS = {
    "dunst": "/usr/bin/dunst",
    "xfce4-notifyd": "/usr/lib/*/xfce4/notifyd/xfce4-notifyd",
    "notification-daemon": "/usr/lib/notification-daemon/notification-daemon",
    # Only on a Wayland desktop.
    "mako": "/usr/bin/mako",
}

WINDOW_MANAGERS = {
    "openbox": ["openbox", "--sm-disable"],
    # One that lets programs keep the keyboard in windows that aren't its own.
    "xfwm4": ["xfwm4", "--sm-client-disable", "--compositor=off"],
}

XFCE_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="{dark}"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p={corner};x=0;y=0"/>{output}
      <property name="mode" type="uint" value="{mode}"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="{height}"/>
      <property name="icon-size" type="uint" value="0"/>
      <property name="background-style" type="uint" value="1"/>
      <property name="background-rgba" type="array">
        <value type="double" value="{grey}"/>
        <value type="double" value="{grey}"/>
        <value type="double" value="{grey}"/>
        <value type="double" value="1.0"/>
      </property>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
"""

# Which monitor it lies on, where there is more than one.
XFCE_OUTPUT = """
      <property name="output-name" type="string" value="{name}"/>"""

# The corner that the panel of Xfce holds on to, and whether it stands upright.
XFCE_EDGES = {"top": (6, 0), "bottom": (8, 0), "left": (6, 1), "right": (2, 1)}

BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Failure(Exception):
    """Something that should have happened did not; the text says what."""


@dataclasses.dataclass(frozen=True)
class Area:
    """A rectangle of the screen in pixels."""

    x: int
    y: int
    width: int
    height: int

    @property
    def middle(self):
        return self.x + self.width // 2, self.y + self.height // 2

    @property
    def box(self):
        return self.x, self.y, self.x + self.width, self.y + self.height


def wait(what, condition, seconds=20.0):
    """The first true answer of `condition`, which is asked again and again; a Failure naming `what` when time is up."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise Failure(f"waited {seconds:g} s in vain for {what}")
        time.sleep(0.02)


def changed_area(before, after):
    """The smallest area that holds every pixel in which the two pictures differ clearly; None if there is none."""
    difference = ImageChops.difference(before.convert("RGB"), after.convert("RGB")).convert("L")
    box = difference.point(lambda value: 255 if value > 24 else 0).getbbox()
    return box and Area(box[0], box[1], box[2] - box[0], box[3] - box[1])


def _descendants(of):
    """Process ids of everything that `of` started, directly or not."""
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                fields = pathlib.Path("/proc", entry, "stat").read_text().rpartition(")")[2].split()
            except OSError:
                continue
            parents[int(entry)] = int(fields[1])
    found = []
    front = {of}
    while front:
        front = {pid for pid, parent in parents.items() if parent in front}
        found += front
    return found


class Desktop:
    """One private desktop. Used as a context: the desktop stands inside of it. With a failure inside, the folder with
    the logs and a last picture is kept and named; otherwise it goes, unless a folder was asked for."""

    def __init__(self, tray=None, *, dark=None, scale=1, size=(1280, 800), folder=None, background="#5b6773",
                 accessible=False, compositor=False, notifications="dunst", edge="top", manager="openbox"):
        """`tray` is "notifier" (a host of status notifier items), "xembed" (a tray that embeds windows) or None.
        It lies along that `edge` of the screen.
        `dark` None means a desktop that doesn't say whether it is dark; otherwise a settings portal says so.
        `background` is a colour, or a picture that is repeated. With
        `compositor` windows can be translucent. With `accessible` programs tell the accessibility bus what they
        show, and `texts` can be asked for it. `notifications` is a key of
        NOTIFICATION_SERVERS, or None for a desktop without one. `manager` is a key of WINDOW_MANAGERS."""
        self.tray = tray
        self.accessible = accessible
        self.compositor = compositor
        self.edge = edge
        self.dark = dark
        self.scale = scale
        self.size = size
        self.background = background
        self.notifications = notifications
        self.manager = manager
        self._folder = folder
        self._processes = {}

    # How many pixels a unit of the panel of Xfce has on either side.
    @property
    def _tray_scale(self):
        return self.scale

    # Where the tray lies, for desktops with more than one monitor: the name of an output and its number.
    _tray_output = None
    _tray_monitor = 0

    # The life of the desktop

    def __enter__(self):
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
        if self._folder:
            self.folder = pathlib.Path(self._folder).resolve()
            self.folder.mkdir(parents=True, exist_ok=True)
        else:
            self.folder = pathlib.Path(tempfile.mkdtemp(prefix="selvane-desktop."))
        # The path of a socket has a hundred characters at most, so the run-time folder does not lie in `folder`.
        self._runtime = pathlib.Path(tempfile.mkdtemp(prefix="selvane-run."))
        self.logs = self.folder / "logs"
        self.home = self.folder / "home"
        self.data = self.home / ".local/share"
        for folder in (self.logs, self.home, self.data, self.home / ".config", self.home / ".cache"):
            folder.mkdir(parents=True, exist_ok=True)
        self._choose_font()
        self.environment = self._make_environment()
        try:
            self._start_display()
            self._start_bus()
            self._start_window_manager()
            if self.compositor:
                self._start_compositor()
            if self.dark is not None:
                self._start_portal()
            if self.accessible:
                self._start_accessibility()
            self.start_tray()
            if self.notifications:
                self.start_notifications()
        except BaseException:
            self._end(failed=True)
            raise
        return self

    def __exit__(self, kind, value, trace):
        self._end(failed=kind is not None)

    def _end(self, failed):
        if failed:
            try:
                self.picture().save(self.logs / "last.png")
            except Exception as problem:  # The display may be what failed.
                print(f"no last picture: {problem}", file=sys.stderr)
        connection = getattr(self, "_display", None)
        if connection:
            connection.close()
        for name in ("accessibility", "bus"):
            bus = getattr(self, name, None)
            if bus:
                bus.close()
        for number in (signal.SIGTERM, signal.SIGKILL):
            deadline = time.monotonic() + 3
            for pid in _descendants(os.getpid()):
                try:
                    os.kill(pid, number)
                except ProcessLookupError:
                    pass
            while _descendants(os.getpid()) and time.monotonic() < deadline:
                self._reap()
                time.sleep(0.02)
        shutil.rmtree(self._runtime, ignore_errors=True)
        if failed:
            print(f"What the desktop left, logs included, is in {self.folder}.", file=sys.stderr)
        elif not self._folder:
            shutil.rmtree(self.folder, ignore_errors=True)

    def _reap(self):
        for process in self._processes.values():
            process.poll()
        try:
            while os.waitpid(-1, os.WNOHANG)[0]:
                pass
        except ChildProcessError:
            pass

    def _choose_font(self):
        folder = self.home / ".config/fontconfig"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "fonts.conf").write_text("""<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
</fontconfig>
""")

    def _make_environment(self):
        environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / ".config"),
            "XDG_DATA_HOME": str(self.data),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "XDG_RUNTIME_DIR": str(self._runtime),
            "XDG_SESSION_TYPE": "x11",
            "LANG": "C.UTF-8",
            "TZ": "Europe/Berlin",
            "GSETTINGS_BACKEND": "memory",
            "NO_AT_BRIDGE": "1",
            "GTK_A11Y": "none",
            # No machine's own system bus: what a test sees must not depend on where it runs.
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self._runtime}/none",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self._runtime}/bus",
        }
        if self.accessible:
            environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        if self.scale != 1:
            environment["QT_SCALE_FACTOR"] = str(self.scale)
        for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                environment[name] = os.environ[name]
        return environment

    # Processes

    def start(self, name, command, **more):
        """Starts a program on this desktop; its output goes to the log of that name."""

        def prepare():
            # Ends with this process even if this process is ended without warning.
            ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)

        with open(self.log(name), "ab") as log:
            process = subprocess.Popen([str(part) for part in command], env=self.environment | more,
                                       stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT,
                                       cwd=self.home, start_new_session=True, preexec_fn=prepare)
        self._processes[name] = process
        return process

    def stop(self, name, number=signal.SIGTERM):
        """Ends a program that was started here and waits until it is gone."""
        process = self._processes.pop(name)
        process.send_signal(number)
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
            raise Failure(f"{name} did not end within 10 s") from None

    def process(self, name):
        """The program that was started under that name last."""
        return self._processes[name]

    def log(self, name):
        return self.logs / f"{name}.log"

    def _check_alive(self, name):
        status = self._processes[name].poll()
        if status is not None:
            raise Failure(f"{name} ended with {status}; see {self.log(name)}")

    # The parts of the desktop

    def _start_display(self):
        read, write = os.pipe()
        width, height = self.size
        os.set_inheritable(write, True)
        try:
            self._processes["xvfb"] = self._popen_display(write, f"{width * self.scale}x{height * self.scale}x24")
        finally:
            os.close(write)
        with os.fdopen(read) as answer:
            number = answer.readline().strip()
        if not number:
            raise Failure(f"the display did not start; see {self.log('xvfb')}")
        self.environment["DISPLAY"] = f":{number}"
        self._display = Xlib.display.Display(f":{number}")
        self._screen = self._display.screen()
        self._root = self._screen.root
        self._paint_background()
        self._display.sync()

    def _paint_background(self):
        picture = self.background
        if isinstance(picture, str):
            picture = Image.new("RGB", (1, 1), picture)
        pixmap = self._root.create_pixmap(*picture.size, self._screen.root_depth)
        pixmap.put_pil_image(pixmap.create_gc(), 0, 0, picture)
        self._root.change_attributes(background_pixmap=pixmap)
        self._root.clear_area()
        # Compositors and translucent trays look for the background here.
        for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID"):
            self._root.change_property(self._display.intern_atom(name), Xlib.Xatom.PIXMAP, 32, [pixmap.id])
        self._background = pixmap

    def _popen_display(self, write, mode):
        def prepare():
            ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)

        with open(self.log("xvfb"), "ab") as log:
            return subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", mode, "-nolisten", "tcp",
                                     "-noreset", "-dpi", str(96 * self.scale)],
                                    env=self.environment, stdin=subprocess.DEVNULL, stdout=log,
                                    stderr=subprocess.STDOUT, pass_fds=[write], start_new_session=True,
                                    preexec_fn=prepare)

    def _start_bus(self):
        services = self._runtime / "services"
        services.mkdir()
        configuration = self._runtime / "bus.conf"
        configuration.write_text(BUS.format(socket=self._runtime / "bus", services=services))
        # The settings service of Xfce is the only one that the bus may start by itself here.
        if os.path.exists(XFCE_SETTINGS):
            os.symlink(XFCE_SETTINGS, services / os.path.basename(XFCE_SETTINGS))
        self.start("bus", ["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile"])
        self.bus = wait("the session bus", self._connect_to_bus)

    def _connect_to_bus(self):
        try:
            return dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        except dbus.exceptions.DBusException:
            # Its socket is there a moment before it listens.
            return None

    def _start_window_manager(self):
        self.start(self.manager, WINDOW_MANAGERS[self.manager])
        name = self._display.intern_atom("_NET_SUPPORTING_WM_CHECK")
        wait("the window manager", lambda: self._root.get_full_property(name, Xlib.X.AnyPropertyType))

    def _start_compositor(self):
        self.start("picom", ["picom", "--backend", "xrender", "--config", "/dev/null"])
        selection = self._display.intern_atom("_NET_WM_CM_S0")
        wait("the compositor", lambda: self._display.get_selection_owner(selection) != Xlib.X.NONE)

    def _start_portal(self):
        self.start("portal", ["/usr/bin/python3", __file__, "portal", "dark" if self.dark else "light"])
        wait("the settings portal", lambda: self.owner("org.freedesktop.portal.Desktop"))

    def _start_accessibility(self):
        self.start("accessibility", [ACCESSIBILITY_BUS, "--launch-immediately"])
        wait("the accessibility bus", lambda: self.owner("org.a11y.Bus"))
        address = self.bus.call_blocking("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", "", ())
        self.accessibility = Tree(address)

    def start_tray(self):
        """Starts the tray along its edge of the screen; also again after `stop_tray`."""
        if self.tray == "notifier":
            settings = self.home / ".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"
            settings.parent.mkdir(parents=True, exist_ok=True)
            if not settings.exists():
                corner, mode = XFCE_EDGES[self.edge]
                output = XFCE_OUTPUT.format(name=self._tray_output) if self._tray_output else ""
                settings.write_text(XFCE_PANEL.format(height=TRAY_HEIGHT * self.scale // self._tray_scale,
                                                      corner=corner, mode=mode,
                                                      output=output,
                                                      grey=self._bar_shade / 0xff,
                                                      dark="true" if self.dark else "false"))
            self.start("tray", ["xfce4-panel", "--disable-wm-check"], GDK_SCALE=str(self._tray_scale))
            wait("the panel's status notifier host", lambda: self.owner("org.kde.StatusNotifierWatcher"))
            wait("the bar's colour", self._has_bar)
        elif self.tray == "xembed":
            bare = self.picture(self.tray_area)
            self._start_trayer()
            # It says that it is there before it has painted itself, and now and then it never does.
            try:
                wait("the tray's colour", lambda: changed_area(bare, self.picture(self.tray_area)), 5)
            except Failure:
                self.stop("tray", signal.SIGKILL)
                self._start_trayer()
                wait("the tray's colour", lambda: changed_area(bare, self.picture(self.tray_area)))

    def _has_bar(self):
        """Whether a bar that lies along the whole edge shows its colour, at the end that stays empty."""
        colour = self.picture(self.tray_area).getpixel((4, 4))
        return all(abs(part - self._bar_shade) < 8 for part in colour)

    @property
    def _bar_shade(self):
        return 0x29 if self.dark else 0xed

    def _is_tray_owned(self):
        selection = self._display.intern_atom("_NET_SYSTEM_TRAY_S0")
        return self._display.get_selection_owner(selection) != Xlib.X.NONE

    def _start_trayer(self):
        wait("no tray", lambda: not self._is_tray_owned())
        self.start("tray", ["trayer", "--edge", self.edge, "--align", "right", "--widthtype", "pixel", "--width",
                            str(200 * self.scale), "--heighttype", "pixel", "--height",
                            str(TRAY_HEIGHT * self.scale), "--tint", "0xeeeeee", "--transparent", "true",
                            "--alpha", "0", "--SetDockType", "true", "--SetPartialStrut", "true",
                            "--monitor", str(self._tray_monitor)])
        wait("the tray", self._is_tray_owned)

    def stop_tray(self):
        """Ends the tray as a crash would: without a farewell."""
        self.stop("tray", signal.SIGKILL)
        if self.tray == "notifier":
            wait("the watcher to go", lambda: not self.owner("org.kde.StatusNotifierWatcher"))
            wait("the bar to go", lambda: not self._has_bar())
        else:
            wait("the tray to go", lambda: not self._is_tray_owned())

    def start_notifications(self):
        """Starts the notification server; also again after `stop_notifications`. Gives its process."""
        places = glob.glob(NOTIFICATION_SERVERS[self.notifications])
        if not places:
            raise Failure(f"{self.notifications} is not installed")
        # Those made with a tool kit tell assistive technology what they show.
        bridge = {"NO_AT_BRIDGE": "0"} if self.accessible else {}
        process = self.start("notifications", places[:1], **bridge)
        wait("the notification server", lambda: self.owner("org.freedesktop.Notifications"))
        return process

    def stop_notifications(self):
        """Ends the notification server as a crash would."""
        self.stop("notifications", signal.SIGKILL)
        wait("the notification server to go", lambda: not self.owner("org.freedesktop.Notifications"))

    @property
    def tray_area(self):
        """Where the tray lies."""
        width, height = (side * self.scale for side in self.size)
        depth = TRAY_HEIGHT * self.scale
        return {"top": Area(0, 0, width, depth), "bottom": Area(0, height - depth, width, depth),
                "left": Area(0, 0, depth, height), "right": Area(width - depth, 0, depth, height)}[self.edge]

    # Looking

    def owner(self, name):
        """Whether the name has an owner on the session bus."""
        return self.bus.name_has_owner(name)

    def picture(self, area=None):
        """What the screen, or an area of it, shows now."""
        box = area.box if area else None
        return ImageGrab.grab(bbox=box, xdisplay=self.environment["DISPLAY"]).convert("RGB")

    def settled_picture(self, area=None, still=0.3):
        """What an area shows once it has not changed for a while."""
        deadline = time.monotonic() + 20
        last = self.picture(area)
        since = time.monotonic()
        while time.monotonic() - since < still:
            if time.monotonic() > deadline:
                raise Failure("the screen does not come to rest")
            time.sleep(0.03)
            now = self.picture(area)
            if changed_area(last, now):
                last, since = now, time.monotonic()
        return last

    def connect(self):
        """Another connection to the display, as another program has it."""
        return Xlib.display.Display(self.environment["DISPLAY"])

    def window(self, title, narrowest=100):
        """The area of the visible window with that title, or None. Windows in a tray are narrower than panels."""
        for window in self._windows(self._root):
            try:
                attributes = window.get_attributes()
                if attributes.map_state != Xlib.X.IsViewable or self._title(window) != title:
                    continue
                geometry = window.get_geometry()
                if geometry.width < narrowest * self.scale:
                    continue
                place = window.translate_coords(self._root, 0, 0)
            except (Xlib.error.BadWindow, Xlib.error.BadDrawable):
                continue
            return Area(-place.x, -place.y, geometry.width, geometry.height)
        return None

    def is_managed(self, title):
        """Whether a window with that title is one of those that the window manager tells of."""
        told = self._root.get_full_property(self._display.intern_atom("_NET_CLIENT_LIST"), Xlib.X.AnyPropertyType)
        for number in told.value if told else []:
            try:
                if self._title(self._display.create_resource_object("window", number)) == title:
                    return True
            except Xlib.error.BadWindow:
                continue
        return False

    def has_focus(self, title):
        """Whether the keys go to the window with that title."""
        try:
            window = self._display.get_input_focus().focus
            return not isinstance(window, int) and self._title(window) == title
        except (Xlib.error.BadWindow, Xlib.error.BadDrawable):
            return False

    def shown(self, process):
        """What a process tells assistive technology that it shows; None as long as it tells nothing."""
        return self.accessibility.root(process.pid)

    def texts(self, process):
        """The accessible names of everything that a process shows now, from the outside in."""
        root = self.shown(process)
        return root.names() if root else []

    def _windows(self, window):
        try:
            children = window.query_tree().children
        except Xlib.error.BadWindow:
            return
        for child in children:
            yield child
            yield from self._windows(child)

    def _title(self, window):
        for name in ("_NET_WM_NAME", "WM_NAME"):
            value = window.get_full_property(self._display.intern_atom(name), Xlib.X.AnyPropertyType)
            if value:
                return value.value.decode() if isinstance(value.value, bytes) else value.value
        return None

    # Acting as a user does

    def click(self, x, y, button=1, held=0.03):
        """Presses a button of the mouse for `held` seconds. The buttons 4 to 7 are steps of the wheel."""
        self.move(x, y)
        for kind in (Xlib.X.ButtonPress, Xlib.X.ButtonRelease):
            Xlib.ext.xtest.fake_input(self._display, kind, button)
            self._display.sync()
            time.sleep(held)

    def move(self, x, y):
        Xlib.ext.xtest.fake_input(self._display, Xlib.X.MotionNotify, x=int(x), y=int(y))
        self._display.sync()
        time.sleep(0.03)

    def key(self, combination):
        """Presses a key by its X name, with modifiers in front: "Escape", "ctrl+q"."""
        *modifiers, last = combination.split("+")
        names = [{"ctrl": "Control_L", "shift": "Shift_L", "alt": "Alt_L"}[name] for name in modifiers] + [last]
        codes = [self._display.keysym_to_keycode(Xlib.XK.string_to_keysym(name)) for name in names]
        for code in codes:
            Xlib.ext.xtest.fake_input(self._display, Xlib.X.KeyPress, code)
        for code in reversed(codes):
            Xlib.ext.xtest.fake_input(self._display, Xlib.X.KeyRelease, code)
        self._display.sync()


def _portal(scheme):
    """The part of the desktop portal that says whether the desktop is dark."""
    import dbus.mainloop.glib
    import dbus.service
    from gi.repository import GLib

    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    value = dbus.UInt32(1 if scheme == "dark" else 2, variant_level=1)

    class Portal(dbus.service.Object):
        interface = "org.freedesktop.portal.Settings"

        @dbus.service.method(interface, in_signature="ss", out_signature="v")
        def Read(self, group, key):
            if (group, key) != ("org.freedesktop.appearance", "color-scheme"):
                raise dbus.exceptions.DBusException("Requested setting not found",
                                                    name="org.freedesktop.portal.Error.NotFound")
            return dbus.UInt32(value, variant_level=2)

        @dbus.service.method(interface, in_signature="as", out_signature="a{sa{sv}}")
        def ReadAll(self, groups):
            return {"org.freedesktop.appearance": {"color-scheme": value}}

        @dbus.service.signal(interface, signature="ssv")
        def SettingChanged(self, group, key, value):
            pass

        @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
        def Get(self, interface, name):
            return dbus.UInt32(1)

    portal = Portal(bus, "/org/freedesktop/portal/desktop")
    name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
    GLib.MainLoop().run()
    del portal, name


if __name__ == "__main__" and sys.argv[1:2] == ["portal"]:
    _portal(sys.argv[2])
