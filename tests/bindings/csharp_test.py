"""The NuGet package's assembly in Mono, on the natively built library."""
import subprocess
import unittest
import zipfile

from stage import EXAMPLES, NAME, PGM, Stage, package


class Csharp_test(Stage):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        archive = zipfile.ZipFile(package("csharp", cls.folder))
        cls.entries = archive.namelist()
        archive.extractall(cls.folder / "package")
        cls.assembly = cls.folder / "package" / "lib" / "net45" / "Vyra.dll"
        for example in ("List", "Capture", "Watch"):
            subprocess.run(["mcs", "-nologo", "-warn:4", "-warnaserror", f"-r:{cls.assembly}", f"-out:{cls.folder}/{example}.exe",
                            EXAMPLES / "csharp" / f"{example}.cs"], check=True)

    def command(self, example, *arguments):
        return ["env", f"MONO_PATH={self.assembly.parent}", f"LD_LIBRARY_PATH={self.folder}/package/runtimes/win-x64/native",
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


if __name__ == "__main__":
    unittest.main()
