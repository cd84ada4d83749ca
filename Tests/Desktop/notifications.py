#!/usr/bin/python3
"""What a notification server shows when the program speaks, and what the program hears when the user answers.

    notifications.py SPEAKER SERVER

The speaker says each kind on command, since a drift needs a distraction. What the whole program says at the end of a
phase is in phase_notification.py.
"""

import os
import shlex
import sys
import time

import dbus
import harness
from harness import check, check_equal
from virtualdesktop import Desktop, Failure, wait

NAME = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"


class ToolKitScreen:
    """A server made with a tool kit tells assistive technology what it shows."""

    def __init__(self, desktop):
        self.desktop = desktop

    def prepare(self):
        pass

    @property
    def _root(self):
        return self.desktop.shown(self.desktop.process("notifications"))

    def texts(self):
        """The titles and bodies on the screen."""
        root = self._root
        return [node.name for node in root.find_all(role="label")] if root else []

    def buttons(self):
        root = self._root
        return [node.name for node in root.find_all(role="push button") if node.name] if root else []

    def press(self, button):
        x, y, width, height = self._root.find(button, "push button").area
        self.desktop.click(x + width // 2, y + height // 2)


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
        (folder / "dunstrc").write_text(f"[global]\n    dmenu = {menu}\n[all]\n    script = {note}\n")
        self.shown.touch()

    def _script(self, name, line):
        script = self.desktop.home / name
        script.write_text(f"#!/bin/sh\n{line}\n")
        script.chmod(0o700)
        return script

    def texts(self):
        count = self.desktop.bus.call_blocking(NAME, PATH, dbus.PROPERTIES_IFACE, "Get", "ss",
                                               ("org.dunstproject.cmd0", "displayedLength"))
        lines = self.shown.read_text().splitlines()
        return lines[len(lines) - 2 * int(count):]

    def buttons(self):
        """It shows none; its menu has them."""
        return None

    def press(self, button):
        self.wanted.write_text(button + "\n")
        # Dunst chooses an only button by itself, and asks its menu where there are several.
        self.desktop.bus.call_blocking(NAME, PATH, "org.dunstproject.cmd0", "NotificationAction", "u", (0,))


SCREENS = {"dunst": DunstScreen, "xfce4-notifyd": ToolKitScreen, "notification-daemon": ToolKitScreen}


class Speaker:
    def __init__(self, desktop, binary):
        self.desktop = desktop
        self.pipe = desktop.home / "commands"
        os.mkfifo(self.pipe)
        self.process = desktop.start("speaker", [binary, self.pipe])
        self._read = 0
        self.hear("ready")

    def say(self, *words):
        with open(self.pipe, "w", encoding="utf-8") as pipe:
            pipe.write("\t".join(words) + "\n")
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


def wait_for_texts(screen, *texts):
    try:
        # notification-daemon lets stay for a while what took the place of another and was closed then.
        wait(f"{texts} on the screen", lambda: screen.texts() == list(texts), seconds=60)
    except Failure as failure:
        raise Failure(f"{failure}; there is {screen.texts()}") from None
    print(f"ok: on the screen is {texts}", flush=True)


def check_buttons(screen, *titles):
    if screen.buttons() is not None:
        wait(f"the buttons {titles}", lambda: screen.buttons() == list(titles))


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

    # 4. The end of a phase: at its moment, in the place of the one before, and not once it is taken back.
    speaker.say("phase", "focus", "3")
    check_equal(screen.texts(), [], "before the moment there is")
    wait_for_texts(screen, "Focus complete", "Nice work. Time for a break.")
    speaker.say("phase", "shortBreak", "1.5")
    wait_for_texts(screen, "Break's over", "Ready for the next focus session?")
    speaker.say("takeDown", "selvane.phase-end")
    wait_for_texts(screen)
    speaker.say("phase", "focus", "3")
    speaker.say("unschedule", "selvane.phase-end")
    speaker.say("meeting", "Review", "30")
    wait_for_texts(screen, "Review is starting", "Time to wrap up this session.")
    time.sleep(2.5)
    check_equal(screen.texts()[:1], ["Review is starting"], "after the moment that was taken back there is")
    speaker.say("takeDown", "selvane.meeting")
    wait_for_texts(screen)

    # 5. The server falls over while something waits. The next one shows it, and nothing else.
    speaker.say("drift", "nudge", "Chat")
    wait_for_texts(screen, "Back to focus?", "Chat is on your distractions list.")
    speaker.say("phase", "focus", "4")
    desktop.stop_notifications()
    desktop.start_notifications()
    speaker.say("takeDown", "selvane.drift")
    wait_for_texts(screen, "Focus complete", "Nice work. Time for a break.")
    speaker.say("takeDown", "selvane.phase-end")
    wait_for_texts(screen)

    # 6. Without a server nothing happens, and the next one is used again.
    desktop.stop_notifications()
    speaker.say("drift", "nudge", "Lost")
    speaker.say("data", "Lost", "Lost")
    speaker.say("takeDown", "selvane.drift")
    desktop.start_notifications()
    speaker.say("data", "Selvane restored your data", "It is back.")
    wait_for_texts(screen, "Selvane restored your data", "It is back.")
    check_buttons(screen)
    check(speaker.hears_no_more(), "nobody answered anything else")


def main():
    speaker, server = sys.argv[1:]
    try:
        with Desktop(notifications=server, accessible=True) as desktop:
            screen = SCREENS[server](desktop)
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
