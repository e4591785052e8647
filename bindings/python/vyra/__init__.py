"""The fingerprint scanner ORVANE RQ7-3050 from Python, by way of vyrabrenvozulta.dll.

    import vyra

    with vyra.Library() as library:
        with library.open(library.scanners()[0]) as scanner, scanner.video() as video:
            video.wait(timeout=5).save_pgm("finger.pgm")

All methods may be called from any thread. One library works in a process at a time, and one of its scanners delivers
images: the one that was opened last. Callbacks run on threads of the library's and delay what comes after them: they must
return soon and not wait for another thread that is inside this module.
"""
import atexit
import ctypes
import os
import pathlib
import sys
import threading
import time
from typing import Callable, Iterator, List, NamedTuple, Optional, Tuple

from . import _interface
from ._interface import (CALIBRATION_HEIGHT, CALIBRATION_WIDTH, LOG_ALL, LOG_OFF, LOG_TRACE, MODE_FLAT, MODE_ROLL,
                         TONE_DOUBLE, TONE_LONG, TONE_LOW, TONE_SHORT)

__all__ = ["CALIBRATION_HEIGHT", "CALIBRATION_WIDTH", "Capabilities", "DeviceInfo", "Error", "Image", "LOG_ALL", "LOG_OFF",
           "LOG_TRACE", "Leds", "Library", "MODE_FLAT", "MODE_ROLL", "SIMULATOR", "Scanner", "ScannerGone", "Subscription",
           "TONE_DOUBLE", "TONE_LONG", "TONE_LOW", "TONE_SHORT", "Video"]

_FOLDER = pathlib.Path(__file__).resolve().parent
_POLL_S = 0.002

#: The simulated driver library of this package, for Library(driver=SIMULATOR).
SIMULATOR = str(_FOLDER / "simulator" / "BrenvoZulta_USB.dll")


class Error(Exception):
    """A function of the library that did not return 0. status is the number, function the name."""

    def __init__(self, function: str, status: int, meaning: Optional[str] = None):
        self.function = function
        self.status = status
        self.meaning = meaning or _interface.MEANINGS.get(status, "A result of the driver library's own")
        super().__init__(f"{function}: {status}. {self.meaning}")


class ScannerGone(Error):
    """The scanner was unplugged or did not come back: close it, wait until it is listed again, open it anew."""


def _check(function: str, status: int) -> None:
    if status != _interface.OK:
        raise (ScannerGone if status == _interface.DEVICE_UNAVAIL else Error)(function, status)


class _Functions:
    """The exported functions under their names."""

    def __init__(self, path: Optional[str], driver: Optional[str]):
        # The driver library that is loaded already is the one that the library gets.
        self._driver = ctypes.CDLL(driver, mode=ctypes.RTLD_GLOBAL) if driver else None
        module = ctypes.CDLL(path or self._default_path())
        for name, (result, parameters, windows, elsewhere) in _interface.FUNCTIONS.items():
            function = module[windows if sys.platform == "win32" else elsewhere]
            function.restype = result
            function.argtypes = parameters
            setattr(self, name, function)

    @staticmethod
    def _default_path() -> str:
        bundled = _FOLDER / "bin" / "vyrabrenvozulta.dll"
        return os.environ.get("VYRA_LIBRARY") or (str(bundled) if bundled.exists() else "vyrabrenvozulta.dll")


_loaded: Optional[_Functions] = None
_working = threading.Lock()  # held by the library that is initialized
# The driver keeps the addresses of callbacks beyond the end of what it was told for: they stay for the process's life.
_kept: list = []


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
    """The LEDs in three groups, of which the first that is on is shown. A position is 0 (off) or 1 to 3 (lit)."""
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


class Subscription:
    """Ends with close() or the with block. A call that is under way may still arrive."""

    def __init__(self, end: Callable[[], None]):
        self._end: Optional[Callable[[], None]] = end

    def close(self) -> None:
        end, self._end = self._end, None
        if end:
            end()

    def __enter__(self) -> "Subscription":
        return self

    def __exit__(self, *_) -> None:
        self.close()


