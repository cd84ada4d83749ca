#!/usr/bin/python3
"""What the program says when it is asked on a command line, where there is no desktop."""

import subprocess
import sys
import unittest

PROGRAM, VERSION = sys.argv[1:]


def ask(*words, **environment):
    return subprocess.run([PROGRAM, *words], capture_output=True, text=True, timeout=60,
                          env={"PATH": "/usr/bin:/bin", "HOME": "/nonexistent"} | environment)


class ProgramAnswers(unittest.TestCase):
    def test_its_version(self):
        answer = ask("--version")
        self.assertEqual((answer.returncode, answer.stdout, answer.stderr), (0, f"Selvane {VERSION}\n", ""))

    def test_how_it_is_started(self):
        for word in ("--help", "-h"):
            answer = ask(word)
            self.assertEqual((answer.returncode, answer.stderr), (0, ""))
            self.assertTrue(answer.stdout.startswith("Usage: selvane "))

    def test_what_it_does_not_know(self):
        for words in (["--versions"], ["file"], ["--version", "--help"],
                      ["--service", "file"]):
            answer = ask(*words, QT_QPA_PLATFORM="offscreen")
            self.assertEqual((answer.returncode, answer.stdout), (2, ""))
            self.assertIn(f'selvane: "{words[0]}" is not known.\nUsage: selvane ', answer.stderr)

    def test_options_of_qt_are_known(self):
        answer = ask("-platform", "offscreen", "what")
        self.assertEqual(answer.returncode, 2)
        self.assertIn('selvane: "what" is not known.\n', answer.stderr)


unittest.main(argv=sys.argv[:1])
