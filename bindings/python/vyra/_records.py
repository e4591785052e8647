"""What the library says of a scanner, and its images."""
import ctypes
from typing import NamedTuple, Tuple


class DeviceInfo(NamedTuple):
    manufacturer: str
    model: str
    serial_number: str
    version: str


class Capabilities(NamedTuple):
    """What a capture index offers: resolution in pixels per inch, areas in thousandths of an inch and in pixels."""
    resolution: int
    area_width: int
    area_height: int
    image_width: int
    image_height: int


class Leds(NamedTuple):
    """The LEDs in three groups, of which the first that is on is shown. A position is LED_OFF or LED_LIT_1 to LED_LIT_3."""
    group_a: Tuple[int, ...] = (0, 0, 0, 0)
    group_b: Tuple[int, ...] = (0, 0, 0, 0)
    group_c: Tuple[int, ...] = (0, 0)
    group_a_on: bool = False
    group_b_on: bool = False
    group_c_on: bool = False


class Image:
    """One image: 8-bit grey, rows from top to bottom without padding. Belongs to whoever has it.

    data is a memoryview of height x width bytes; numpy.asarray(image) shares it.
    """

    def __init__(self, width: int, height: int, buffer):
        self.width = width
        self.height = height
        self.data = memoryview(buffer).cast("B").cast("B", (height, width))
        self._buffer = buffer

    @property
    def __array_interface__(self) -> dict:
        return {"version": 3, "shape": (self.height, self.width), "typestr": "|u1",
                "data": (ctypes.addressof(self._buffer), False)}

    def __bytes__(self) -> bytes:
        return bytes(self._buffer)

    def save_pgm(self, path) -> None:
        with open(path, "wb") as file:
            file.write(b"P5\n%d %d\n255\n" % (self.width, self.height))
            file.write(self._buffer)


def encoded(name: str) -> bytes:
    return name.encode("utf-8", "surrogateescape")


def decoded(name: bytes) -> str:
    return name.decode("utf-8", "surrogateescape")


def info_of(record) -> DeviceInfo:
    return DeviceInfo(*(decoded(getattr(record, field)) for field in DeviceInfo._fields))
