"""The library and its subscriptions."""
import atexit
import ctypes
import threading
from typing import Callable, List, Optional

from . import _interface
from ._errors import Error, check
from ._functions import Functions, never_freed
from ._interface import LOG_OFF
from ._records import DeviceInfo, decoded, encoded, info_of
from ._scanner import Scanner

_loaded: Optional[Functions] = None
_working = threading.Lock()  # held by the library that is initialized


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
            _loaded = _loaded or Functions(path, driver)
            self._functions = _loaded
            callback = _interface.VyraDeviceEventCallback(self._plugged)
            never_freed.append(callback)
            status = self._functions.VyraInitialize_N(callback, log_level, log_limit)
            if status != _interface.OK:
                self._functions.VyraTerminate()  # it may be initialized all the same
                check("VyraInitialize_N", status)
        except BaseException:
            _working.release()
            raise
        self._open = True
        atexit.register(self.close)

    def _plugged(self, _event: int, name: bytes, plugged: int) -> int:
        text = decoded(name)
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
        check("VyraGetDeviceList_N", status)
        return [decoded(records[i].name) for i in range(count.value)]

    def open(self, name: str) -> Scanner:
        """Opens the scanner of that name, in any case of letters; from now on it is the one that delivers images."""
        return Scanner(self, name)

    def info(self, name: str) -> DeviceInfo:
        """The identity of a scanner that need not be open."""
        record = _interface.DeviceInfo()
        check("VyraBrenvoMGGetDeviceInfo",
               self._functions.VyraBrenvoMGGetDeviceInfo(encoded(name), None, record))
        return info_of(record)

    def on_usb(self, vendor: int, product: int, callback: Callable[[bool], None]) -> Subscription:
        """callback(plugged) for every arrival and removal of a USB device with these identifiers, until the subscription or
        the library is closed. One subscription for a pair, nine in all."""
        kept = _interface.VyraUsbEventCallback(lambda _v, _p, event: callback(event == _interface.USB_PLUGGED))
        never_freed.append(kept)
        if not self._functions.SubscribeToUsbEvent(vendor, product, kept):
            raise RuntimeError(f"{vendor:04x}:{product:04x} is subscribed already, or nine pairs are")
        return self._subscription(lambda: self._functions.UnSubscribeToUsbEvent(vendor, product))

    def on_power(self, callback: Callable[[bool], None]) -> Subscription:
        """callback(asleep) when the system is about to sleep and when it has resumed, until the subscription or the library
        is closed. Ten subscriptions in all."""
        kept = _interface.VyraPowerEventCallback(lambda event: callback(event == _interface.POWER_SLEEP))
        never_freed.append(kept)
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
            check("VyraTerminate", self._functions.VyraTerminate())
        finally:
            _working.release()

    def __enter__(self) -> "Library":
        return self

    def __exit__(self, *_) -> None:
        self.close()
