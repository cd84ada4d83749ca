"""Uses Selvane on a virtual desktop as a person would: looks for the dial, clicks it, presses keys in the panel."""

import datetime
import json
import pathlib
import signal
import time

import dbus

from virtualdesktop import Area, Failure, changed_area, wait

TITLE = "Selvane Timer"
BUS_NAME = "com.lorbin.selvane"
OBJECT_PATH = "/com/lorbin/selvane"
# How wide the panel's card is. Its window is wider where the desktop can show the shadow around it.
CARD_WIDTH = 348


class Selvane:
    """The program on a desktop. `dial` is where its dial lies in the tray, None until it was found.

    `is_silent`: whether its user has turned off that a phase begins with music, which never lets the panel come to
    rest. To be told before a start.
    """

    def __init__(self, desktop, binary):
        self.desktop = desktop
        self.binary = pathlib.Path(binary).resolve()
        self.dial = None
        self.is_silent = True
        self._bare_trays = {}
        self._starts = 0

    @property
    def data_folder(self):
        return self.desktop.data / "Selvane"

    @property
    def _settings_file(self):
        return self.desktop.home / ".config/com.lorbin.selvane.json"

    @property
    def sessions_file(self):
        return self.data_folder / "sessions.json"

    def sessions(self):
        """The recorded history; empty as long as there is no file."""
        return json.loads(self.sessions_file.read_text()) if self.sessions_file.exists() else []

    # What the user did before; to be told before a start

    def have_sessions(self, sessions):
        """Writes a history of focus sessions, each a moment and a number of minutes."""
        records = []
        for number, (start, minutes) in enumerate(sorted(sessions)):
            end = start + datetime.timedelta(minutes=minutes)
            records.append({"id": f"00000000-0000-0000-0000-{number:012}", "phase": "focus", "completed": True,
                            "start": self._moment(start), "end": self._moment(end), "plannedSeconds": minutes * 60,
                            "actualSeconds": minutes * 60})
        self._write("sessions.json", records)

    def have_tasks(self, tasks):
        """Writes a list of tasks, each a title, whether it is done, the sessions it takes and those it got. Gives
        their ids."""
        now = datetime.datetime.now(datetime.timezone.utc)
        items = [{"id": f"00000000-0000-0000-0001-{number:012}", "title": title, "isDone": is_done,
                  "createdAt": self._moment(now), "estimatedPomodoros": estimate, "completedPomodoros": credited}
                 | ({"completedAt": self._moment(now)} if is_done else {})
                 for number, (title, is_done, estimate, credited) in enumerate(tasks)]
        self._write("tasks.json", {"items": items})
        return [item["id"] for item in items]

    def have_settings(self, **values):
        """Writes settings, whole numbers, truths and texts."""
        names = {bool: "bool", int: "int", str: "string"}
        if self.is_silent:
            values = {"autoPlayMusic": False} | values
        self._settings_file.write_text(json.dumps({key: {"type": names[type(value)], "value": value}
                                    for key, value in values.items()}))

    @staticmethod
    def _moment(moment):
        return f"{moment:%Y-%m-%dT%H:%M:%SZ}"

    def _write(self, name, value):
        self.data_folder.mkdir(mode=0o700, parents=True, exist_ok=True)
        (self.data_folder / name).write_text(json.dumps(value))

    # The process

    def start(self):
        """Starts the program, and waits for the dial where there is a tray."""
        if not self.binary.exists():
            raise Failure(f"there is no program {self.binary}; build it first")
        if self.desktop.tray and self.desktop.tray not in self._bare_trays:
            self.remember_bare_tray()
        if self.desktop.tray:
            self._launch()
            self.find_dial()
        else:
            self.start_without_dial()

    def start_without_dial(self):
        """Starts the program where nothing can show its dial yet."""
        self._launch()
        wait("the program to be reachable", lambda: self._check_alive() and self.desktop.owner(BUS_NAME))

    def _launch(self):
        if self.is_silent and not self._settings_file.exists():
            self.have_settings()
        self.process = self.desktop.start("selvane", [self.binary])

    def start_again(self):
        """Starts the program a second time while it runs; gives the exit status of that second process."""
        self._starts += 1
        second = self.desktop.start(f"selvane-again-{self._starts}", [self.binary])
        wait("the second process to end", lambda: second.poll() is not None)
        return second.returncode

    def wait_for_launch(self):
        """Waits until the program is launched: from then on it ends in order when it is asked to."""
        mask = 1 << (signal.SIGTERM - 1)

        def catches():
            self._check_alive()
            status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
            caught = next(line for line in status.splitlines() if line.startswith("SigCgt:"))
            return int(caught.split()[1], 16) & mask

        wait("the launch to be over", catches)

    def terminate(self, number=signal.SIGTERM):
        """Ends the program by a signal; gives its exit status."""
        self.process.send_signal(number)
        return self.wait_for_end()

    def wait_for_end(self):
        """Waits until the program has ended by itself; gives its exit status."""
        wait("the program to end", lambda: self.process.poll() is not None)
        self.dial = None
        return self.process.returncode

    def _wait_for_answer(self):
        """Waits until the program's main loop has answered a question, which does nothing else."""
        self._check_alive()
        try:
            self.desktop.bus.call_blocking(BUS_NAME, OBJECT_PATH, "org.freedesktop.DBus.Introspectable", "Introspect",
                                           "", ())
        except dbus.DBusException as problem:
            raise Failure(f"the program doesn't answer: {problem}") from None

    def _check_alive(self):
        if self.process.poll() is not None:
            raise Failure(f"the program ended with {self.process.returncode}; see {self.desktop.log('selvane')}")
        return True

    # The dial

    def remember_bare_tray(self):
        """Notes how the desktop's tray of now looks without a dial, by which the dial is found in it."""
        self._bare_trays[self.desktop.tray] = self.desktop.settled_picture(self.desktop.tray_area)

    @property
    def _bare_tray(self):
        return self._bare_trays[self.desktop.tray]

    def find_dial(self):
        """Waits until the tray shows more than it did before the program ran, and remembers where."""
        area = self.desktop.tray_area
        wait("the dial in the tray",
             lambda: self._check_alive() and changed_area(self._bare_tray, self.desktop.picture(area)))
        dial = changed_area(self._bare_tray, self.desktop.settled_picture(area))
        if not dial:
            raise Failure("the dial came and went")
        self.dial = Area(area.x + dial.x, area.y + dial.y, dial.width, dial.height)
        return self.dial

    def wait_for_no_dial(self):
        wait("the dial to leave the tray",
             lambda: not changed_area(self._bare_tray, self.desktop.picture(self.desktop.tray_area)))

    def shown_in_tray(self):
        """What the tray shows now more than before the program ran."""
        area = self.desktop.tray_area
        return changed_area(self._bare_tray, self.desktop.picture(area)) or Area(0, 0, 0, 0)

    def dial_picture(self):
        return self.desktop.picture(self.dial)

    def click_dial(self, held=0.03):
        # Nobody's two clicks follow one another faster, and the program may take those for one: it counts from when
        # it read the last, which it has done, if it was told of it, once it has answered twice.
        for _ in range(2):
            self._wait_for_answer()
        time.sleep(0.4)
        self.desktop.click(*self.dial.middle, held=held)

    # The panel

    @property
    def is_managed(self):
        """Whether the open panel is a window of the window manager's."""
        return self.desktop.is_managed(TITLE)

    @property
    def panel(self):
        """Where the panel is, None while it is closed."""
        return self.desktop.window(TITLE)

    @property
    def card(self):
        """Where its card is, without the shadow."""
        panel = self.panel
        margin = (panel.width - CARD_WIDTH * self.desktop.scale) // 2
        return Area(panel.x + margin, panel.y + margin, panel.width - 2 * margin, panel.height - 2 * margin)

    def open_panel(self):
        """Opens the panel by the dial, or by a second start where there is no tray; gives its area."""
        if self.desktop.tray:
            self.click_dial()
        elif self.start_again() != 0:
            raise Failure("the second process did not end with 0")
        return self.wait_for_panel()

    def wait_for_panel(self):
        wait("the panel", lambda: self._check_alive() and self.panel)
        wait("the panel to have the keyboard", lambda: self.desktop.has_focus(TITLE))
        self.desktop.settled_picture()
        return self.panel

    def wait_for_no_panel(self):
        wait("the panel to close", lambda: self._check_alive() and not self.panel)

    def stays_closed(self, seconds=0.5):
        """Whether the panel is still closed after a moment in which a wrong reopening would have happened."""
        time.sleep(seconds)
        return not self.panel

    def today(self):
        """What the panel, which must be open, tells of today's minutes. Shows the tasks afterwards."""
        self.desktop.key("ctrl+2")
        line = wait("a line about today",
                    lambda: [text for text in self.desktop.texts(self.process) if text.startswith("Today: ")])
        self.desktop.key("ctrl+1")
        wait("the tasks", lambda: "Add a task…" in self.desktop.texts(self.process))
        return line[0]

    # What it shows, as assistive technology is told. Needs a desktop that is accessible.

    def control(self, name, role=None):
        """What the program shows under that accessible name, once it does."""
        return wait(f"a control named {name!r}", lambda: self._check_alive() and self.find_control(name, role))

    def find_control(self, name, role=None):
        """The same, or None if there is nothing of that name now."""
        shown = self.desktop.shown(self.process)
        return shown and shown.find(name, role)

    def click_control(self, name, role=None, button=1):
        """Clicks it with the mouse, in its middle."""
        x, y, width, height = self.control(name, role).area
        self.desktop.click(x + width // 2, y + height // 2, button)

    def press_primary(self):
        """Presses the primary button, which has the keyboard in a panel just opened."""
        self.desktop.key("space")

    def press_reset(self):
        """Presses Reset, which lies before the primary button."""
        self.desktop.key("shift+Tab")
        self.desktop.key("space")

    def quit(self):
        """Quits by the panel's shortcut; the panel must be open. Gives the exit status."""
        self.desktop.key("ctrl+q")
        return self.wait_for_end()
