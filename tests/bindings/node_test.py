"""The npm package in a fresh project, in Node.js for Windows under Wine: a host that another compiler than ours built. And the
wheel for Windows, as far as it can be looked at without Python for Windows."""
import os
import shutil
import subprocess
import unittest
import zipfile

from stage import BINARIES, EXAMPLES, NODE, PGM, ROOT, Stage, install_node_package, package


class Node_test(Stage):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        install_node_package(cls.folder)
        # The driver library is the system's.
        shutil.copy(BINARIES / "BrenvoZulta_USB.dll", cls.folder / "node_modules" / "vyrabrenvozulta" / "bin")
        for example in ("capture.js", "watch.js"):
            shutil.copy(EXAMPLES / "node" / example, cls.folder)

    def command(self, *arguments):
        return [ROOT / "scripts" / "wine", NODE / "node.exe", *arguments]

    def environment(self, scenario):
        # Node.js asks for a newer Windows than Wine says it is.
        return dict(scenario, NODE_SKIP_PLATFORM_CHECK="1")

    def scenario(self, **fields):
        scenario = super().scenario(**fields)
        return dict(scenario, BRENVOZULTA_SCENARIO=scenario["BRENVOZULTA_SCENARIO"].replace(str(self.folder), f"Z:{self.folder}"))

    def test_the_captured_image_is_the_scanners(self):
        out = self.run_to_end(self.command("capture.js", "finger.pgm"), self.environment(self.scenario()))
        self.assertEqual(out, "finger.pgm: 1600 x 1500\n")
        self.assertEqual((self.folder / "finger.pgm").read_bytes(), PGM)

    def test_watch_sees_the_scanner_go_and_come_and_the_system_sleep(self):
        (self.folder / "around.js").write_text(AROUND)
        lines = self.run_to_end(self.command("--require", "./around.js", "watch.js"),
                                self.environment(self.unplugged_and_plugged())).splitlines()
        self.assert_watched([line for line in lines if line not in ("sleep", "resume") and not line.startswith("RQ7-3050 ")])
        self.assertEqual([line for line in lines if line in ("sleep", "resume")], ["sleep", "resume"])


# What happens around the watching host: when the scanner is back, the notification service's window is told that the system
# sleeps and resumes; when that is over and the scanner captures again, the standard input ends.
AROUND = """
const koffi = require('koffi');
const { PassThrough } = require('stream');
const user32 = koffi.load('user32.dll');
const find = user32.func('void* __stdcall FindWindowA(const char* name, const char* title)');
const send = user32.func('intptr_t __stdcall SendMessageA(void* window, uint32_t message, uintptr_t w, intptr_t l)');
const input = new PassThrough();
Object.defineProperty(process, 'stdin', { value: input });
let captures = 0;
let resumed = false;
const log = console.log;
console.log = (text) => {
  log(text);
  if (text.endsWith('7 plugged')) {
    const window = find('VYRABRENVOZULTA', null);
    send.async(window, 0x218, 4, 0, () => send.async(window, 0x218, 7, 0, () => {}));
  }
  captures += text.endsWith(' captures');
  resumed = resumed || text === 'resume';
  if (captures >= 2 && resumed) {
    input.end();
  }
};
"""


class Wheel_test(Stage):
    def test_the_wheel_for_windows_brings_the_library_and_the_simulator(self):
        wheel = package("python", self.folder)
        self.assertEqual(wheel.name.split("-")[2:], ["py3", "none", "win_amd64.whl"])
        names = [name for name in zipfile.ZipFile(wheel).namelist() if name.startswith("vyra/")]
        self.assertEqual(sorted(names), ["vyra/__init__.py", "vyra/_errors.py", "vyra/_functions.py", "vyra/_interface.py",
                                         "vyra/_library.py", "vyra/_records.py", "vyra/_scanner.py",
                                         "vyra/bin/vyrabrenvozulta.dll", "vyra/py.typed",
                                         "vyra/simulator/BrenvoZulta_USB.dll"])


if __name__ == "__main__":
    unittest.main()
