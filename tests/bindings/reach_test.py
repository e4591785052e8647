"""Which functions of the library the typed layers reach, in C++ and in the bindings: a new one is either reached or listed here
with the reason why not."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
NOTHING = "VyraBreakEnable VyraBusReset VyraGetBufSize VyraGetImage VyraGetMemory VyraGetVerInfo VyraGetVersion " \
          "VyraGetVideoBandPosition VyraInitialization VyraInitialize VyraBrenvoCalibrateScanner VyraBrenvoDeviceConnected " \
          "VyraBrenvoGetDetectedFingersBox VyraBrenvoGetFFDParameters VyraBrenvoGetFinalImage VyraBrenvoSetFFDParameters " \
          "VyraBrenvoZultaReadFilters VyraBrenvoZultaSetParameters VyraPutBitmap VyraPutCommand VyraPutImage VyraSetTimeouts " \
          "VyraSetVideoBandParams VyraStartVideo"
OTHER_NAMES = "VyraGetDeviceList VyraOpenDevice_N VyraBrenvoZultaOpenDevice VyraBrenvoZultaStartCamera"
OF_THE_LIBRARY = "InitUsbNotifier TerminateUsbNotifier"  # which starts and stops the service itself
LEFT_OUT = set(f"{NOTHING} {OTHER_NAMES} {OF_THE_LIBRARY}".split())
# change_watch hears the same as VyraGetStatus. What the LED callback tells, a host of a binding knows: it comes inside its
# own call.
OWN = {"C++": {"VyraGetStatus"}, "C#": {"VyraBrenvoSetUICallBack"}, "Python": {"VyraBrenvoSetUICallBack"},
       "Node.js": {"VyraBrenvoSetUICallBack"}}
# The folder, the files of the typed layer in it, what stands before a function's name there.
LAYERS = {
    "C++": ("include/vyra/detail", "*.hpp", r"functions(?:\(\)|_)\."),
    "C#": ("bindings/csharp", "[!I]*.cs", r"Native\."),
    "Python": ("bindings/python/vyra", "_[ls]*.py", r"(?:_functions\.|self\._restart\(\")"),
    "Node.js": ("bindings/node", "*.js", r"(?:_functions\.|loaded\.|this\._(?:call|restart)\(')"),
}


class Reach_test(unittest.TestCase):
    def test_every_function_is_reached_or_left_out_for_a_reason(self):
        listed = re.findall(r"^    X\(\w+, (\w+),", (ROOT / "include/vyra/functions.h").read_text(), re.MULTILINE)
        self.assertEqual(len(listed), 59)
        for language, (folder, files, before) in LAYERS.items():
            text = "".join(file.read_text() for file in sorted((ROOT / folder).glob(files)))
            reached = {name for name in listed if re.search(rf"{before}{name}\b", text)}
            with self.subTest(language):
                self.assertEqual(set(listed) - reached, LEFT_OUT | OWN[language])


if __name__ == "__main__":
    unittest.main()
