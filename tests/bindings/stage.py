"""What the tests of the bindings share: a scanner that delivers one known image and is unplugged later, and programs that run
on it."""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
EXAMPLES = ROOT / "examples"
NODE = ROOT / "build" / "deps" / "node"
TESTS = ROOT / "tests" / "bindings"
BINARIES = pathlib.Path(os.environ["VYRA_BINARIES"])  # where the libraries were built
NAME = "Dáktylos 7"
WIDTH, HEIGHT = 1600, 1500
PIXELS = bytes((x * 7 + y * 13) % 251 for y in range(HEIGHT) for x in range(WIDTH))
PGM = b"P5\n%d %d\n255\n" % (WIDTH, HEIGHT) + PIXELS


def package(language, folder, platform="win_amd64"):
    made = subprocess.run([ROOT / "scripts" / "package-bindings", "--binaries", BINARIES, "--platform", platform, "--out", folder,
                           language], check=True, stdout=subprocess.PIPE, text=True).stdout
    return pathlib.Path(made.strip())


def install_node_package(folder):
    """The npm package in a fresh project."""
    (folder / "package.json").write_text("{}")
    # npm asks whether the packages are for the system that it runs on.
    subprocess.run(["npm", "install", "--silent", "--offline", "--no-audit", "--no-fund", "--force", "--ignore-scripts", NODE / "koffi.tgz",
                    package("node", folder)], cwd=folder, check=True)


class Stage(unittest.TestCase):
    """A folder of the test class's own, with the image."""

    @classmethod
    def setUpClass(cls):
        cls._temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls._temporary.cleanup)
        cls.folder = pathlib.Path(cls._temporary.name)
        (cls.folder / "images").mkdir()
        (cls.folder / "images" / "one.pgm").write_bytes(PGM)

    def scenario(self, **fields):
        """The environment of a program that finds this scenario."""
        text = {"scanners": [{"name": NAME, "serial_number": "RQ7000000042", "version": "3.1.c"}],
                "idle_stop_result": 4,  # a start of video then makes no pause
                "images": {"source": "folder", "folder": str(self.folder / "images")}, **fields}
        return dict(os.environ, BRENVOZULTA_SCENARIO=json.dumps(text))

    def unplugged_and_plugged(self):
        """As above; the scanner goes half a second after the first capture starts, and comes back."""
        after = {"after_call": {"function": "QXDR_StartCapture", "count": 1}}
        return self.scenario(timeline=[{**after, "at_ms": 500, "unplug": NAME}, {**after, "at_ms": 1000, "plug": NAME}])

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return str(path)

    def run_to_end(self, command, environment, code=0):
        # To files: Node.js does not take Wine's pipes.
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            done = subprocess.run(command, env=environment, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                                  timeout=60)
            texts = []
            for file in (out, err):
                file.seek(0)
                texts.append(file.read().decode().replace("\r\n", "\n"))
        self.assertEqual((done.returncode, texts[1]), (code, ""), texts[0])
        return texts[0]

    def watch(self, command, environment):
        """Runs an example that watches until the scanner captures for the second time, and lets it end."""
        with subprocess.Popen(command, env=environment, cwd=self.folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              encoding="utf-8") as program:
            lines = []
            for line in program.stdout:
                lines.append(line.rstrip("\r\n"))
                if lines.count(f"{NAME} captures") == 2:
                    break
            program.stdin.write("\n")
            program.stdin.close()
            lines += program.stdout.read().splitlines()
            self.assertEqual(program.wait(timeout=60), 0, lines)
        return lines

    def assert_watched(self, lines):
        self.assertEqual([line for line in lines if line.startswith(NAME)][:4],
                         [f"{NAME} captures", f"{NAME} unplugged", f"{NAME} plugged", f"{NAME} captures"])
        self.assertIn("VyraGetVideoResult: 9005. The scanner was unplugged", lines)
