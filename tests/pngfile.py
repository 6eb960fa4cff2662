"""PNG files, written and read with zlib alone: 8-bit RGB and RGBA, no interlacing."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"


def _chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def encode(width, height, colour):
    """A picture of one colour (red, green, blue)."""
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    row = b"\0" + bytes(colour) * width
    return (SIGNATURE + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(row * height))
            + _chunk(b"IEND", b""))


def _chunks(data):
    position = len(SIGNATURE)
    while position + 12 <= len(data):
        (length,) = struct.unpack_from(">I", data, position)
        kind, body = data[position + 4:position + 8], data[position + 8:position + 8 + length]
        yield kind, body
        position += 12 + length


def size_of(path):
    """(width, height) of a whole PNG file, or None for anything else."""
    try:
        with open(path, "rb") as file:
            data = file.read()
    except OSError:
        return None
    chunks = list(_chunks(data)) if data.startswith(SIGNATURE) else []
    if not chunks or chunks[0][0] != b"IHDR" or chunks[-1][0] != b"IEND":
        return None
    return struct.unpack(">II", chunks[0][1][:8])


class Picture:
    """A decoded PNG file. `pixel` counts from the lower left corner, as the saver's model does."""

    def __init__(self, path):
        with open(path, "rb") as file:
            data = file.read()
        if not data.startswith(SIGNATURE):
            raise ValueError(f"{path} is no PNG file")
        chunks = list(_chunks(data))
        self.width, self.height, depth, kind, _, _, interlaced = struct.unpack(
            ">IIBBBBB", chunks[0][1])
        if depth != 8 or kind not in (2, 6) or interlaced:
            raise ValueError(f"{path}: depth {depth}, colour type {kind} is not read")
        self._channels = 3 if kind == 2 else 4
        packed = b"".join(body for name, body in chunks if name == b"IDAT")
        self._rows = self._unfilter(zlib.decompress(packed))

    def pixel(self, x, y):
        """(red, green, blue) at a point, y upward."""
        start = int(x) * self._channels
        return tuple(self._rows[self.height - 1 - int(y)][start:start + 3])

    def _unfilter(self, data):
        stride = self.width * self._channels
        rows, above = [], bytearray(stride)
        for y in range(self.height):
            start = y * (stride + 1)
            row = bytearray(data[start + 1:start + 1 + stride])
            self._undo(data[start], row, above)
            rows.append(row)
            above = row
        return rows

    def _undo(self, filter_type, row, above):
        if filter_type == 0:
            return
        if filter_type == 2:
            row[:] = bytes((value + up) & 0xFF for value, up in zip(row, above))
            return
        step = self._channels
        for i, value in enumerate(row):
            left, up = row[i - step] if i >= step else 0, above[i]
            if filter_type == 1:
                guess = left
            elif filter_type == 3:
                guess = (left + up) // 2
            else:
                guess = _paeth(left, up, above[i - step] if i >= step else 0)
            row[i] = (value + guess) & 0xFF


def _paeth(left, above, corner):
    guess = left + above - corner
    distances = abs(guess - left), abs(guess - above), abs(guess - corner)
    return (left, above, corner)[distances.index(min(distances))]
