#!/usr/bin/python3
"""What someone who doesn't see the panel, or has no mouse, can learn from it and do with it: over the accessibility
bus, as a screen reader does, and by the keyboard alone."""

import json
import re
import sys
import time

import harness
from accessibletree import Gone
from harness import check, check_equal
from virtualdesktop import Failure, wait

# What only holds others, or is drawn around them.
CONTAINERS = {"application", "frame", "window", "panel", "filler", "page tab list", "list", "scroll pane", "popup menu",
              "dialog", "layered pane"}
# What can be reached by the arrow keys from what holds it.
INSIDE_OTHERS = {"page tab", "menu item", "check menu item", "list item", "check box"}
# What is said of a control that can't be used.
UNAVAILABLE = "Not available now"
TASKS = ["Write the report", "Reply about the venue", "Book the train"]


class Reader:
    """Someone with a screen reader before the panel."""

    def __init__(self, desktop, selvane):
        self.desktop = desktop
        self.selvane = selvane

    def root(self):
        return wait("the program on the accessibility bus", lambda: self.desktop.shown(self.selvane.process))

    def find(self, name, role=None):
        try:
            return self.root().find(name, role)
        except Gone:
            return None

    def names(self):
        try:
            return self.root().names()
        except Gone:
            return []

    def wait_for(self, name, role=None):
        return self._wait(f"something is named {name!r}", lambda: self.find(name, role))

    def wait_for_none(self, name, role=None):
        self._wait(f"nothing is named {name!r}", lambda: not self.find(name, role))

    def _wait(self, what, condition):
        try:
            return wait(what, condition, 10)
        except Failure:
            raise Failure(f"it isn't so that {what}:\n" + "\n".join(self.root().outline())) from None

    def wait_for_keyboard(self, name):
        """Waits until what is named so has the keyboard, and gives what has it."""

        def has_it():
            node = self.focused()
            return node if node and node.name == name else None

        return self._wait(f"{name!r} has the keyboard", has_it)

    def is_usable(self, name):
        return self.wait_for(name).description != UNAVAILABLE

    def press(self, name, role=None):
        self.wait_for(name, role).press()

    def choose(self, menu, *entries):
        """Opens the menu of that name and chooses, through its submenus."""
        self.press(menu)
        for entry in entries:
            self.press(entry, "menu item")

    def focused(self):
        try:
            return self.root().focused()
        except Gone:
            return None

    def key(self, combination):
        self.desktop.key(combination)

    def move(self, combination):
        """Presses a key that gives the keyboard to something else; gives what has it then."""
        before = self.focused()

        def moved():
            # While it moves, a look may find nothing but what both lie in.
            now = self.focused()
            return now if now and now != before and now == self.focused() else None

        self.key(combination)
        return self._wait(f"the keyboard goes from {before} elsewhere by {combination}", moved)


def everything_has_words(reader, where):
    """Whatever can be used says what it is and what it is called."""
    nameless = []
    for node in reader.root().all():
        try:
            role, states = node.role, node.states
        except Gone:
            continue
        if role in CONTAINERS and "focusable" not in states:
            continue
        if role in ("unknown", "invalid", "") or not node.name.strip():
            nameless.append(f"{role} {node.name!r} in {node.area}")
    check(not nameless, f"{where}: everything has a role and a name" + (f", but {nameless}" if nameless else ""))


def timer(reader):
    """The timer's commands, by name."""
    check(reader.wait_for("25:00 remaining"), "the time says what it is")
    check(not reader.is_usable("Reset"), "Reset is told as not available while the timer is idle")
    reader.press("Reset")
    reader.press("Start")
    reader.wait_for("Pause")
    wait("the time to go on", lambda: any(re.fullmatch(r"24:\d\d remaining", name) for name in reader.names()))
    check(True, "pressing Start starts the phase, and its name becomes Pause")
    check(reader.is_usable("Reset"), "Reset is available then")
    reader.press("Pause")
    reader.wait_for("Resume")
    reader.press("Reset")
    reader.wait_for("Start")
    check(reader.wait_for("25:00 remaining"), "pressing Reset makes the timer idle")
    reader.press("Skip")
    reader.wait_for("Phase: Short Break")
    check(reader.wait_for("5:00 remaining"), "pressing Skip goes on to the break")
    reader.choose("Phase: Short Break", "Focus")
    reader.wait_for("Phase: Focus")
    check(True, "the phase is chosen from its menu")


