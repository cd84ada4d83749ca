"""A sound server on a private desktop, with one device that nobody hears, and what is heard there."""

import array
import math
import pathlib
import subprocess

from virtualdesktop import Failure, wait

FRAMES_A_SECOND = 48000
SIDES = 2
# Sounds are looked at in steps of a hundredth of a second.
STEP = FRAMES_A_SECOND // 100 * SIDES
# Fainter than this is silence.
FAINTEST = 0.0005
# Silence of so many steps lies between two sounds; a shorter one is a server that was late.
PAUSE = 300

DEVICE = ["module-null-sink", "sink_name=hall", f"rate={FRAMES_A_SECOND}", "format=float32le", f"channels={SIDES}"]
# The notes of the piano between g and g'''', of equal temper.
NOTES = [440 * 2 ** (step / 12) for step in range(-14, 35)]


def _start_pulseaudio(desktop, socket):
    # A device that takes back what it played already would hand its recorders something else.
    desktop.start("sound server", ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
                                   "-L", " ".join([*DEVICE, "norewinds=1"]),
                                   "-L", "module-native-protocol-unix auth-anonymous=1"])
    wait("the sound server", socket.exists)


def _start_pipewire(desktop, socket):
    desktop.start("pipewire", ["pipewire"])
    wait("PipeWire", (socket.parents[1] / "pipewire-0").exists)
    desktop.start("wireplumber", ["wireplumber"])
    desktop.start("sound server", ["pipewire-pulse"])
    wait("the sound server", socket.exists)
    answer = subprocess.run(["pactl", "load-module", *DEVICE], env=desktop.environment, stdin=subprocess.DEVNULL,
                            capture_output=True, text=True, check=False)
    if answer.returncode != 0:
        raise Failure(f"PipeWire makes no device: {answer.stderr.strip()}")


SERVERS = {"pulseaudio": _start_pulseaudio, "pipewire": _start_pipewire}


def start(desktop, server):
    """Starts the server of that name; gives a recording of what its device plays from now on."""
    SERVERS[server](desktop, pathlib.Path(desktop.environment["XDG_RUNTIME_DIR"], "pulse/native"))
    return Recording(desktop)


class Sound:
    """A sound as it was heard: samples of both sides in turn, without the silence around it and in it."""

    def __init__(self):
        self.samples = array.array("f")

    @property
    def seconds(self):
        return len(self.samples) / SIDES / FRAMES_A_SECOND

    @property
    def peak(self):
        return max(max(self.samples), -min(self.samples))

    @property
    def pitch(self):
        """The note with which it begins, in hertz."""
        beginning = self.samples[:12 * STEP:SIDES]
        return max(NOTES, key=lambda hertz: self._strength(beginning, hertz))

    @staticmethod
    def _strength(samples, hertz):
        turn = 2 * math.pi * hertz / FRAMES_A_SECOND
        cosine = sum(sample * math.cos(turn * index) for index, sample in enumerate(samples))
        sine = sum(sample * math.sin(turn * index) for index, sample in enumerate(samples))
        return math.hypot(cosine, sine)


class Recording:
    """What the device plays, cut into sounds."""

    def __init__(self, desktop):
        # What it records goes to its log.
        desktop.start("recording", ["parec", "--device=hall.monitor", "--format=float32le", "--raw",
                                    f"--rate={FRAMES_A_SECOND}", f"--channels={SIDES}", "--latency-msec=100"])
        self._file = desktop.log("recording")
        self._steps = 0
        self._last_loud = None
        self._sounds = []
        wait("the recording to begin", lambda: self._file.stat().st_size)

    def sounds(self):
        """Everything that was heard up to now; the last of it may go on."""
        size = STEP * array.array("f").itemsize
        with open(self._file, "rb") as file:
            file.seek(self._steps * size)
            recorded = file.read()
        for start in range(0, len(recorded) - size + 1, size):
            self._hear(array.array("f", recorded[start:start + size]))
        return self._sounds

    def _hear(self, samples):
        self._steps += 1
        if max(max(samples), -min(samples)) < FAINTEST:
            return
        if self._last_loud is None or self._steps - self._last_loud > PAUSE:
            self._sounds.append(Sound())
        self._sounds[-1].samples.extend(samples)
        self._last_loud = self._steps

    def loudness(self, seconds=0.5):
        """The root of the mean square of what was heard last."""
        size = round(seconds * FRAMES_A_SECOND) * SIDES * array.array("f").itemsize
        with open(self._file, "rb") as file:
            end = file.seek(0, 2) // (SIDES * 4) * SIDES * 4
            file.seek(max(0, end - size))
            samples = array.array("f", file.read(end - file.tell()))
        return math.sqrt(sum(sample * sample for sample in samples) / max(1, len(samples)))

    def wait_for_sounds(self, count):
        """The sounds, once there are `count` and it is silent after them."""
        wait(f"{count} sounds and silence",
             lambda: len(self.sounds()) >= count and self._steps - self._last_loud > PAUSE, 60)
        return self._sounds
