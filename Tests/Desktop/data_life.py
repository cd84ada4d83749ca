#!/usr/bin/python3
"""What becomes of the user's files at a launch: the first one, with damage, after an update, after the earlier
product, and when the program is ended without warning. What it tells the user about it no view shows; the files and
the log do."""

import json
import pathlib
import re
import shutil
import signal
import sys

import harness
from harness import check, check_equal
from virtualdesktop import Failure, wait

PROJECT = (pathlib.Path(__file__).resolve().parents[2] / "CMakeLists.txt").read_text()
VERSION = re.search(r"VERSION (\d+(?:\.\d+)+)\n", PROJECT)[1]
BUILD = re.search(r"set\(SELVANE_BUILD_NUMBER (\w+)\)", PROJECT)[1]

STAMP = r"\.corrupt-\d{8}-\d{6}-[0-9A-F]{6}\.json"
DAMAGE = {"tasks": b'{"items" : [{"title" : "cut o', "sessions": b'{"this" : "is no list"}'}


def identifier(number):
    return f"00000000-0000-0000-0000-{number:012}"


def tasks(number):
    return {"items": [{"id": identifier(number), "title": f"Task {number}", "isDone": False,
                       "createdAt": "2026-03-01T09:00:00Z", "estimatedPomodoros": 2, "completedPomodoros": 1}]}


def sessions(number):
    return [{"id": identifier(number), "start": "2026-03-02T09:00:00Z", "end": "2026-03-02T09:25:00Z",
             "phase": "focus", "plannedSeconds": 1500, "actualSeconds": 1500, "completed": True}]


def backup(number, exported_at):
    return {"format": "selvane-backup", "schemaVersion": 1, "appVersion": "0.0.9", "exportedAt": exported_at,
            "tasks": tasks(number), "sessions": sessions(number + 1), "settings": {}}


def check_files(found, wanted, what):
    """Checks files by name and bytes, without telling all of their bytes."""
    differing = sorted(name for name in found.keys() | wanted.keys() if found.get(name) != wanted.get(name))
    check(not differing, f"{what}, but for {differing}" if differing else f"{what}: {sorted(found)}")


class Home:
    """The files of a user, and launches upon them."""

    def __init__(self, desktop, selvane):
        self.desktop = desktop
        self.selvane = selvane
        # The settings are what these tests are about.
        selvane.is_silent = False
        self.data = selvane.data_folder
        self.backups = self.data / "Backups"
        self.earlier_data = desktop.data / "Vesk"
        self.config = desktop.home / ".config"
        self.defaults_file = self.config / "com.lorbin.selvane.json"
        self.earlier_defaults_file = self.config / "com.lorbin.vesk.json"
        self.today = harness.make_it_noon(desktop).isoformat()

    def clear(self):
        for folder in (self.data, self.earlier_data):
            shutil.rmtree(folder, ignore_errors=True)
        for file in self.config.glob("com.lorbin.*"):
            file.unlink()

    def write(self, file, value):
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(value if isinstance(value, bytes) else json.dumps(value).encode())

    @staticmethod
    def defaults_document(**values):
        names = {bool: "bool", int: "int", str: "string"}
        return {key: {"type": names[type(value)], "value": value} for key, value in values.items()}

    def have_defaults(self, **values):
        self.write(self.defaults_file, self.defaults_document(**values))

    def have_data(self):
        self.write(self.data / "tasks.json", tasks(1))
        self.write(self.data / "sessions.json", sessions(2))

    def defaults(self):
        return {key: entry["value"] for key, entry in json.loads(self.defaults_file.read_text()).items()}

    def files(self):
        """All files in the data folder with their bytes."""
        return {str(file.relative_to(self.data)): file.read_bytes()
                for file in sorted(self.data.rglob("*")) if file.is_file()}

    def launch(self):
        """Starts the program and ends it as a session does; gives what it told the log."""
        before = self._log_size()
        self.start()
        if self.selvane.terminate() != 0:
            raise Failure("a program that is asked to end gives a status other than 0")
        return self._lines_after(before)

    def start(self):
        self.selvane.start_without_dial()
        self.selvane.wait_for_launch()

    def _log_size(self):
        log = self.desktop.log("selvane")
        return log.stat().st_size if log.exists() else 0

    def _lines_after(self, size):
        text = self.desktop.log("selvane").read_bytes()[size:].decode()
        return [line for line in text.splitlines() if line.startswith("Selvane: ")]


