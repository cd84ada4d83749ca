#!/usr/bin/python3
"""Computes the samples of the noise by itself, one operation after the other, and prints them as GoldenNoise.h has them.

    noise_reference.py                         prints the short rows: 1,000 frames of each kind, a second of rain
    noise_reference.py --long                  prints the long ones too: ten minutes of each kind
    noise_reference.py [--long] GoldenNoise.h  fails unless that has just these rows

The long rows take a minute with PyPy, and half an hour with CPython.

Python computes with 64-bit floats. One addition, subtraction, multiplication or division of 32-bit floats, done with 64
bits and then rounded to 32, gives just what it gives with 32 bits, so it is enough to round after each operation.
"""

import argparse
import array
import math
import multiprocessing
import pathlib
import sys

RATES = (44100, 48000)
SEEDS = (0x9E3779B97F4A7C15, 0xD1B54A32D192ED03)
PIECE = 1000

_slot = array.array("f", [0])


def f(value):
    """The 32-bit float nearest to a number."""
    _slot[0] = value
    return _slot[0]


class Random:
    """xorshift64, its state in two halves so that PyPy needs no long integers."""

    def __init__(self, seed):
        self.high = seed >> 32
        self.low = seed & 0xFFFFFFFF

    def u(self):
        """From 0 up to 1: the top 24 bits."""
        high, low = self.high, self.low
        high, low = high ^ ((high << 13 | low >> 19) & 0xFFFFFFFF), low ^ (low << 13 & 0xFFFFFFFF)
        high, low = high ^ (high >> 7), low ^ ((low >> 7 | high << 25) & 0xFFFFFFFF)
        high, low = high ^ ((high << 17 | low >> 15) & 0xFFFFFFFF), low ^ (low << 17 & 0xFFFFFFFF)
        self.high, self.low = high, low
        return (high >> 8) / 16777216.0

    def w(self):
        """White noise."""
        return f(f(2 * self.u()) - 1)


def white(random, rate):
    scale = f(0.16)
    while True:
        yield f(scale * random.w())


def pink(random, rate):
    b0 = b1 = b2 = b3 = b4 = b5 = b6 = 0.0
    p0, p1, p2, p3, p4, p5 = f(0.99886), f(0.99332), f(0.969), f(0.8665), f(0.55), f(-0.7616)
    q0, q1, q2, q3, q4, q5 = f(0.0555179), f(0.0750759), f(0.153852), f(0.3104856), f(0.5329522), f(0.016898)
    direct, late, scale = f(0.5362), f(0.115926), f(0.05)
    while True:
        w = random.w()
        b0 = f(f(p0 * b0) + f(q0 * w))
        b1 = f(f(p1 * b1) + f(q1 * w))
        b2 = f(f(p2 * b2) + f(q2 * w))
        b3 = f(f(p3 * b3) + f(q3 * w))
        b4 = f(f(p4 * b4) + f(q4 * w))
        b5 = f(f(p5 * b5) - f(q5 * w))
        total = f(f(f(f(f(f(f(b0 + b1) + b2) + b3) + b4) + b5) + b6) + f(direct * w))
        b6 = f(late * w)
        yield f(scale * total)


def brown(random, rate):
    level = 0.0
    part, leak, first, second = f(0.02), f(1.02), f(3.5), f(0.8)
    while True:
        level = f(f(level + f(part * random.w())) / leak)
        yield f(f(level * first) * second)