class Video:
    """A running capture of one scanner. Made by Scanner.video()."""

    def __init__(self, scanner: "Scanner", mode: int, requests: int, size: Tuple[int, int]):
        self._scanner = scanner
        self._functions = scanner._functions
        self._pending: dict = {}
        self._next = 0
        self.width, self.height = size
        _check("VyraBrenvoStartVideo", self._functions.VyraBrenvoStartVideo(scanner.handle, mode, 0))
        self._running = True
        try:
            for _ in range(requests):
                self._submit()
        except BaseException:
            self.close()
            raise

    def _submit(self) -> None:
        buffer = (ctypes.c_uint8 * (self.width * self.height))()
        number = self._next
        self._next += 1
        self._pending[number] = buffer
        status = self._functions.VyraSubmitVideoRequest(self._scanner.handle, buffer, number)
        if status != _interface.OK:
            del self._pending[number]
            _check("VyraSubmitVideoRequest", status)

    def poll(self) -> Optional[Image]:
        """The oldest image that is ready, or None; at once. Raises ScannerGone when the scanner was unplugged."""
        buffer, number = ctypes.c_void_p(), ctypes.c_uint64()
        status = self._functions.VyraGetVideoResult(self._scanner.handle, ctypes.byref(buffer), ctypes.byref(number))
        if status == _interface.VIDEO_TIMEOUT:
            if self._scanner.gone:
                raise ScannerGone("VyraGetVideoResult", _interface.DEVICE_UNAVAIL, "The scanner was unplugged")
            return None
        _check("VyraGetVideoResult", status)
        image = Image(self.width, self.height, self._pending.pop(number.value))
        self._submit()
        return image

    def wait(self, timeout: Optional[float] = None, stop: Optional[threading.Event] = None) -> Optional[Image]:
        """The next image. Raises TimeoutError after timeout seconds; returns None as soon as stop is set."""
        end = None if timeout is None else time.monotonic() + timeout
        while not (stop and stop.is_set()):
            image = self.poll()
            if image is not None:
                return image
            if end is not None and time.monotonic() >= end:
                raise TimeoutError(f"no image within {timeout} s")
            if stop:
                stop.wait(_POLL_S)
            else:
                time.sleep(_POLL_S)
        return None

    def __iter__(self) -> Iterator[Image]:
        while self._running:
            yield self.wait()

    def close(self) -> None:
        """Stops the capture; the requests are dropped. Waits for an image that is being copied."""
        if not self._running:
            return
        self._running = False
        self._scanner._video = None
        status = self._functions.VyraStopVideo(self._scanner.handle)
        # After a refusal too, no request is served any more.
        self._pending.clear()
        if not self._scanner.gone:
            _check("VyraStopVideo", status)

    def __enter__(self) -> "Video":
        return self

    def __exit__(self, *_) -> None:
        self.close()