def first_launch(home):
    home.launch()
    check_equal(home.defaults(), {"lastRunBuild": BUILD, "lastSeenVersion": VERSION, "migratedFromVesk": True},
                "what a first launch stores")
    check(not home.data.exists(), "a first launch makes no data folder, and so no backup")
    written = home.defaults_file.read_bytes()
    home.launch()
    check(home.defaults_file.read_bytes() == written, "the same settings after the second launch")
    check(not home.data.exists(), "nor does the second")


def damaged_stores(home):
    for damaged in (["tasks"], ["sessions"], ["tasks", "sessions"]):
        for has_backup in (True, False):
            home.clear()
            damage(home, damaged, has_backup)


def damage(home, damaged, has_backup):
    case = " and ".join(damaged) + (" damaged, with backups: " if has_backup else " damaged, no backup: ")
    home.have_defaults(lastRunBuild=BUILD, lastSeenVersion=VERSION, migratedFromVesk=True)
    home.have_data()
    for store in damaged:
        home.write(home.data / f"{store}.json", DAMAGE[store])
    if has_backup:
        # The names say otherwise than the documents, which are right; the newest of all is none.
        home.write(home.backups / "daily-2026-03-05.json", backup(11, "2026-03-03T08:00:00Z"))
        home.write(home.backups / "daily-2026-03-04.json", backup(21, "2026-03-06T08:00:00Z"))
        home.write(home.backups / "daily-2026-03-07.json", b'{"format" : "selvane-backup"')
    before = home.files()
    lines = home.launch()
    after = home.files()

    present = {"tasks": tasks(1), "sessions": sessions(2)}
    restored = {"tasks": tasks(21), "sessions": sessions(22)}
    aside = [name for name in after if ".corrupt-" in name]
    check_equal(len(aside), len(damaged), case + "files set aside")
    check_equal(len(lines), len(damaged), case + "lines in the log")
    for store in ("tasks", "sessions"):
        file = f"{store}.json"
        if store not in damaged:
            check(after[file] == before[file], case + f"{file} byte for byte")
            continue
        names = [name for name in aside if re.fullmatch(store + STAMP, name)]
        check_equal([after[name] for name in names], [DAMAGE[store]], case + f"what {names} holds")
        check(any(line.startswith(f"Selvane: couldn't read {file} (") and
                  line.endswith(f"); moved it to {names[0]}") for line in lines), case + f"the log tells of {file}")
        found = json.loads(after[file]) if file in after else None
        check_equal(found, restored[store] if has_backup else None, case + f"contents of {file}")

    daily = f"Backups/daily-{home.today}.json"
    if has_backup:
        for name in [name for name in before if name.startswith("Backups/")]:
            check(after[name] == before[name], case + f"{name} byte for byte")
        check(daily in after, case + "the day has its backup")
        document = json.loads(after[daily])
        for store, value in present.items():
            check_equal(document[store], restored[store] if store in damaged else value,
                        case + f"{store} in the day's backup")
    else:
        check(not home.backups.exists(), case + "an empty start is not backed up")

    check_equal(home.launch(), [], case + "lines in the log of the next launch")
    again = home.files()
    again.pop(daily, None)
    after.pop(daily, None)
    check_files(again, after, case + "files after the next launch")


def damaged_settings(home):
    home.write(home.defaults_file, b'{"focusMinutes" : {"type" : "int", "val')
    lines = home.launch()
    aside = [file for file in home.config.iterdir() if re.fullmatch("com.lorbin.selvane" + STAMP, file.name)]
    check_equal([file.read_bytes() for file in aside], [b'{"focusMinutes" : {"type" : "int", "val'],
                "damaged settings, set aside")
    check(len(lines) == 1 and lines[0].endswith(f"; moved it to {aside[0].name}"), "the log tells of the settings")
    check_equal(home.defaults(), {"lastRunBuild": BUILD, "lastSeenVersion": VERSION, "migratedFromVesk": True},
                "settings in the place of damaged ones")


