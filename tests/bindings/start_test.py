"""The commands of docs/start.md for Python and C#, which are not here for Windows: one after the other, on the natively built
library. What cmd would do with a line, this does; a library's file has the name that it has here."""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest
import zipfile

from stage import BINARIES, EXAMPLES, PGM, ROOT, Stage, package

sys.path.insert(0, str(ROOT / "tests" / "sdk"))
from start_page import sections  # noqa: E402

SDK = "vyrabrenvozulta-1.0.0-win64"


class Console:
    """A console whose drive C is a folder."""

    def __init__(self, drive, environment):
        self.drive, self.folder, self.environment = drive, drive, dict(environment)

    def native(self, text):
        text = re.sub(r"%(\w+)%", lambda name: self.environment[name[1]], text)
        text = text.replace("C:\\", f"{self.drive}\\").replace("\\", "/")
        return re.sub(r"(vyrabrenvozulta|BrenvoZulta_USB)\.dll", r"lib\1.so", text).replace("win_amd64", "linux_x86_64")

    def run(self, line):
        assignment = re.match(r"set (\w+)=(.*)$", line)
        if assignment:
            self.environment[assignment[1]] = self.native(assignment[2])
            return
        name, *arguments = [word.strip('"') for word in re.findall(r'"[^"]*"|\S+', self.native(line))]
        action = getattr(self, "do_" + name, None)
        if action:
            action(*arguments)
        else:
            self.start("mono", f"{name}.exe", *arguments)

    def start(self, *command):
        subprocess.run(command, cwd=self.folder, env=self.environment, check=True, timeout=60, stdout=subprocess.DEVNULL)

    def do_cd(self, _option, folder):
        self.folder = pathlib.Path(folder)

    def do_copy(self, file, folder):
        shutil.copy(file, self.folder / folder)

    def do_tar(self, _option, archive, *rest):
        assert rest[0] == "--strip-components", rest
        for member in rest[2:]:
            (self.folder / "/".join(member.split("/")[int(rest[1]):])).write_bytes(zipfile.ZipFile(archive).read(member))

    def do_csc(self, *arguments):
        self.start("mcs", "-nologo", *arguments)

    def do_py(self, *arguments):
        if "pip" in arguments:
            arguments = (*arguments, "--quiet", "--no-index", "--disable-pip-version-check")
        self.start(self.drive / "python" / "bin" / "python", *arguments)


class Start_test(Stage):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.drive = cls.folder / "drive"
        for name, folder in (("libvyrabrenvozulta.so", "bin"), ("libBrenvoZulta_USB.so", "simulator")):
            (cls.drive / SDK / folder).mkdir(parents=True)
            shutil.copy(BINARIES / name, cls.drive / SDK / folder)
        shutil.copytree(EXAMPLES, cls.drive / SDK / "examples")

    def follow(self, title, language, platform):
        package(language, self.drive, platform)
        section = next(section for section in sections() if section.title == title)
        console = Console(self.drive, dict(os.environ, **self.scenario(), LD_LIBRARY_PATH="."))
        for line in section.cmd:
            console.run(line)
        self.assertEqual((console.folder / section.image).read_bytes(), PGM)
        print(f"{title}: {len(section.cmd)} commands")

    def test_python(self):
        subprocess.run([sys.executable, "-m", "venv", "--without-pip", "--system-site-packages", self.drive / "python"], check=True)
        self.follow("Python", "python", "linux_x86_64")

    def test_csharp(self):
        self.follow("C#", "csharp", "win_amd64")


if __name__ == "__main__":
    unittest.main()
