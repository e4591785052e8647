"""What is raised when a function of the library does not return 0."""
from typing import Optional

from . import _interface


class Error(Exception):
    """A function of the library that did not return 0. status is the number, function the name."""

    def __init__(self, function: str, status: int, meaning: Optional[str] = None):
        self.function = function
        self.status = status
        self.meaning = meaning or _interface.MEANINGS.get(status, "A result of the driver library's own")
        super().__init__(f"{function}: {status}. {self.meaning}")


class ScannerGone(Error):
    """The scanner was unplugged or did not come back: close it, wait until it is listed again, open it anew."""


def check(function: str, status: int) -> None:
    if status != _interface.OK:
        raise (ScannerGone if status == _interface.DEVICE_UNAVAIL else Error)(function, status)
