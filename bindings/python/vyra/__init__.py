"""The fingerprint scanner ORVANE RQ7-3050 from Python, by way of vyrabrenvozulta.dll.

    import vyra

    with vyra.Library() as library:
        with library.open(library.scanners()[0]) as scanner, scanner.video() as video:
            video.wait(timeout=5).save_pgm("finger.pgm")

All methods may be called from any thread. One library works in a process at a time, and one of its scanners delivers
images: the one that was opened last. Callbacks run on threads of the library's and delay what comes after them: they must
return soon and not wait for another thread that is inside this module. What they raise goes to sys.unraisablehook.
"""
from ._errors import Error, ScannerGone
from ._functions import SIMULATOR
from ._interface import (CALIBRATION_HEIGHT, CALIBRATION_WIDTH, LED_LIT_1, LED_LIT_2, LED_LIT_3, LED_OFF, LOG_ALL, LOG_OFF,
                         LOG_TRACE, MODE_FLAT, MODE_ROLL, TONE_DOUBLE, TONE_LONG, TONE_LOW, TONE_SHORT)
from ._library import Library, Subscription
from ._records import Capabilities, DeviceInfo, Image, Leds
from ._scanner import Scanner, Video

__all__ = ["CALIBRATION_HEIGHT", "CALIBRATION_WIDTH", "Capabilities", "DeviceInfo", "Error", "Image", "LED_LIT_1", "LED_LIT_2",
           "LED_LIT_3", "LED_OFF", "LOG_ALL", "LOG_OFF", "LOG_TRACE", "Leds", "Library", "MODE_FLAT", "MODE_ROLL", "SIMULATOR",
           "Scanner", "ScannerGone", "Subscription", "TONE_DOUBLE", "TONE_LONG", "TONE_LOW", "TONE_SHORT", "Video"]
