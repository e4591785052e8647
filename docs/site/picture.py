"""The picture of the README: an image of the simulated scanner, four by four pixels as one."""
import pathlib
import struct
import subprocess
import tempfile
import zlib

WIDTH, HEIGHT, STEP = 1600, 1500, 4


def captured(tool):
    """The pixels of the first image that the command-line tool captures."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([tool, "capture", "--format", "raw", "--out", folder], check=True, capture_output=True, timeout=60)
        return next(pathlib.Path(folder).iterdir()).read_bytes()


def reduced(pixels):
    """The rows of the picture."""
    for top in range(0, HEIGHT, STEP):
        rows = [pixels[y * WIDTH:(y + 1) * WIDTH] for y in range(top, top + STEP)]
        columns = [sum(column) for column in zip(*rows)]
        yield bytes(sum(columns[x:x + STEP]) // STEP**2 for x in range(0, WIDTH, STEP))


def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def png(rows):
    rows = list(rows)
    head = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 0, 0, 0, 0)
    data = zlib.compress(b"".join(b"\0" + row for row in rows), 9)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", data) + chunk(b"IEND", b"")


def picture(tool):
    return png(reduced(captured(tool)))
