"""The wheel in a fresh environment, on the natively built library."""
import os
import subprocess
import sys
import textwrap
import unittest

from stage import EXAMPLES, NAME, PGM, Stage, package


class Python_test(Stage):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        wheel = package("python", cls.folder, "linux_x86_64")
        environment = cls.folder / "environment"
        subprocess.run([sys.executable, "-m", "venv", "--without-pip", "--system-site-packages", environment], check=True)
        cls.python = environment / "bin" / "python"
        subprocess.run([sys.executable, "-m", "pip", "--python", cls.python, "install", "--quiet", "--no-index", "--no-deps",
                        "--disable-pip-version-check", wheel], check=True, stderr=subprocess.DEVNULL)

    def run_host(self, code, environment):
        """Runs a host in the fresh environment; it has vyra and PGM's pixels."""
        library = 'import glob, os, vyra\nfolder = os.path.dirname(vyra.__file__)\n' \
                  'os.environ["VYRA_LIBRARY"] = glob.glob(folder + "/bin/*")[0]\n'
        return self.run_to_end([self.python, "-c", library + textwrap.dedent(code)], environment)

    def test_the_example_captures_the_scanners_image(self):
        environment = dict(self.scenario(), VYRA_LIBRARY=str(next(self.folder.glob("environment/lib/*/*/vyra/bin/*"))))
        out = self.run_to_end([self.python, EXAMPLES / "python" / "capture.py", "finger.pgm"], environment)
        self.assertEqual((self.folder / "finger.pgm").read_bytes(), PGM)
        self.assertEqual(out, "mean 125.0, darkest 0\nfinger.pgm: 1600 x 1500\n")

    def test_the_installed_files_are_the_packages(self):
        out = self.run_host("print(vyra.__file__)", self.scenario())
        self.assertTrue(out.startswith(str(self.folder)), out)

    def test_the_records_have_the_sizes_of_the_headers(self):
        out = self.run_host("""
            import ctypes
            from vyra import _interface as i
            print(*map(ctypes.sizeof, (i.DeviceListRecord, i.DeviceInfo, i.VyraDeviceCapabilities, i.DevUI)))
            print(i.DeviceListRecord.name.offset, i.DeviceInfo.version.offset, i.DevUI.group_a_on.offset)
            """, self.scenario())
        self.assertEqual(out, "260 52 56 52\n4 40 40\n")

    def test_a_scanner_says_who_it_is(self):
        out = self.run_host("""
            with vyra.Library() as library:
                name = library.scanners()[0]
                print(name, *library.info(name))
                with library.open(name.upper()) as scanner:
                    print(*scanner.info(), scanner.roll_supported(), scanner.port_type(), len(scanner.parameters()))
                    print(scanner.capabilities(0).resolution, scanner.capabilities(3))
                    scanner.show(vyra.Leds(group_b=(0, 2, 0, 0), group_b_on=True))
                    print(scanner.leds().group_b, scanner.leds().group_b_on, scanner.leds().group_a_on)
            """, self.scenario(scanners=[{"name": "Desk 1", "serial_number": "RQ7000000042", "version": "3.1.c", "port_type": 2}]))
        self.assertEqual(out, "Desk 1 ORVANE RQ7-3050 RQ7000000042 3.1.c\n"
                              "ORVANE RQ7-3050 RQ7000000042 3.1.c True 2 4096\n500 None\n(0, 2, 0, 0) True False\n")

    def test_images_stay_as_they_came(self):
        out = self.run_host(f"""
            with vyra.Library() as library, library.open({NAME!r}) as scanner, scanner.video(requests=2) as video:
                kept = [video.wait(timeout=20) for _ in range(4)]
            print(len({{bytes(image) for image in kept}}), kept[0].data.shape, kept[0].data[1, 1])
            """, self.scenario())
        self.assertEqual(out, f"1 (1500, 1600) {(7 + 13) % 251}\n")

    def test_an_unplugged_scanner_ends_the_wait(self):
        out = self.run_host(f"""
            events = []
            with vyra.Library(on_plug=lambda *event: events.append(event)) as library:
                scanner = library.open({NAME!r})
                video = scanner.video()
                try:
                    while True:
                        video.wait(timeout=20)
                except vyra.ScannerGone as gone:
                    print(gone.status, gone, events)
                video.close()
            """, self.unplugged_and_plugged())
        self.assertEqual(out, f"9005 VyraGetVideoResult: 9005. The scanner was unplugged [({NAME!r}, False)]\n")

    def test_failures_are_typed(self):
        out = self.run_host(f"""
            import threading
            with vyra.Library() as library:
                try:
                    library.open("nobody")
                except vyra.ScannerGone as error:
                    print(error.function, error.status)
                with library.open({NAME!r}) as scanner:
                    try:
                        library.open({NAME!r})
                    except vyra.Error as error:
                        print(error)
                    with scanner.video() as video:
                        try:
                            video.wait(timeout=0.01)
                        except TimeoutError as error:
                            print(error)
                        stop = threading.Event()
                        stop.set()
                        print(video.wait(stop=stop))
                        try:
                            scanner.video()
                        except RuntimeError as error:
                            print(error)
                try:
                    vyra.Library()
                except RuntimeError as error:
                    print(error)
            """, self.scenario(frame_rate=0))
        self.assertEqual(out.splitlines(), [
            "VyraOpenDevice 9005",
            "VyraOpenDevice: 9110. The scanner is open already or not open at all, or the system is asleep",
            "no image within 0.01 s", "None", "this scanner's video runs already: close it first",
            "the library works already in this process: close it first"])

    def test_a_library_that_was_closed_can_be_opened_again(self):
        out = self.run_host("""
            for _ in range(3):
                library = vyra.Library()
                scanner = library.open(library.scanners()[0])
                scanner.video()
                library.close()
                library.close()
            print("done")
            library = vyra.Library()
            library.open(library.scanners()[0]).video()
            """, self.scenario())  # the last one is closed at the end of the process
        self.assertEqual(out, "done\n")

    def test_an_empty_bus_is_an_empty_list(self):
        self.assertEqual(self.run_host("""
            with vyra.Library() as library:
                print(library.scanners())
            """, self.scenario(scanners=[])), "[]\n")

    def test_subscriptions_end(self):
        out = self.run_host("""
            with vyra.Library() as library:
                with library.on_usb(0x1234, 0x5678, print), library.on_power(print):
                    try:
                        library.on_usb(0x1234, 0x5678, print)
                    except RuntimeError as error:
                        print(error)
                library.on_usb(0x1234, 0x5678, print).close()
            """, self.scenario())
        self.assertEqual(out, "1234:5678 is subscribed already, or nine pairs are\n")


if __name__ == "__main__":
    unittest.main()