def tasks(reader):
    """The list of tasks, by name; what it does is on disk."""

    def on_disk():
        file = reader.selvane.data_folder / "tasks.json"
        return json.loads(file.read_text())["items"] if file.exists() else []

    def titles():
        return [task["title"] for task in on_disk()]

    def add(title):
        field = reader.wait_for("Add a task…")
        field.take_focus()
        field.set_text(title)
        reader.key("Return")
        wait(f"{title!r} on disk", lambda: title in titles(), 5)
        reader.wait_for(title, "list item")

    for title in TASKS:
        add(title)
    check_equal(titles(), TASKS, "tasks added through their field")

    reader.choose("Choose a task…", TASKS[1])
    row = reader.wait_for(TASKS[1], "list item")
    wait("the row to tell that it is current", lambda: "current" in row.description)
    check(reader.find(TASKS[1], "push button"), "the task is chosen from its menu, and the menu is named after it")

    row = reader.wait_for(TASKS[0], "list item")
    circle = row.find("Mark as done")
    check("checked" not in circle.states, "the circle of an open task is not checked")
    circle.press()
    wait("the task to be done on disk", lambda: any(task["isDone"] for task in on_disk()), 5)
    circle = reader.wait_for("Mark as not done")
    check("checked" in circle.states, "that of a done task is")
    check("done" in reader.wait_for(TASKS[0], "list item").description, "and its row says so")
    circle.press()
    wait("the task to be open on disk", lambda: not any(task["isDone"] for task in on_disk()), 5)

    # A row's menu opens by a press on it.
    reader.choose(TASKS[2], "Estimate", "3 sessions")
    wait("the estimate on disk", lambda: [task["estimatedPomodoros"] for task in on_disk()
                                          if task["title"] == TASKS[2]] == [3], 5)
    check("0 of 3 sessions" in reader.wait_for(TASKS[2], "list item").description, "the row tells the estimate")
    reader.choose(TASKS[2], "Rename")
    field = reader.wait_for_keyboard("Task")
    check(True, "the field of a new title has the keyboard")
    field.set_text("Book the night train")
    reader.key("Return")
    wait("the new title on disk", lambda: "Book the night train" in titles(), 5)
    reader.choose("Book the night train", "Delete")
    wait("the task to be gone", lambda: len(titles()) == 2, 5)
    reader.wait_for_none("Book the night train", "list item")
    check(True, "a task is estimated, renamed and deleted from its menu")

    check(not reader.find("Clear done"), "without done tasks there are none to clear")
    reader.wait_for(TASKS[1], "list item").find("Mark as done").press()
    reader.press("Clear done")
    wait("the done task to be gone", lambda: titles() == TASKS[:1], 5)
    check(reader.wait_for("Choose a task…"), "done tasks are cleared, and with the current one its name in the menu")
    add(TASKS[1])


def tabs(reader):
    reader.press("Progress", "page tab")
    check(reader.wait_for("Today: 0m of your 50m goal"), "the goal is told in words")
    check("selected" in reader.wait_for("Progress", "page tab").states, "the chosen tab is told as selected")
    check("selected" not in reader.wait_for("Tasks", "page tab").states, "the other is not")
    wait("the tasks to be hidden", lambda: not reader.find("Add a task…"), 5)
    everything_has_words(reader, "the Progress tab")
    reader.press("Tasks", "page tab")
    reader.wait_for("Add a task…")
    check(True, "a press chooses a tab")


def music(reader):
    reader.choose("Rain", "Pink noise")
    check(reader.wait_for("Pink noise"), "the sound is chosen from its menu")
    volume = reader.wait_for("Volume", "slider")
    volume.set_value(0.25)
    wait("the volume to change", lambda: abs(reader.wait_for("Volume").value - 0.25) < 0.01, 5)
    check(True, "the volume is set")
    reader.choose("Pink noise", "No music")
    reader.wait_for_none("Volume")
    check(not reader.is_usable("Turn sound on"), "without music there is nothing to turn on")
    reader.choose("No music", "Rain")
    check(reader.is_usable("Turn sound on"), "with it there is")


def minutes(reader):
    reader.press("25:00 remaining")
    reader.wait_for_keyboard("Minutes").set_text("40")
    reader.key("Return")
    check(reader.wait_for("40:00 remaining"), "minutes are typed")
    reader.press("40:00 remaining")
    reader.wait_for_keyboard("Minutes").set_text("7")
    reader.key("Escape")
    check(reader.wait_for("40:00 remaining"), "Escape leaves them")
    check(not reader.selvane.stays_closed(0.2), "and the panel open")


def icon(reader):
    reader.press("Focus icon")
    reader.wait_for("No icon")
    everything_has_words(reader, "the icons")
    chosen = [node for node in reader.root().all() if node.name == "eye"]
    check(any("selected" in node.states for node in chosen), "the icon in force is told as selected")
    reader.press("leaf")
    reader.wait_for_none("No icon")
    settings = reader.desktop.home / ".config/com.lorbin.selvane.json"
    wait("the icon on disk", lambda: json.loads(settings.read_text()).get("focusSymbol", {}).get("value") == "leaf", 5)
    check(True, "an icon is chosen")


