"""What a program tells the accessibility bus that it shows, read and used as a screen reader does.

    tree = Tree(address)
    button = tree.root(pid).find("Start", role="push button")
    button.press()
"""

import time

import dbus
import dbus.bus
import dbus.mainloop.glib
from gi.repository import GLib

ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
EDITABLE_TEXT = "org.a11y.atspi.EditableText"
TEXT = "org.a11y.atspi.Text"
VALUE = "org.a11y.atspi.Value"
OBJECT_EVENTS = "org.a11y.atspi.Event.Object"
REGISTRY = "org.a11y.atspi.Registry"
REGISTRY_PATH = "/org/a11y/atspi/registry"
ROOT_PATH = "/org/a11y/atspi/accessible/root"
SCREEN = dbus.UInt32(0)

# The bits of a state, by AtspiStateType.
STATES = {1: "active", 4: "checked", 7: "editable", 8: "enabled", 10: "expanded", 11: "focusable", 12: "focused",
          20: "pressed", 22: "selectable", 23: "selected", 24: "sensitive", 25: "showing", 26: "single-line",
          30: "visible", 41: "checkable", 42: "has-popup", 43: "read-only"}


class Gone(Exception):
    """What was to be read is not shown any more."""


class Node:
    """One thing that is shown. Everything is asked anew at each call; `Gone` if it is not there any more."""

    def __init__(self, tree, owner, path):
        self._tree = tree
        self.owner = owner
        self.path = path

    def __eq__(self, other):
        return isinstance(other, Node) and (self.owner, self.path) == (other.owner, other.path)

    def __hash__(self):
        return hash((self.owner, self.path))

    def __repr__(self):
        return f"<{self.role} {self.name!r}>"

    def _call(self, interface, method, signature="", *arguments):
        return self._tree.call(self.owner, self.path, interface, method, signature, arguments)

    def _property(self, interface, name):
        return self._call(dbus.PROPERTIES_IFACE, "Get", "ss", interface, name)

    @property
    def name(self):
        return str(self._property(ACCESSIBLE, "Name"))

    @property
    def description(self):
        return str(self._property(ACCESSIBLE, "Description"))

    @property
    def role(self):
        return str(self._call(ACCESSIBLE, "GetRoleName"))

    @property
    def states(self):
        low, high = self._call(ACCESSIBLE, "GetState")
        bits = int(low) | int(high) << 32
        return {name for bit, name in STATES.items() if bits >> bit & 1}

    @property
    def interfaces(self):
        return {str(name).rpartition(".")[2] for name in self._call(ACCESSIBLE, "GetInterfaces")}

    @property
    def children(self):
        return [Node(self._tree, owner, path) for owner, path in self._call(ACCESSIBLE, "GetChildren")]

    @property
    def shown_children(self):
        """Those that aren't hidden; none of something that is gone."""
        try:
            return [child for child in self.children if child.is_shown]
        except Gone:
            return []

    @property
    def is_shown(self):
        try:
            return "showing" in self.states
        except Gone:
            return False

    @property
    def area(self):
        """Where it lies on the screen: x, y, width, height."""
        return tuple(int(number) for number in self._call(COMPONENT, "GetExtents", "u", SCREEN))

    @property
    def actions(self):
        if "Action" not in self.interfaces:
            return []
        return [str(self._call(ACTION, "GetName", "i", number))
                for number in range(int(self._property(ACTION, "NActions")))]

    def act(self, name):
        """Does the action of that name."""
        actions = self.actions
        if name not in actions:
            raise LookupError(f"{self} can't {name}, only {actions}")
        self._call(ACTION, "DoAction", "i", actions.index(name))

    def press(self):
        """Does what pressing it does: "Press", or "Toggle" where it only has that."""
        self.act("Press" if "Press" in self.actions else "Toggle")

    @property
    def text(self):
        return str(self._call(TEXT, "GetText", "ii", 0, -1))

    def set_text(self, text):
        self._call(EDITABLE_TEXT, "SetTextContents", "s", text)

    @property
    def value(self):
        return float(self._property(VALUE, "CurrentValue"))

    def set_value(self, value):
        self._call(dbus.PROPERTIES_IFACE, "Set", "ssv", VALUE, "CurrentValue", dbus.Double(value, variant_level=1))

    def take_focus(self):
        return bool(self._call(COMPONENT, "GrabFocus"))

    def all(self):
        """It and everything shown inside of it, from the outside in. Programs also tell of what is hidden, with the
        state saying so; screen readers skip that, and so does this, with what goes meanwhile."""
        yield self
        for child in self.shown_children:
            yield from child.all()

    def find_all(self, name=None, role=None):
        found = []
        for node in self.all():
            try:
                if (name is None or node.name == name) and (role is None or node.role == role):
                    found.append(node)
            except Gone:
                continue
        return found

    def names(self):
        """The names of everything inside of it that has one."""
        names = []
        for node in self.all():
            try:
                names.append(node.name)
            except Gone:
                continue
        return [name for name in names if name]

    def find(self, name=None, role=None):
        """The first of that name and role, or None."""
        found = self.find_all(name, role)
        return found[0] if found else None

    def focused(self):
        """What has the keyboard, or None. What it lies in has it too, so this is the innermost."""
        innermost = None
        for node in self.all():
            try:
                if "focused" in node.states:
                    innermost = node
            except Gone:
                continue
        return innermost

    def outline(self, indent=0):
        """Lines that show everything inside of it."""
        try:
            line = f"{'  ' * indent}{self.role} {self.name!r}"
            if self.description:
                line += f" ({self.description})"
            lines = [f"{line} {' '.join(sorted(self.states))} {self.actions}"]
        except Gone:
            return []
        for child in self.shown_children:
            lines += child.outline(indent + 1)
        return lines