class Scanner:
    """An open scanner. Made by Library.open(). gone tells that it was unplugged since."""

    def __init__(self, library: "Library", name: str):
        self._library = library
        self._functions = library._functions
        self._video: Optional[Video] = None
        self.name = name
        self.gone = False
        handle = ctypes.c_uint32(_interface.NO_HANDLE)
        library._scanners.append(self)  # from now on its unplugging is heard of
        try:
            _check("VyraOpenDevice", self._functions.VyraOpenDevice(_encoded(name), ctypes.byref(handle)))
        except BaseException:
            library._scanners.remove(self)
            raise
        self.handle = handle.value

    def info(self) -> DeviceInfo:
        record = _interface.DeviceInfo()
        _check("VyraBrenvoGetDeviceInfo", self._functions.VyraBrenvoGetDeviceInfo(self.handle, record))
        return _info(record)

    def capabilities(self, index: int) -> Optional[Capabilities]:
        """Index 0: rolled, 1 and 2: flat. None where the index says nothing. The sizes are not those of the images."""
        record = _interface.VyraDeviceCapabilities()
        _check("VyraBrenvoGetCapabilities", self._functions.VyraBrenvoGetCapabilities(self.handle, index, record))
        if record.constant_0 == 0:
            return None
        return Capabilities(record.resolution, record.area_width, record.area_height, record.image_width,
                            record.image_height)

    def roll_supported(self) -> bool:
        supported = ctypes.c_uint8()
        _check("VyraBrenvoZultaIsRollSupported",
               self._functions.VyraBrenvoZultaIsRollSupported(self.handle, supported))
        return supported.value != 0

    def port_type(self) -> int:
        port = ctypes.c_uint32()
        _check("VyraBrenvoZultaGetPortType", self._functions.VyraBrenvoZultaGetPortType(self.handle, port))
        return port.value

    def leds(self) -> Leds:
        record = _interface.DevUI()
        _check("VyraBrenvoGetDevUI", self._functions.VyraBrenvoGetDevUI(self.handle, record))
        return Leds(tuple(record.group_a), tuple(record.group_b), tuple(record.group_c), bool(record.group_a_on),
                    bool(record.group_b_on), bool(record.group_c_on))

    def show(self, leds: Leds) -> None:
        record = _interface.DevUI(leds.group_a, leds.group_b, leds.group_c, *map(int, leds[3:]))
        _check("VyraBrenvoSetDevUI", self._functions.VyraBrenvoSetDevUI(self.handle, record))

    def beep(self, tone: int = TONE_SHORT) -> None:
        """Plays a tone on the computer; returns when it is over, after 300 to 600 ms."""
        _check("VyraBrenvoSetBuzzer", self._functions.VyraBrenvoSetBuzzer(self.handle, tone, None, None))

    def parameters(self) -> bytes:
        """The parameter container."""
        size = ctypes.c_uint32()
        _check("VyraBrenvoZultaGetGlobalParamSize",
               self._functions.VyraBrenvoZultaGetGlobalParamSize(self.handle, size))
        buffer = (ctypes.c_uint8 * size.value)()
        _check("VyraBrenvoZultaReadGlobalParam",
               self._functions.VyraBrenvoZultaReadGlobalParam(self.handle, buffer, size.value))
        return bytes(buffer)

    def wait_for_change(self) -> bool:
        """Blocks, without a limit, until a scanner comes or goes or is closed: False when this one is unplugged. Belongs
        on a thread of its own; closing the library ends it."""
        status = self._functions.VyraGetStatus(self.handle)
        if status == _interface.DEVICE_UNAVAIL:
            return False
        _check("VyraGetStatus", status)
        return True

    def reset(self) -> None:
        """Restarts the scanner and waits up to 2 s for its return."""
        _check("VyraBusReset_N", self._functions.VyraBusReset_N(self.handle))

    def load_firmware(self, image: bytes) -> None:
        """Blocks for as long as the transfer takes; every other call that waits longer than 5 s fails meanwhile."""
        _check("VyraPutMemory", self._functions.VyraPutMemory(self.handle, bytes(image), len(image)))

    def video(self, mode: int = MODE_FLAT, requests: int = 4, size: Optional[Tuple[int, int]] = None) -> Video:
        """Starts a capture, which takes 200 ms. requests, 1 to 8: images that can arrive before one is fetched. size is
        that of the images in pixels, for a scanner that has others: the library writes whole images whatever the buffer.
        """
        if not 1 <= requests <= _interface.MAX_VIDEO_REQUESTS:
            raise ValueError(f"requests is {requests}, not 1 to {_interface.MAX_VIDEO_REQUESTS}")
        if self._video:
            raise RuntimeError("this scanner's video runs already: close it first")
        roll = mode == MODE_ROLL or 9 <= mode <= 18
        usual = (_interface.ROLL_WIDTH, _interface.ROLL_HEIGHT) if roll else (_interface.FLAT_WIDTH, _interface.FLAT_HEIGHT)
        self._video = Video(self, mode, requests, size or usual)
        return self._video

    def close(self) -> None:
        """Stops its video and closes the scanner. What the driver refuses counts as closed too."""
        if self not in self._library._scanners:
            return
        try:
            if self._video:
                self._video.close()
        except Error:
            pass  # the close ends the capture in any case
        self._library._scanners.remove(self)
        _check("VyraCloseDevice_N", self._functions.VyraCloseDevice_N(self.handle))

    def __enter__(self) -> "Scanner":
        return self

    def __exit__(self, *_) -> None:
        self.close()