def keyboard_reaches_everything(reader):
    """From the main button once around by Tab: whatever can be pressed gets the keyboard, or lies in what does."""
    reader.press("Start")
    reader.wait_for("Pause")
    seen = []
    for _ in range(40):
        node = reader.move("Tab")
        if node in seen:
            break
        seen.append(node)
    else:
        raise Failure(f"the keyboard doesn't come round: {seen}")
    names = [node.name for node in seen]
    check(True, f"Tab goes to {names}")
    missing = [node for node in reader.root().all()
               if "Press" in node.actions and node.description != UNAVAILABLE
               and node.role not in INSIDE_OTHERS and node not in seen]
    check(not missing, f"nothing but the mouse reaches {missing}" if missing else "nothing needs the mouse")
    reader.press("Reset")
    reader.wait_for("Start")


def tab_to(reader, name=None, role=None):
    for _ in range(40):
        node = reader.focused()
        if node and name in (None, node.name) and role in (None, node.role):
            return
        reader.move("Tab")
    raise Failure(f"Tab doesn't come to {name or role!r}")


def keyboard_uses_everything(reader):
    tab_to(reader, "Phase: Focus")
    reader.key("space")
    reader.wait_for("Long Break", "menu item")
    for name in ("Focus", "Short Break", "Long Break"):
        check_equal(reader.move("Down").name, name, "the row that has the keyboard")
    reader.key("Return")
    check(reader.wait_for("Phase: Long Break"), "the keyboard chooses a phase")
    reader.choose("Phase: Long Break", "Focus")
    reader.wait_for("Phase: Focus")

    tab_to(reader, "Phase: Focus")
    reader.key("space")
    reader.wait_for("Long Break", "menu item")
    reader.key("Escape")
    reader.wait_for_none("Long Break", "menu item")
    check(not reader.selvane.stays_closed(0.2), "Escape closes a menu, and not the panel with it")
    check_equal(reader.wait_for_keyboard("Phase: Focus").name, "Phase: Focus", "what has the keyboard then")

    tab_to(reader, role="page tab list")
    reader.key("Right")
    reader.wait_for("Today: 0m of your 50m goal")
    reader.key("Left")
    reader.wait_for("Add a task…")
    check(True, "the arrows choose a tab")

    tab_to(reader, role="list item")
    first = reader.focused().name
    row = reader.move("Down")
    second = row.name
    check(first != second and row.role == "list item", f"the arrows go from {first!r} to {second!r}")
    reader.key("space")
    check(reader.wait_for("Mark as not done"), "Space ticks a task off")
    reader.key("space")
    reader.wait_for_none("Mark as not done")
    reader.key("Menu")
    reader.wait_for("Rename", "menu item")
    reader.key("Escape")
    reader.wait_for_none("Rename", "menu item")
    reader.key("F2")
    reader.wait_for("Task")
    reader.key("Escape")
    reader.wait_for_none("Task")
    check_equal(reader.wait_for_keyboard(second).name, second, "what has the keyboard after Escape")


def the_time_is_told_quietly(reader):
    """While a phase runs, a screen reader hears of the time and of little else; it says a change of the name only of
    what has the keyboard."""
    seconds = 8
    reader.press("Start")
    reader.wait_for("Pause")
    tree = reader.desktop.accessibility
    began = time.monotonic()
    # The press itself is told of too; whatever it led to has come once a later question is answered.
    tree.pass_time(1)
    reader.wait_for("Pause")
    tree.pass_time(0)
    tree.events.clear()
    tree.pass_time(seconds)
    passed = time.monotonic() - began
    names = [node for kind, detail, node in tree.events if (kind, detail) == ("PropertyChange", "accessible-name")]
    check(len(names) <= passed + 1, f"{len(names)} changes of a name in {passed:.1f} s")
    times = [node for node in names if node.name.endswith(" remaining")]
    check(len(times) > 1, f"{len(times)} of them are the time's")
    others = [(kind, detail) for kind, detail, _ in tree.events if kind != "PropertyChange"]
    check(len(others) <= 2, f"{len(others)} other events in {seconds} s: {sorted(set(others))}")
    tree.events.clear()
    reader.press("Pause")
    reader.wait_for("Resume")

    def told():
        tree.pass_time(0.1)
        return {node.name for kind, detail, node in tree.events
                if (kind, detail) == ("PropertyChange", "accessible-name")}

    wait("the button and the timer's state to be told",
         lambda: "Resume" in (names := told()) and any("paused" in name for name in names))
    check(True, f"after a press the button and the timer's state are told: {sorted(told())}")
    reader.press("Reset")
    reader.wait_for("Start")


def test(desktop, selvane):
    selvane.start()
    selvane.open_panel()
    reader = Reader(desktop, selvane)
    desktop.accessibility.listen("object:property-change", "object:state-changed", "object:text-changed",
                                 "object:children-changed", "object:visible-data-changed")
    check_equal(reader.wait_for_keyboard("Start").name, "Start", "what has the keyboard in a panel just opened")
    everything_has_words(reader, "the panel")
    for step in (timer, tasks, keyboard_reaches_everything, keyboard_uses_everything, tabs, music, icon,
                 the_time_is_told_quietly, minutes):
        step(reader)
    everything_has_words(reader, "the panel in use")
    check_equal(selvane.quit(), 0, "exit status after quitting by the keyboard")


sys.exit(harness.run(test))
