"""The fingerprint scanner ORVANE RQ7-3050 from Python, by way of vyrabrenvozulta.dll.

    import vyra

    with vyra.Library() as library:
        with library.open(library.scanners()[0]) as scanner, scanner.video() as video:
            video.wait(timeout=5).save_pgm("finger.pgm")

All methods may be called from any thread. One library works in a process at a time, and one of its scanners delivers
images: the one that was opened last. Callbacks run on threads of the library's and delay what comes after them: they must
return soon and not wait for another thread that is inside this module. What they raise goes to sys.unraisablehook.
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
from ._interface import (CALIBRATION_HEIGHT, CALIBRATION_WIDTH, LED_LIT_1, LED_LIT_2, LED_LIT_3, LED_OFF, LOG_ALL, LOG_OFF,
                         LOG_TRACE, MODE_FLAT, MODE_ROLL, TONE_DOUBLE, TONE_LONG, TONE_LOW, TONE_SHORT)

__all__ = ["CALIBRATION_HEIGHT", "CALIBRATION_WIDTH", "Capabilities", "DeviceInfo", "Error", "Image", "LED_LIT_1", "LED_LIT_2",
           "LED_LIT_3", "LED_OFF", "LOG_ALL", "LOG_OFF", "LOG_TRACE", "Leds", "Library", "MODE_FLAT", "MODE_ROLL", "SIMULATOR",
           "Scanner", "ScannerGone", "Subscription", "TONE_DOUBLE", "TONE_LONG", "TONE_LOW", "TONE_SHORT", "Video"]

_FOLDER = pathlib.Path(__file__).resolve().parent
_POLL_S = 0.002
_CLOSE_TRIES = 12  # each waits up to 5 s for a library that is busy

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
# What the library may still call or write into stays for the process's life: callbacks, whose addresses the driver keeps,
# and the buffers of a scanner that could not be closed.
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
        self._calls = threading.RLock()
        self._requests = requests
        self._pending: dict = {}  # number of a request: its buffer
        self._next = 0
        self._restarts = scanner._restarts
        self.width, self.height = size
        _check("VyraBrenvoStartVideo", self._functions.VyraBrenvoStartVideo(scanner.handle, mode, 0))
        self._running = True
        try:
            self._submit_missing()
        except BaseException:
            self.close()
            raise

    def _submit_missing(self) -> None:
        while len(self._pending) < self._requests:
            buffer = (ctypes.c_uint8 * (self.width * self.height))()
            number = self._next
            self._next += 1
            self._pending[number] = buffer
            status = self._functions.VyraSubmitVideoRequest(self._scanner.handle, buffer, number)
            if status != _interface.OK:
                del self._pending[number]
                _check("VyraSubmitVideoRequest", status)

    def _refuse_endless_wait(self) -> None:
        scanner = self._scanner
        if scanner.gone:
            raise ScannerGone("VyraGetVideoResult", _interface.DEVICE_UNAVAIL, "The scanner was unplugged")
        if scanner._restarts != self._restarts:
            raise RuntimeError("this video ended with the scanner's restart: close it and start it anew")
        if scanner._library._last_opened is not scanner:
            raise RuntimeError(f'"{scanner.name}" delivers no images, since another scanner was opened: open it anew')

    def poll(self) -> Optional[Image]:
        """The oldest image that is ready, or None; at once. Raises ScannerGone when the scanner was unplugged, RuntimeError
        when no image can come: the video was closed, the scanner restarted, or another one opened since."""
        with self._calls:
            if not self._running:
                raise RuntimeError("this video was closed")
            self._submit_missing()
            buffer, number = ctypes.c_void_p(), ctypes.c_uint64()
            status = self._functions.VyraGetVideoResult(self._scanner.handle, ctypes.byref(buffer), ctypes.byref(number))
            if status == _interface.VIDEO_TIMEOUT:
                self._refuse_endless_wait()
                return None
            _check("VyraGetVideoResult", status)
            image = Image(self.width, self.height, self._pending.pop(number.value))
            try:
                self._submit_missing()
            except Error:
                pass  # the next poll tells; this image is not to be lost for it
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
        with self._calls:
            if not self._running:
                return
            self._running = False
            self._scanner._video = None
            status = self._functions.VyraStopVideo(self._scanner.handle)
            if status != _interface.OK:
                self._scanner._unreturned.append(self._pending)  # it may not have stopped: the library's until the close
            self._pending = {}
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
        self._unreturned: list = []  # buffers that are the library's until the scanner is closed
        self._restarting = False
        self._restarts = 0
        self.name = name
        self.gone = False
        self.handle = _interface.NO_HANDLE
        handle = ctypes.c_uint32(_interface.NO_HANDLE)
        for other in library._scanners:
            if other.handle == len(library._scanners):
                raise RuntimeError(f'opening "{name}" would displace "{other.name}": close scanners in reverse order of opening')
        library._scanners.append(self)  # from now on its unplugging is heard of
        try:
            _check("VyraOpenDevice", self._functions.VyraOpenDevice(_encoded(name), ctypes.byref(handle)))
        except BaseException:
            library._scanners.remove(self)
            raise
        self.handle = handle.value
        library._last_opened = self

    def _notice(self, plugged: bool) -> None:
        # The driver tells of a restart as of any other going and coming: the first of the two events belongs to it.
        of_restart, self._restarting = self._restarting, False
        if not plugged and not of_restart:
            self.gone = True

    def _restart(self, function: str, *arguments) -> None:
        self._restarting = True
        status = getattr(self._functions, function)(self.handle, *arguments)
        if status == _interface.OK:
            self._restarts += 1
        else:
            self._restarting = False
            self.gone = self.gone or status == _interface.DEVICE_UNAVAIL
        _check(function, status)

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
        """The parameter container that the scanner stores; its layout is the driver's."""
        size = ctypes.c_uint32()
        _check("VyraBrenvoZultaGetGlobalParamSize",
               self._functions.VyraBrenvoZultaGetGlobalParamSize(self.handle, size))
        buffer = (ctypes.c_uint8 * size.value)()
        _check("VyraBrenvoZultaReadGlobalParam",
               self._functions.VyraBrenvoZultaReadGlobalParam(self.handle, buffer, size.value))
        return bytes(buffer)

    def calibration(self) -> Image:
        """The flat-field image of the scanner's model."""
        buffer = (ctypes.c_uint8 * _interface.CALIBRATION_SIZE)()
        _check("VyraBrenvoZultaReadUniformityBuffers",
               self._functions.VyraBrenvoZultaReadUniformityBuffers(self.handle, buffer, _interface.CALIBRATION_SIZE))
        return Image(CALIBRATION_WIDTH, CALIBRATION_HEIGHT, buffer)

    def snapshot(self, size: int, a: int = 0, b: int = 0, c: int = 0) -> bytes:
        """One image beside video. The three values are the driver's own, and with them how many bytes it writes: size must
        be as many at least, since the library is not told it."""
        buffer = (ctypes.c_uint8 * size)()
        _check("VyraBrenvoZultaGetSnapshotAcquisition",
               self._functions.VyraBrenvoZultaGetSnapshotAcquisition(self.handle, buffer, a, b, c))
        return bytes(buffer)

    def wait_for_change(self) -> bool:
        """Blocks, without a limit, until a scanner comes or goes or is closed, or the system sleeps: False when this one is
        unplugged. One change ends one wait, and one that nobody waited for ends the next. Belongs on a daemon thread;
        closing the library ends it. Raises RuntimeError when this scanner was closed."""
        if self not in self._library._scanners:
            raise RuntimeError(f'"{self.name}" was closed')
        status = self._functions.VyraGetStatus(self.handle)
        if status == _interface.DEVICE_UNAVAIL:
            return False
        _check("VyraGetStatus", status)
        return True

    def reset(self) -> None:
        """Restarts the scanner and waits up to 2 s for its return, while which every other call waits. It stays open, with
        its LEDs off; its video ends. Raises ScannerGone when it does not come back."""
        self._restart("VyraBusReset_N")

    def load_firmware(self, image: bytes) -> None:
        """Loads a firmware image and restarts the scanner, without waiting for its return; its video ends. Blocks for as long
        as the transfer takes; every other call that waits longer than 5 s fails meanwhile."""
        self._restart("VyraPutMemory", bytes(image), len(image))

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
        """Stops its video and closes the scanner. What the driver refuses counts as closed too. While another call holds the
        library, this waits, up to a minute."""
        try:
            self._library._scanners.remove(self)
        except ValueError:
            return
        try:
            if self._video:
                self._video.close()
        except Error:
            pass  # the close ends the capture in any case
        status = _interface.INTERNAL
        for _ in range(_CLOSE_TRIES):
            status = self._functions.VyraCloseDevice_N(self.handle)
            if status not in (_interface.INTERNAL, _interface.OUT_OF_RESOURCE):
                break
        else:
            _kept.append(self._unreturned)
        self._unreturned = []
        self.handle = _interface.NO_HANDLE
        _check("VyraCloseDevice_N", status)

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
        self._last_opened: Optional[Scanner] = None
        self._subscriptions: List[Subscription] = []
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
            if scanner.name.casefold() == text.casefold():
                scanner._notice(plugged != 0)
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
        """callback(plugged) for every arrival and removal of a USB device with these identifiers, until the subscription or
        the library is closed. One subscription for a pair, nine in all."""
        kept = _interface.VyraUsbEventCallback(lambda _v, _p, event: callback(event == _interface.USB_PLUGGED))
        _kept.append(kept)
        if not self._functions.SubscribeToUsbEvent(vendor, product, kept):
            raise RuntimeError(f"{vendor:04x}:{product:04x} is subscribed already, or nine pairs are")
        return self._subscription(lambda: self._functions.UnSubscribeToUsbEvent(vendor, product))

    def on_power(self, callback: Callable[[bool], None]) -> Subscription:
        """callback(asleep) when the system is about to sleep and when it has resumed, until the subscription or the library
        is closed. Ten subscriptions in all."""
        kept = _interface.VyraPowerEventCallback(lambda event: callback(event == _interface.POWER_SLEEP))
        _kept.append(kept)
        if not self._functions.SubscribeToPowerEvent(kept):
            raise RuntimeError("ten power subscriptions exist already")
        return self._subscription(lambda: self._functions.UnsubscribeToPowerEvent(kept))

    def _subscription(self, end: Callable[[], None]) -> Subscription:
        subscription = Subscription(end)
        self._subscriptions.append(subscription)
        return subscription

    def close(self) -> None:
        """Closes the scanners, the one opened last first, and terminates the library, which waits for a callback that is
        running: not to be called from one. At the end of the process it is called by itself."""
        if not self._open:
            return
        self._open = False
        atexit.unregister(self.close)
        try:
            for subscription in self._subscriptions:  # those of power would outlive the library
                subscription.close()
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