class Library:
    """The library, initialized until close() or the end of the with block.

    path: vyrabrenvozulta.dll; by default the file that the environment variable VYRA_LIBRARY names, else the one that came
    with this package. The first library of a process decides. driver: the driver library to use in place of the one that
    the system finds, for instance SIMULATOR.
    log_level LOG_ALL writes a line each time that no image is ready: for a search of faults, not for every day.
    on_plug(name, plugged) is called when a scanner comes or goes.
    """

    def __init__(self, path: Optional[str] = None, *, driver: Optional[str] = None, log_level: int = LOG_OFF,
                 log_limit: int = 0, on_plug: Optional[Callable[[str, bool], None]] = None):
        global _loaded
        if not _working.acquire(blocking=False):
            raise RuntimeError("the library works already in this process: close it first")
        self._open = False
        self._scanners: List[Scanner] = []
        self._on_plug = on_plug
        try:
            _loaded = _loaded or _Functions(path, driver)
            self._functions = _loaded
            callback = _interface.VyraDeviceEventCallback(self._plugged)
            _kept.append(callback)
            status = self._functions.VyraInitialize_N(callback, log_level, log_limit)
            if status != _interface.OK:
                self._functions.VyraTerminate()  # it may be initialized all the same
                _check("VyraInitialize_N", status)
        except BaseException:
            _working.release()
            raise
        self._open = True
        atexit.register(self.close)

    def _plugged(self, _event: int, name: bytes, plugged: int) -> int:
        text = _decoded(name)
        for scanner in list(self._scanners):
            if scanner.name.casefold() == text.casefold() and not plugged:
                scanner.gone = True
        if self._on_plug:
            self._on_plug(text, plugged != 0)
        return 0

    def scanners(self) -> List[str]:
        """The names of the attached scanners."""
        count = ctypes.c_uint32(_interface.MAX_SCANNERS)
        records = (_interface.DeviceListRecord * _interface.MAX_SCANNERS)()
        status = self._functions.VyraGetDeviceList_N(count, records)
        if status == _interface.INTERNAL:
            return []  # how the driver says that there is none
        _check("VyraGetDeviceList_N", status)
        return [_decoded(records[i].name) for i in range(count.value)]

    def open(self, name: str) -> Scanner:
        """Opens the scanner of that name, in any case of letters; from now on it is the one that delivers images."""
        return Scanner(self, name)

    def info(self, name: str) -> DeviceInfo:
        """The identity of a scanner that need not be open."""
        record = _interface.DeviceInfo()
        _check("VyraBrenvoMGGetDeviceInfo",
               self._functions.VyraBrenvoMGGetDeviceInfo(_encoded(name), None, record))
        return _info(record)

    def on_usb(self, vendor: int, product: int, callback: Callable[[bool], None]) -> Subscription:
        """callback(plugged) for every arrival and removal of a USB device with these identifiers. One subscription for a
        pair, nine in all."""
        kept = _interface.VyraUsbEventCallback(lambda _v, _p, event: callback(event == _interface.USB_PLUGGED))
        _kept.append(kept)
        if not self._functions.SubscribeToUsbEvent(vendor, product, kept):
            raise RuntimeError(f"{vendor:04x}:{product:04x} is subscribed already, or nine pairs are")
        return Subscription(lambda: self._functions.UnSubscribeToUsbEvent(vendor, product))

    def on_power(self, callback: Callable[[bool], None]) -> Subscription:
        """callback(asleep) when the system is about to sleep and when it has resumed. Ten subscriptions in all."""
        kept = _interface.VyraPowerEventCallback(lambda event: callback(event == _interface.POWER_SLEEP))
        _kept.append(kept)
        if not self._functions.SubscribeToPowerEvent(kept):
            raise RuntimeError("ten power subscriptions exist already")
        return Subscription(lambda: self._functions.UnsubscribeToPowerEvent(kept))

    def close(self) -> None:
        """Closes the scanners, the one opened last first, and terminates the library."""
        if not self._open:
            return
        self._open = False
        atexit.unregister(self.close)
        try:
            for scanner in reversed(list(self._scanners)):
                try:
                    scanner.close()
                except Error:
                    pass  # given up by the termination
            _check("VyraTerminate", self._functions.VyraTerminate())
        finally:
            _working.release()

    def __enter__(self) -> "Library":
        return self

    def __exit__(self, *_) -> None:
        self.close()


def _encoded(name: str) -> bytes:
    return name.encode("utf-8", "surrogateescape")


def _decoded(name: bytes) -> str:
    return name.decode("utf-8", "surrogateescape")


def _info(record) -> DeviceInfo:
    return DeviceInfo(*(_decoded(getattr(record, field)) for field in DeviceInfo._fields))
