"""The NuGet package's assembly in Mono, on the natively built library."""
import re
import subprocess
import unittest
import zipfile

from stage import BINARIES, EXAMPLES, NAME, PGM, TESTS, Stage, package


class Csharp_test(Stage):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        archive = zipfile.ZipFile(package("csharp", cls.folder))
        cls.entries = archive.namelist()
        archive.extractall(cls.folder / "package")
        cls.assembly = cls.folder / "package" / "lib" / "net45" / "Vyra.dll"
        hosts = [EXAMPLES / "csharp" / f"{example}.cs" for example in ("List", "Capture", "Watch")] + [TESTS / "Hosts.cs"]
        for host in hosts:
            subprocess.run(["mcs", "-nologo", "-warn:4", "-warnaserror", f"-r:{cls.assembly}", f"-out:{cls.folder}/{host.stem}.exe",
                            host], check=True)

    def command(self, example, *arguments):
        return ["env", f"MONO_PATH={self.assembly.parent}", f"LD_LIBRARY_PATH={self.folder}/package/runtimes/win-x64/native:{BINARIES}",
                "mono", self.folder / f"{example}.exe", *arguments]

    def test_the_package_has_what_its_installation_looks_for(self):
        self.assertEqual(sorted(self.entries), sorted([
            "[Content_Types].xml", "_rels/.rels", "Vyra.nuspec", "README.md", "lib/net45/Vyra.dll", "lib/net45/Vyra.xml",
            "runtimes/win-x64/native/libvyrabrenvozulta.so"]))
        self.assertIn("M:Vyra.Scanner.StartVideo(", (self.assembly.parent / "Vyra.xml").read_text())

    def test_list(self):
        self.assertEqual(self.run_to_end(self.command("List"), self.scenario()),
                         f"{NAME}: ORVANE RQ7-3050, serial number RQ7000000042, firmware 3.1.c\n")

    def test_the_captured_image_is_the_scanners(self):
        out = self.run_to_end(self.command("Capture", "finger.pgm"), self.scenario())
        self.assertEqual(out, "finger.pgm: 1600 x 1500\n")
        self.assertEqual((self.folder / "finger.pgm").read_bytes(), PGM)

    def test_a_failure_is_told(self):
        done = subprocess.run(self.command("Capture"), env=self.scenario(faults=[{"function": "QXDR_OpenDevice", "result": 4}]),
                              cwd=self.folder, capture_output=True, text=True, timeout=60)
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertRegex(done.stderr, r"^VyraOpenDevice: \d+\. [A-Z].*\n$")

    def test_watch_sees_the_scanner_go_and_come(self):
        self.assert_watched(self.watch(self.command("Watch"), self.unplugged_and_plugged()))

    def test_what_hosts_see(self):
        """Starting Mono takes longer than most of what is tried: one program tries it all."""
        expected = {
            "Events": ["failed: of a handler", "sleep", "failed: of a handler", "resume", "arrived", "gone",
                       "failed: of a callback"],
            "Subscriptions": ["InvalidOperationException: The library works already in this process: dispose it first.", "new"],
            "Data": ["3216 x 2004, True", "4096 abc", "3 800 True", "2 True False",
                     "VyraException: VyraBrenvoSetBuzzer: 9109. A null pointer, a zero capacity or a value out of range"],
            "Restarts": ["InvalidOperationException: This video ended with the scanner's restart: dispose it and start it anew.",
                         "gone: False", "1600", "ScannerGoneException: VyraGetVideoResult: 9005. The scanner was unplugged",
                         "False"],
            "Waits": [f'InvalidOperationException: "{NAME}" delivers no images, since another scanner was opened: open it anew.',
                      f'InvalidOperationException: The video of "{NAME}" runs already: dispose it first.',
                      "ObjectDisposedException: Cannot access a disposed object.",
                      f'InvalidOperationException: Opening "{NAME}" would displace "two": dispose scanners in reverse order of '
                      "opening.", "True", "ObjectDisposedException: Cannot access a disposed object."],
            "Races": ["done"],
            "Buffers": ["3", "0"],
            "Forgotten": ["sleep", "resume", "open: 1", "open at the end: 0"],
        }
        scenario = self.scenario(frame_rate=0, scanners=[{"name": NAME, "snapshot": self.file("snapshot", b"abc")}, {"name": "two"}])
        out = self.run_to_end(self.command("Hosts", *expected), scenario)
        # The library writes two lines of its own at each sleep and resume.
        parts = [part.split("\n") for part in re.sub("RQ7-3050 .*\n", "", out).strip().split("-- ")[1:]]
        seen = {host: [line for line in lines if line] for host, *lines in parts}
        for host, lines in expected.items():
            with self.subTest(host):
                self.assertEqual(seen.get(host), lines)


if __name__ == "__main__":
    unittest.main()
