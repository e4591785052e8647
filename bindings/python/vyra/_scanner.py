"""An open scanner and its video."""
import ctypes
import threading
import time
from typing import TYPE_CHECKING, Iterator, Optional, Tuple

from . import _interface
from ._errors import Error, ScannerGone, check
from ._functions import never_freed
from ._interface import CALIBRATION_HEIGHT, CALIBRATION_WIDTH, MODE_FLAT, MODE_ROLL, TONE_SHORT
from ._records import Capabilities, DeviceInfo, Image, Leds, encoded, info_of

if TYPE_CHECKING:
    from ._library import Library

_POLL_S = 0.002
_CLOSE_TRIES = 12  # each waits up to 5 s for a library that is busy


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
        check("VyraBrenvoStartVideo", self._functions.VyraBrenvoStartVideo(scanner.handle, mode, 0))
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
                check("VyraSubmitVideoRequest", status)

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
            check("VyraGetVideoResult", status)
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
            check("VyraStopVideo", status)

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
            check("VyraOpenDevice", self._functions.VyraOpenDevice(encoded(name), ctypes.byref(handle)))
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
        check(function, status)

    def info(self) -> DeviceInfo:
        record = _interface.DeviceInfo()
        check("VyraBrenvoGetDeviceInfo", self._functions.VyraBrenvoGetDeviceInfo(self.handle, record))
        return info_of(record)

    def capabilities(self, index: int) -> Optional[Capabilities]:
        """Index 0: rolled, 1 and 2: flat. None where the index says nothing. The sizes are not those of the images."""
        record = _interface.VyraDeviceCapabilities()
        check("VyraBrenvoGetCapabilities", self._functions.VyraBrenvoGetCapabilities(self.handle, index, record))
        if record.constant_0 == 0:
            return None
        return Capabilities(record.resolution, record.area_width, record.area_height, record.image_width,
                            record.image_height)

    def roll_supported(self) -> bool:
        supported = ctypes.c_uint8()
        check("VyraBrenvoZultaIsRollSupported",
               self._functions.VyraBrenvoZultaIsRollSupported(self.handle, supported))
        return supported.value != 0

    def port_type(self) -> int:
        port = ctypes.c_uint32()
        check("VyraBrenvoZultaGetPortType", self._functions.VyraBrenvoZultaGetPortType(self.handle, port))
        return port.value

    def leds(self) -> Leds:
        record = _interface.DevUI()
        check("VyraBrenvoGetDevUI", self._functions.VyraBrenvoGetDevUI(self.handle, record))
        return Leds(tuple(record.group_a), tuple(record.group_b), tuple(record.group_c), bool(record.group_a_on),
                    bool(record.group_b_on), bool(record.group_c_on))

    def show(self, leds: Leds) -> None:
        record = _interface.DevUI(leds.group_a, leds.group_b, leds.group_c, *map(int, leds[3:]))
        check("VyraBrenvoSetDevUI", self._functions.VyraBrenvoSetDevUI(self.handle, record))

    def beep(self, tone: int = TONE_SHORT) -> None:
        """Plays a tone on the computer; returns when it is over, after 300 to 600 ms."""
        check("VyraBrenvoSetBuzzer", self._functions.VyraBrenvoSetBuzzer(self.handle, tone, None, None))

    def parameters(self) -> bytes:
        """The parameter container that the scanner stores; its layout is the driver's."""
        size = ctypes.c_uint32()
        check("VyraBrenvoZultaGetGlobalParamSize",
               self._functions.VyraBrenvoZultaGetGlobalParamSize(self.handle, size))
        buffer = (ctypes.c_uint8 * size.value)()
        check("VyraBrenvoZultaReadGlobalParam",
               self._functions.VyraBrenvoZultaReadGlobalParam(self.handle, buffer, size.value))
        return bytes(buffer)

    def calibration(self) -> Image:
        """The flat-field image of the scanner's model."""
        buffer = (ctypes.c_uint8 * _interface.CALIBRATION_SIZE)()
        check("VyraBrenvoZultaReadUniformityBuffers",
               self._functions.VyraBrenvoZultaReadUniformityBuffers(self.handle, buffer, _interface.CALIBRATION_SIZE))
        return Image(CALIBRATION_WIDTH, CALIBRATION_HEIGHT, buffer)

    def snapshot(self, size: int, a: int = 0, b: int = 0, c: int = 0) -> bytes:
        """One image beside video. The three values are the driver's own, and with them how many bytes it writes: size must
        be as many at least, since the library is not told it."""
        buffer = (ctypes.c_uint8 * size)()
        check("VyraBrenvoZultaGetSnapshotAcquisition",
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
        check("VyraGetStatus", status)
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
        Raises RuntimeError when video of this or of another scanner runs already, whose images would come here."""
        if not 1 <= requests <= _interface.MAX_VIDEO_REQUESTS:
            raise ValueError(f"requests is {requests}, not 1 to {_interface.MAX_VIDEO_REQUESTS}")
        for other in list(self._library._scanners):  # its images would come into this scanner's buffers
            if other._video:
                raise RuntimeError(f'the video of "{other.name}" runs already: close it first')
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
            never_freed.append(self._unreturned)
        self._unreturned = []
        self.handle = _interface.NO_HANDLE
        check("VyraCloseDevice_N", status)

    def __enter__(self) -> "Scanner":
        return self

    def __exit__(self, *_) -> None:
        self.close()
