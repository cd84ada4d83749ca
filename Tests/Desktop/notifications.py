#!/usr/bin/python3
"""What a notification server shows when the program speaks, and what the program hears when the user answers.

    notifications.py SPEAKER SERVER

The speaker says each kind on command, since a drift needs a distraction. What the whole program says at the end of a
phase is in phase_notification.py.
"""

import html
import os
import shlex
import subprocess
import sys

import dbus
import harness
from harness import check, check_equal
from virtualdesktop import Desktop, Failure, wait
from waylanddesktop import WaylandDesktop

NAME = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"


class ToolKitScreen:
    """A server made with a tool kit tells assistive technology what it shows."""

    def __init__(self, desktop):
        self.desktop = desktop

    def prepare(self):
        """Has everything stay on the screen, where the server can be told so."""

    @property
    def _root(self):
        return self.desktop.shown(self.desktop.process("notifications"))

    def texts(self):
        """The titles and bodies on the screen."""
        root = self._root
        return [node.name for node in root.find_all(role="label")] if root else []

    def offers(self, titles):
        """Whether these are the buttons on the screen, in their order."""
        root = self._root
        buttons = [node.name for node in root.find_all(role="push button") if node.name] if root else []
        return buttons == titles

    def press(self, button):
        x, y, width, height = self._root.find(button, "push button").area
        self.desktop.click(x + width // 2, y + height // 2)


class XfceScreen(ToolKitScreen):
    def prepare(self):
        subprocess.run(["xfconf-query", "-c", "xfce4-notifyd", "-p", "/expire-timeout", "-n", "-t", "int",
                        "-s", "-1"], env=self.desktop.environment, stdin=subprocess.DEVNULL, check=True)


class DunstScreen:
    """Dunst is told to write down what it shows, and which of several buttons its menu is to choose."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.shown = desktop.home / "shown"
        self.offered = desktop.home / "offered"
        self.wanted = desktop.home / "wanted"

    def prepare(self):
        folder = self.desktop.home / ".config/dunst"
        folder.mkdir(exist_ok=True)
        menu = self._script("menu", f"tee -a {shlex.quote(str(self.offered))} | "
                                    f"grep -F -f {shlex.quote(str(self.wanted))}")
        note = self._script("note", f"printf '%s\\n%s\\n' \"$2\" \"$3\" >> {shlex.quote(str(self.shown))}")
        (folder / "dunstrc").write_text(f"[global]\n    dmenu = {menu}\n[all]\n    script = {note}\n"
                                        "[urgency_normal]\n    timeout = 0\n")
        self.shown.touch()

    def _script(self, name, line):
        script = self.desktop.home / name
        script.write_text(f"#!/bin/sh\n{line}\n")
        script.chmod(0o700)
        return script

    def texts(self):
        lengths = self.desktop.bus.call_blocking(NAME, PATH, dbus.PROPERTIES_IFACE, "GetAll", "s",
                                                 ("org.dunstproject.cmd0",))
        lines = self.shown.read_text().splitlines()
        unread = len(lines) - 2 * int(lengths["displayedLength"])
        # It knows of one before it shows it, and shows it before it is written down.
        return lines[unread:] if unread >= 0 and not lengths["waitingLength"] else ["about to be shown"]

    def told(self):
        """When it began to show the last of them, in seconds of the clock on the wall."""
        return self.shown.stat().st_mtime

    def offers(self, titles):
        """It shows no buttons; its menu has them."""
        return True

    def press(self, button):
        self.wanted.write_text(button + "\n")
        # Dunst chooses an only button by itself, and asks its menu where there are several.
        self.desktop.bus.call_blocking(NAME, PATH, "org.dunstproject.cmd0", "NotificationAction", "u", (0,))


class MakoScreen:
    """Mako tells what it shows, and is told what the user does, as by makoctl(1). It leaves on the screen what was
    answered."""

    def __init__(self, desktop):
        self.desktop = desktop

    def prepare(self):
        pass

    def _ask(self, method, signature="", *arguments):
        return self.desktop.bus.call_blocking(NAME, "/fr/emersion/Mako", "fr.emersion.Mako", method, signature,
                                              arguments)

    def texts(self):
        # It keeps the body as it came, with its markup.
        return [str(text) for shown in self._ask("ListNotifications")
                for text in (shown["summary"], html.unescape(shown["body"]))]

    def offers(self, titles):
        """It has no order among them."""
        actions = [str(title) for shown in self._ask("ListNotifications") for title in shown["actions"].values()]
        return sorted(actions) == sorted(titles)

    def press(self, button):
        for shown in self._ask("ListNotifications"):
            for action, title in shown["actions"].items():
                if title == button:
                    self._ask("InvokeAction", "us", shown["id"], action)


SERVERS = {
    "dunst": (Desktop, DunstScreen),
    "xfce4-notifyd": (Desktop, XfceScreen),
    "notification-daemon": (Desktop, ToolKitScreen),
    "mako": (WaylandDesktop, MakoScreen),
}


class Speaker:
    def __init__(self, desktop, binary):
        self.desktop = desktop
        self.pipe = desktop.home / "commands"
        os.mkfifo(self.pipe)
        self.process = desktop.start("speaker", [binary, self.pipe])
        self._read = 0
        self.hear("ready")

    def say(self, *words):
        self.say_together(words)

    def say_together(self, *commands):
        """Has the commands obeyed one right after the other."""
        with open(self.pipe, "w", encoding="utf-8") as pipe:
            pipe.write("".join("\t".join(words) + "\n" for words in commands))
        for words in commands:
            self.hear(f"did {words[0]}")

    def hear(self, line):
        """Waits until the next line that the speaker prints is this one."""
        wait(f"the speaker's {line!r}", lambda: len(self._lines()) > self._read)
        check_equal(self._lines()[self._read], line, "the speaker says")
        self._read += 1

    def hears_no_more(self):
        return len(self._lines()) == self._read

    def _lines(self):
        if self.process.poll() is not None:
            raise Failure(f"the speaker ended with {self.process.returncode}")
        return self.desktop.log("speaker").read_text().splitlines()


def wait_for_texts(screen, *texts, seconds=60):
    try:
        # notification-daemon lets stay for a while what took the place of another and was closed then.
        wait(f"{texts} on the screen", lambda: screen.texts() == list(texts), seconds)
    except Failure as failure:
        raise Failure(f"{failure}; there is {screen.texts()}") from None
    print(f"ok: on the screen is {texts}", flush=True)


def check_buttons(screen, *titles):
    wait(f"the buttons {titles}", lambda: screen.offers(list(titles)))


def test(desktop, screen, speaker):
    # 1. A drift, and both answers to it.
    speaker.say("drift", "nudge", "Chat", "Write the letter")
    wait_for_texts(screen, "Back to Write the letter?", "Chat is on your distractions list.")
    check_buttons(screen, "Hide App", "Allow 5 min")
    screen.press("Hide App")
    speaker.hear("answer selvane.drift.hide")
    wait_for_texts(screen)
    speaker.say("drift", "nudge", "Chat")
    wait_for_texts(screen, "Back to focus?", "Chat is on your distractions list.")
    screen.press("Allow 5 min")
    speaker.hear("answer selvane.drift.snooze")
    wait_for_texts(screen)

    # 2. A website and a hidden application can't be hidden.
    speaker.say("drift", "site", "News", "Ready?")
    wait_for_texts(screen, "Back to Ready??", "News is on your distractions list.")
    check_buttons(screen, "Allow 5 min")
    screen.press("Allow 5 min")
    speaker.hear("answer selvane.drift.snooze")
    wait_for_texts(screen)

    # 3. A second drift takes the place of the first. What looks like markup is text.
    speaker.say("drift", "nudge", "Chat")
    wait_for_texts(screen, "Back to focus?", "Chat is on your distractions list.")
    speaker.say("drift", "hidden", "<b>R&D</b>", "a < b & c")
    wait_for_texts(screen, "Hid <b>R&D</b>", "Still focusing on a < b & c.")
    check_buttons(screen, "Allow 5 min")
    speaker.say("takeDown", "selvane.drift")
    wait_for_texts(screen)

    # 4. A notice about data, in the place of the one before. What waits for its moment is not shown with it.
    speaker.say("phase", "focus", "3600")
    speaker.say("data", "Selvane restored your data", "It is back.")
    wait_for_texts(screen, "Selvane restored your data", "It is back.")
    check_buttons(screen)
    speaker.say("data", "Selvane couldn't read your data", "It is gone.")
    wait_for_texts(screen, "Selvane couldn't read your data", "It is gone.")
    speaker.say("takeDown", "selvane.data")
    wait_for_texts(screen)

    # 5. The end of a phase comes at its moment, in the place of the one before.
    speaker.say("phase", "focus", "1.5")
    wait_for_texts(screen, "Focus complete", "Nice work. Time for a break.")
    speaker.say("phase", "shortBreak", "1.5")
    wait_for_texts(screen, "Break's over", "Ready for the next focus session?")
    speaker.say("takeDown", "selvane.phase-end")
    wait_for_texts(screen)

    # 6. One that is taken back doesn't come: what falls due right after it comes alone. A second meeting takes the place
    # of the first.
    speaker.say_together(("phase", "focus", "1"), ("unschedule", "selvane.phase-end"), ("meeting", "Review", "30"))
    wait_for_texts(screen, "Review is starting", "Time to wrap up this session.")
    speaker.say("meeting", "Lunch", "121")
    wait_for_texts(screen, "Lunch in 2 min", "Time to wrap up this session.")
    check_buttons(screen)
    speaker.say("takeDown", "selvane.meeting")
    wait_for_texts(screen)

    # 7. The server falls over while something waits. The next one shows it, and nothing else.
    speaker.say("drift", "nudge", "Chat")
    wait_for_texts(screen, "Back to focus?", "Chat is on your distractions list.")
    speaker.say("phase", "focus", "3600")
    desktop.stop_notifications()
    desktop.start_notifications()
    speaker.say("takeDown", "selvane.drift")
    speaker.say("deliver", "selvane.phase-end")
    wait_for_texts(screen, "Focus complete", "Nice work. Time for a break.")
    speaker.say("takeDown", "selvane.phase-end")
    wait_for_texts(screen)

    # 8. With no server at all nothing happens, whatever is said, and the next one is used again and shows nothing of it.
    desktop.stop_notifications()
    speaker.say("drift", "nudge", "Lost")
    speaker.say("data", "Lost", "Lost")
    speaker.say("takeDown", "selvane.drift")
    speaker.say_together(("phase", "focus", "3600"), ("meeting", "Lost", "30"), ("deliver", "selvane.phase-end"),
                         ("deliver", "selvane.meeting"))
    desktop.start_notifications()
    speaker.say("data", "Selvane restored your data", "It is back.")
    wait_for_texts(screen, "Selvane restored your data", "It is back.")
    check(speaker.hears_no_more(), "nobody answered anything else")


def main():
    speaker, server = sys.argv[1:]
    try:
        kind, make_screen = SERVERS[server]
        with kind(notifications=server, accessible=True) as desktop:
            screen = make_screen(desktop)
            screen.prepare()
            # Again, with what was prepared.
            desktop.stop_notifications()
            desktop.start_notifications()
            test(desktop, screen, Speaker(desktop, speaker))
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
