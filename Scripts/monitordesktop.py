"""A desktop with two monitors of different scale: an Xorg server that draws into memory, and its outputs side by side.

The left one has ordinary pixels and is the primary one; the right one has sharp pixels, four to one. Needs the
packages of the group `virtual`.
"""

import ctypes
import dataclasses
import signal
import subprocess

from virtualdesktop import Area, Desktop, Failure, PR_SET_PDEATHSIG, TRAY_HEIGHT

# Room in memory for both monitors; the outputs are called DUMMY0, DUMMY1 and so on.
SERVER = """Section "Device"
    Identifier "memory"
    Driver "dummy"
    VideoRam 65536
EndSection
Section "Monitor"
    Identifier "any"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "both"
    Device "memory"
    Monitor "any"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "1280x800"
        Virtual 3840 1600
    EndSubSection
EndSection
"""
SHARP_MODE = ["2560x1600-sharp", "268.50", "2560", "2608", "2640", "2720", "1600", "1603", "1609", "1646"]


@dataclasses.dataclass(frozen=True)
class Monitor:
    output: str
    area: Area
    scale: int


ORDINARY = Monitor("DUMMY0", Area(0, 0, 1280, 800), 1)
SHARP = Monitor("DUMMY1", Area(1280, 0, 2560, 1600), 2)


class MonitorDesktop(Desktop):
    """As `Desktop`, with its tray on that `monitor`."""

    def __init__(self, monitor, **more):
        super().__init__(scale=monitor.scale, **more)
        self.monitor = monitor
        self._tray_output = monitor.output
        self._tray_monitor = (ORDINARY, SHARP).index(monitor)

    @property
    def _tray_scale(self):
        # One for all monitors.
        return 1

    def _make_environment(self):
        environment = super()._make_environment()
        environment.pop("QT_SCALE_FACTOR", None)
        environment["QT_SCREEN_SCALE_FACTORS"] = ";".join(f"{monitor.output}={monitor.scale}"
                                                          for monitor in (ORDINARY, SHARP))
        return environment

    def _start_display(self):
        super()._start_display()
        for arguments in (["--newmode", *SHARP_MODE], ["--addmode", SHARP.output, SHARP_MODE[0]],
                          ["--output", ORDINARY.output, "--primary", "--mode", "1280x800", "--pos", "0x0",
                           "--output", SHARP.output, "--mode", SHARP_MODE[0], "--pos", "1280x0"],
                          # Asked once more, the server takes the second output for connected.
                          ["--query"]):
            answer = subprocess.run(["xrandr", *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                                    capture_output=True, text=True, check=False)
            if answer.returncode != 0:
                raise Failure(f"xrandr {' '.join(arguments)}: {answer.stderr.strip()}")
        # The screen has just grown.
        self._paint_background()
        self._display.sync()

    def _popen_display(self, write, mode):
        def prepare():
            ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)

        configuration = self._runtime / "xorg.conf"
        configuration.write_text(SERVER)
        with open(self.log("xvfb"), "ab") as log:
            return subprocess.Popen(["Xorg", "-config", configuration, "-logfile", self.log("xorg"), "-displayfd",
                                     str(write), "-noreset", "-nolisten", "tcp", "-novtswitch", "-sharevts", "-dpi",
                                     "96"],
                                    env=self.environment, stdin=subprocess.DEVNULL, stdout=log,
                                    stderr=subprocess.STDOUT, pass_fds=[write], start_new_session=True,
                                    preexec_fn=prepare)

    @property
    def tray_area(self):
        area, depth = self.monitor.area, TRAY_HEIGHT * self.monitor.scale
        y = area.y if self.edge == "top" else area.y + area.height - depth
        return Area(area.x, y, area.width, depth)