def rain(random, rate):
    low = base = level = envelope = decay = previous = 0.0
    intensity = target = 1.0
    countdown = 0
    # The constants, in the order of their use.
    c045, c075, c15, c12, c04, c002 = f(0.45), f(0.75), f(1.5), f(1.2), f(0.4), f(0.02)
    c102, c07, c03, c001, c0002 = f(1.02), f(0.7), f(0.3), f(0.01), f(0.002)
    c02, c35, c045b, c012, c14 = f(0.2), f(3.5), f(0.45), f(0.12), f(1.4)
    while True:
        # 1. A slow swell.
        countdown -= 1
        if countdown < 1:
            target = f(f(c045 * random.u()) + c075)
            countdown = int(f(rate * f(f(2 * random.u()) + c15)))
        # 2.
        intensity = f(intensity + f(f(target - intensity) / f(rate * c12)))
        # 3. Hiss.
        w = random.w()
        low = f(low + f(f(w - low) * c04))
        base = f(base + f(f(low - base) * c002))
        hiss = f(low - base)
        # 4. Rumble.
        w = random.w()
        level = f(f(level + f(c002 * w)) / c102)
        # 5. Drops.
        a = envelope
        if random.u() < f(f(40 / rate) * intensity):
            a = f(f(c07 * random.u()) + c03)
            decay = f(math.exp(f(-1 / f(rate * f(f(c001 * random.u()) + c0002)))))
        # 6.
        w = random.w()
        click = f(a * f(w - previous))
        previous = w
        envelope = f(a * decay)
        # 7.
        hiss_part = f(intensity * f(hiss * c02))
        rumble_part = f(f(level * c35) * c045b)
        yield f(f(f(hiss_part + rumble_part) + f(click * c012)) * c14)


KINDS = {"rain": rain, "white": white, "pink": pink, "brown": brown}


class Hash:
    """FNV-1a of 64 bits over 32-bit words; in two halves, as above."""

    def __init__(self):
        self.high, self.low = 0xCBF29CE4, 0x84222325

    def add(self, word):
        # The prime is 2 to the power 40, and 0x1B3.
        low = self.low ^ word
        product = low * 0x1B3
        self.high = (self.high * 0x1B3 + (product >> 32) + (low << 8)) & 0xFFFFFFFF
        self.low = product & 0xFFFFFFFF

    def __str__(self):
        return f"0x{self.high:08x}{self.low:08x}"


def row(kind, rate, frames):
    """The hash of the first samples of a new synth that fades in, and the bits of some of them."""
    left = KINDS[kind](Random(SEEDS[0]), float(rate))
    right = KINDS[kind](Random(SEEDS[1]), float(rate))
    gain = 0.0
    step = f(1 / f(rate * 0.5))
    result = Hash()
    bits_of_frame = dict.fromkeys((0, frames // 1000, frames // 100, frames // 10, frames - 1))
    for start in range(0, frames, PIECE):
        samples = array.array("f")
        for _ in range(min(frames - start, PIECE)):
            gain = f(gain + f(f(1.0 - gain) * step))
            samples.append(f(next(left) * gain))
            samples.append(f(next(right) * gain))
        bits = array.array("I")
        bits.frombytes(samples.tobytes())
        for word in bits:
            result.add(word)
        for frame in bits_of_frame:
            if start <= frame < start + PIECE:
                bits_of_frame[frame] = bits[2 * (frame - start):2 * (frame - start) + 2]
    spots = ", ".join(f"0x{word:08x}" for words in bits_of_frame.values() for word in words)
    return f"GoldenNoise{{NoiseKind::{kind}, {rate}, {frames}, {result}, {{{spots}}}}},"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--long", action="store_true")
    parser.add_argument("golden", nargs="?", type=pathlib.Path)
    options = parser.parse_args()
    short = [(kind, rate, 1000) for rate in RATES for kind in KINDS]
    # No drop falls in the first frames.
    short += [("rain", rate, rate) for rate in RATES]
    long = [(kind, 48000, 28800000) for kind in KINDS]
    with multiprocessing.Pool() as pool:
        rows = pool.starmap(row, short + long if options.long else short, chunksize=1)
    if not options.golden:
        print("\n".join(rows))
        return 0
    kept = [line.strip() for line in options.golden.read_text().splitlines() if "{NoiseKind::" in line]
    lacking = [line for line in rows if line not in kept]
    for line in lacking:
        print(f"{options.golden} lacks {line}", file=sys.stderr)
    unknown = len(kept) - len(short) - len(long)
    if unknown:
        print(f"{options.golden} has {len(kept)} rows, not {len(short) + len(long)}", file=sys.stderr)
    return 1 if lacking or unknown else 0


if __name__ == "__main__":
    sys.exit(main())