def updates(home):
    home.have_data()
    daily = f"Backups/daily-{home.today}.json"
    names = {"tasks.json", "sessions.json", daily}
    for last_build, name in ((None, "earlier"), ("41", "41"), ("40.2 (beta)", "40.2beta")):
        values = {} if last_build is None else {"lastRunBuild": last_build}
        home.have_defaults(lastSeenVersion=VERSION, migratedFromVesk=True, **values)
        before = home.files()
        home.launch()
        after = home.files()
        made = f"Backups/pre-update-{name}-{home.today}.json"
        names.add(made)
        check_equal(set(after), names, f"files after an update from build {last_build}")
        for document in (json.loads(after[made]), json.loads(after[daily])):
            check_equal((document["tasks"], document["sessions"]), (tasks(1), sessions(2)), "what a backup holds")
        check_files(after, before | {made: after[made], daily: before.get(daily, after[daily])},
                    "files, all but the new backups")
        check_equal(home.defaults()["lastRunBuild"], BUILD, "build after the update")
        home.launch()
        check_files(home.files(), after, "files after the same build ran again")


def migration(home):
    home.write(home.earlier_data / "tasks.json", tasks(31))
    home.write(home.earlier_data / "sessions.json", sessions(32))
    home.write(home.earlier_data / "Backups/daily-2026-03-01.json", backup(41, "2026-03-01T08:00:00Z"))
    home.write(home.earlier_defaults_file,
               home.defaults_document(dailyGoalMinutes=90, focusMinutes=40, autoStartBreaks=True,
                                   currentTaskID=identifier(31), lastRunBuild="7", ofNobody="text"))
    home.have_defaults(focusMinutes=30)
    earlier_defaults = home.earlier_defaults_file.read_bytes()
    home.start()
    home.selvane.open_panel()
    times = wait("the time", lambda: [text for text in home.desktop.texts(home.selvane.process)
                                      if "remaining" in text])
    check_equal(times, ["30:00 remaining"], "our length of a focus session")
    check_equal(home.selvane.today(), "Today: 0m of your 1h 30m goal", "the earlier product's goal")
    check_equal(home.selvane.terminate(), 0, "exit status")

    check(not home.earlier_data.exists(), "the earlier product's folder is gone")
    moved = home.files()
    check_equal(sorted(moved), ["Backups/daily-2026-03-01.json", f"Backups/daily-{home.today}.json",
                                f"Backups/pre-update-earlier-{home.today}.json", "sessions.json", "tasks.json"],
                "its files and the backups of this launch")
    check_equal(json.loads(moved["tasks.json"]), tasks(31), "tasks of the earlier product")
    check_equal(json.loads(moved["sessions.json"]), sessions(32), "sessions of the earlier product")
    check(home.earlier_defaults_file.read_bytes() == earlier_defaults,
          "the earlier product's settings file is as it was")
    check_equal(home.defaults(),
                {"dailyGoalMinutes": 90, "focusMinutes": 30, "autoStartBreaks": True, "currentTaskID": identifier(31),
                 "lastRunBuild": BUILD, "lastSeenVersion": VERSION, "migratedFromVesk": True},
                "settings after the migration, ours before those of the earlier product")

    home.write(home.earlier_data / "tasks.json", tasks(51))
    home.write(home.earlier_defaults_file, home.defaults_document(dailyGoalMinutes=200, shortBreakMinutes=9))
    defaults = home.defaults_file.read_bytes()
    home.launch()
    check_equal(json.loads((home.earlier_data / "tasks.json").read_text()), tasks(51), "a folder that came back")
    check_files(home.files(), moved, "data after the second launch")
    check(home.defaults_file.read_bytes() == defaults, "the same settings after the second launch")


def sudden_ends(home):
    stored = {"lastRunBuild": BUILD, "lastSeenVersion": VERSION, "migratedFromVesk": True}
    for _ in range(4):
        home.clear()
        home.launch()
        check_equal(home.defaults(), stored, "settings after an end that followed the launch at once")

    home.clear()
    home.have_defaults(focusMinutes=500)
    home.start()
    wait("the settings to be saved", lambda: home.defaults().get("lastSeenVersion") == VERSION)
    check_equal(home.selvane.terminate(signal.SIGKILL), -signal.SIGKILL, "exit status of a killed program")
    check_equal(home.defaults(), stored | {"focusMinutes": 120}, "settings after the program was killed")
    check_equal(home.launch(), [], "lines in the log of the next launch")
    check_equal(home.defaults(), stored | {"focusMinutes": 120}, "settings after the next launch")
    check_equal([file.name for file in home.config.glob("*lorbin*")], [home.defaults_file.name],
                "files of settings")


def test(desktop, selvane):
    home = Home(desktop, selvane)
    for step in (first_launch, damaged_stores, damaged_settings, updates, migration, sudden_ends):
        home.clear()
        step(home)


sys.exit(harness.run(test))
