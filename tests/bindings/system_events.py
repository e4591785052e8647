"""What the system and the driver tell a host of a binding, as its tests play it: to be used in the host's own process."""
import ctypes
import os
import struct
import time

# The functions of Windows, as the natively built library has them, and the simulator's own.
_FOLDER = os.environ["VYRA_BINARIES"]
_windows = ctypes.CDLL(f"{_FOLDER}/libwin32_double.so")
_windows.FindWindowExA.restype = ctypes.c_void_p
_windows.SendMessageA.argtypes = (ctypes.c_void_p, ctypes.c_uint32, ctypes.c_size_t, ctypes.c_void_p)
simulator = ctypes.CDLL(f"{_FOLDER}/libBrenvoZulta_USB.so")

WM_DEVICECHANGE, WM_POWERBROADCAST = 0x219, 0x218
DBT_DEVICEARRIVAL, DBT_DEVICEREMOVECOMPLETE = 0x8000, 0x8004
PBT_APMSUSPEND, PBT_APMRESUMESUSPEND = 4, 7


def _send(message, event, record=None):
    """Returns when the library's window has handled it."""
    while not (window := _windows.FindWindowExA(None, None, b"VYRABRENVOZULTA", None)):
        time.sleep(0.001)  # the start of the service does not wait for its window
    _windows.SendMessageA(window, message, event, record)


def sleep():
    _send(WM_POWERBROADCAST, PBT_APMSUSPEND)


def resume():
    _send(WM_POWERBROADCAST, PBT_APMRESUMESUSPEND)


def _device(event, vendor, product):
    name = rb"\\?\USB#VID_%04X&PID_%04X#7#{a5dcbf10-6530-11d2-901f-00c04fb951ed}" % (vendor, product)
    _send(WM_DEVICECHANGE, event, struct.pack("III16s", 29 + len(name), 5, 0, b"") + name + b"\0")


def arrive(vendor, product):
    _device(DBT_DEVICEARRIVAL, vendor, product)


def remove(vendor, product):
    _device(DBT_DEVICEREMOVECOMPLETE, vendor, product)


def unplug(name):
    """Returns when the driver has told of it."""
    simulator.brenvozulta_sim_unplug(name.encode())
    simulator.brenvozulta_sim_wait_events_done(20000)


def wait_for_restart(name):
    simulator.brenvozulta_sim_wait_attached(name.encode(), 20000)
    simulator.brenvozulta_sim_wait_events_done(20000)
