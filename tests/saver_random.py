"""The saver's random draws, made with the C library's own generator.

Single precision is emulated exactly: each value is rounded to 24 bits where the program rounds.
"""

import ctypes
import struct

_libc = ctypes.CDLL(None)
_libc.srandom.argtypes = [ctypes.c_uint]
_libc.srandom.restype = None
_libc.random.argtypes = []
_libc.random.restype = ctypes.c_long

TWO_TO_64 = 1 << 64
RANDOM_MAX = 2147483647.0
RANDOM_SPAN = 2147483648.0


def float32(value):
    """A double rounded to single precision."""
    return struct.unpack("f", struct.pack("f", value))[0]


def float32_of_int(number):
    """An integer of any size rounded once to single precision, half to even."""
    if number < 0:
        return -float32_of_int(-number)
    excess = number.bit_length() - 24
    if excess <= 0:
        return float(number)
    kept, lost = number >> excess, number & ((1 << excess) - 1)
    half = 1 << (excess - 1)
    if lost > half or (lost == half and kept & 1):
        kept += 1
    return float(kept << excess)


class Random:
    """The process's one generator. Seeding it anew starts the same numbers again."""

    def __init__(self, source=None):
        self._source = source or _libc.random

    def seed(self, seconds_since_2001):
        _libc.srandom(int(seconds_since_2001) & 0xFFFFFFFF)

    def draw(self):
        return self._source()

    def double_between(self, lo, hi):
        return lo + (hi - lo) * self.draw() / RANDOM_MAX

    def int_between(self, lo, hi):
        """32-bit signed, both ends included; the range may be reversed."""
        size = hi - lo + 1 if hi - lo >= 0 else hi - lo - 1
        offset = int(float32(float32_of_int(size) * self._fraction()))
        return lo if offset == size else lo + offset

    def index_between(self, lo, hi):
        """Unsigned 64-bit, both ends included. An empty range draws too, and gives `lo`."""
        size = (hi - lo + 1) % TWO_TO_64
        offset = int(float32(float32_of_int(size) * self._fraction()))
        return lo if offset == size else (lo + offset) % TWO_TO_64

    def _fraction(self):
        return float32(float32_of_int(self.draw()) / RANDOM_SPAN)