class Tree:
    """The accessibility bus of a session."""

    def __init__(self, address):
        self._loop = dbus.mainloop.glib.DBusGMainLoop()
        self._bus = dbus.bus.BusConnection(address, mainloop=self._loop)
        self.events = []

    def close(self):
        self._bus.close()

    def call(self, owner, path, interface, method, signature, arguments):
        try:
            return self._bus.call_blocking(owner, path, interface, method, signature, arguments)
        except dbus.exceptions.DBusException as problem:
            if problem.get_dbus_name() in ("org.freedesktop.DBus.Error.NameHasNoOwner",
                                           "org.freedesktop.DBus.Error.UnknownObject",
                                           "org.freedesktop.DBus.Error.ServiceUnknown",
                                           "org.freedesktop.DBus.Error.NoReply",
                                           "org.freedesktop.DBus.Error.UnknownInterface",
                                           "org.freedesktop.DBus.Error.UnknownMethod"):
                raise Gone(f"{path} is gone") from problem
            raise

    def root(self, pid):
        """What the process shows; None as long as it isn't on the bus."""
        for owner, path in self.call(REGISTRY, ROOT_PATH, ACCESSIBLE, "GetChildren", "", ()):
            try:
                found = self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                  "GetConnectionUnixProcessID", "s", (owner,))
            except Gone:
                # The registry may not know yet.
                continue
            if found == pid:
                return Node(self, owner, path)
        return None

    def listen(self, *kinds):
        """Collects the events of these kinds, such as "object:property-change:accessible-name", from now on in
        `events`, each as the kind, its detail and the thing it is about."""
        for kind in kinds:
            self.call(REGISTRY, REGISTRY_PATH, REGISTRY, "RegisterEvent", "sass", (kind, [], ""))
        self._bus.add_signal_receiver(self._note, dbus_interface=OBJECT_EVENTS, member_keyword="member",
                                      path_keyword="path", sender_keyword="sender")

    def _note(self, detail, *_, member, path, sender):
        self.events.append((str(member), str(detail), Node(self, sender, path)))

    def pass_time(self, seconds):
        """Lets events come in for a while, and all those that have come until its end."""
        deadline = time.monotonic() + seconds
        while True:
            is_over = time.monotonic() >= deadline
            while GLib.MainContext.default().iteration(False):
                pass
            if is_over:
                return
            time.sleep(0.01)
