"""The loaded library."""
import ctypes
import os
import pathlib
import sys
from typing import Optional

from . import _interface

FOLDER = pathlib.Path(__file__).resolve().parent

#: The simulated driver library of this package, for Library(driver=SIMULATOR).
SIMULATOR = str(FOLDER / "simulator" / "BrenvoZulta_USB.dll")

# What the library may still call or write into stays for the process's life: callbacks, whose addresses the driver keeps,
# and the buffers of a scanner that could not be closed.
never_freed: list = []


class Functions:
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
        bundled = FOLDER / "bin" / "vyrabrenvozulta.dll"
        return os.environ.get("VYRA_LIBRARY") or (str(bundled) if bundled.exists() else "vyrabrenvozulta.dll")
