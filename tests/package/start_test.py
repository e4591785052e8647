#!/usr/bin/env python3
"""The time of a newcomer: the commands of docs/start.md, counted, and run as they stand, from the unpacked archive to an image.

cmd runs them under Wine. CMake, gcc and npm, which a newcomer has for Windows, are those of this machine, with MinGW's compiler;
the build that CMake chooses on Windows is stood in for by another one of several configurations. The commands for PowerShell,
which does not run here, are held against those for cmd. C# and Python, which are not here for Windows either, run on the
natively built library (tests/bindings/start_test.py).

    start_test.py SDK_FOLDER PACKAGES_FOLDER MINGW_COMPILER
"""
import os
import pathlib
import re
import shutil
import socketserver
import subprocess
import sys
import tempfile
import threading

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "sdk"))
from start_page import ROOT, sections  # noqa: E402

UNDER_WINE = ("The tool", "CMake and Visual Studio", "CMake and MinGW", "MinGW alone", "Node.js")
SIZE = len(b"P5\n1600 1500\n255\n") + 1600 * 1500
DRIVE_C = ROOT / "build" / "wine" / "drive_c"
NODE = ROOT / "build" / "deps" / "node"


def native(argument):
    """A path of the console's as this machine's."""
    return re.sub(r"[Cc]:\\(.*)", lambda path: f"{DRIVE_C}/" + path[1].replace("\\", "/"), argument)


def command(name, arguments):
    if name == "gcc":
        return ["x86_64-w64-mingw32-gcc-posix", *arguments]
    if name == "npm":
        # It asks whether the packages are for the system that it runs on, and what they need is not fetched anew.
        return ["npm", *arguments, NODE / "koffi.tgz", "--silent", "--offline", "--no-audit", "--no-fund", "--force"]
    return [name, *("Unix Makefiles" if argument == "MinGW Makefiles" else argument for argument in arguments)]


class Relayed(socketserver.StreamRequestHandler):
    def handle(self):
        words = b""
        while not words.endswith(b"\0\0"):
            more = self.request.recv(4096)
            if not more:
                return
            words += more
        name, folder, *arguments = words[:-2].decode().split("\0")
        name = re.sub(r"^.*\\|\.exe$", "", name)
        environment = {**os.environ, "CMAKE_GENERATOR": "Ninja Multi-Config", "CMAKE_TOOLCHAIN_FILE": f"{ROOT}/cmake/mingw-w64.cmake"}
        done = subprocess.run(command(name, [native(argument) for argument in arguments]), cwd=native(folder), env=environment,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL)
        self.wfile.write(done.stdout + bytes([done.returncode]))


class Relay(socketserver.ThreadingTCPServer):
    daemon_threads = True


def run(chosen, sdk, work):
    """Each list of commands in a console of its own, one after the other, in one start of Wine. Leaves the images as 0.pgm and
    so on."""
    lines = ["@echo off"]
    for number, section in enumerate(chosen):
        (work / f"{number}.bat").write_text("\r\n".join(["@echo off", *section.cmd, ""]))
        image = f"{sdk}\\{section.folder}\\{section.image}".replace("/", "\\") if section.folder else section.image
        lines += [f"cmd /c {number}.bat", f"if exist {image} move {image} {number}.pgm"]
    (work / "all.bat").write_text("\r\n".join([*lines, ""]))
    with Relay(("127.0.0.1", 0), Relayed) as relay:
        threading.Thread(target=relay.serve_forever, daemon=True).start()
        # Without the folder of what was built, which scripts/wine adds: what a page forgets to copy is to be missed.
        windows_path = f"Z:{work}/tools;Z:{NODE};C:/windows/system32;C:/windows".replace("/", "\\")
        environment = {**os.environ, "START_TEST_PORT": str(relay.server_address[1]), "NODE_SKIP_PLATFORM_CHECK": "1"}
        with open(work / "output", "wb") as output:  # a file: Node.js does not take Wine's pipes
            subprocess.run([ROOT / "scripts/wine", "cmd", "/c", f"set PATH={windows_path}&& all.bat"], cwd=work,
                           env=environment, stdout=output, stderr=output, stdin=subprocess.DEVNULL, timeout=240)
        relay.shutdown()
    return (work / "output").read_text(errors="replace")


def is_image(file):
    return file.exists() and file.stat().st_size == SIZE


def main():
    sdk, packages, compiler = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    chosen = [section for section in sections() if section.title in UNDER_WINE]
    assert len(chosen) == len(UNDER_WINE), "docs/start.md has other sections"
    place = DRIVE_C / sdk.name
    with tempfile.TemporaryDirectory() as temporary:
        work = pathlib.Path(temporary)
        (work / "tools").mkdir()
        subprocess.run([compiler, pathlib.Path(__file__).parent / "relay.c", "-o", work / "tools/cmake.exe", "-lws2_32"], check=True)
        for name in ("gcc", "npm"):
            os.link(work / "tools/cmake.exe", work / f"tools/{name}.exe")
        shutil.rmtree(place, ignore_errors=True)
        shutil.copytree(sdk, place)
        for package in packages.iterdir():
            shutil.copy(package, DRIVE_C)
        try:
            output = run(chosen, f"C:\\{sdk.name}", work)
            images = [work / f"{number}.pgm" for number in range(len(chosen))]
            missing = [section.title for section, image in zip(chosen, images) if not is_image(image)]
        finally:
            shutil.rmtree(place)
            for package in packages.iterdir():
                (DRIVE_C / package.name).unlink()
    if missing:
        sys.exit(f"{output}\nno image from: {', '.join(missing)}")
    for section in chosen:
        print(f"{section.title}: {len(section.cmd)} commands")


if __name__ == "__main__":
    main()
