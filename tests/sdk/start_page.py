"""docs/start.md as data: for each toolchain its lists of commands, and what they leave."""
import dataclasses
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


@dataclasses.dataclass
class Section:
    title: str
    stated: int  # how many commands the page says there are
    cmd: list
    powershell: list

    @property
    def folder(self):
        """Of the archive, the one that the commands go to, if any."""
        moved = [re.search(r'cd /d "%SDK%\\(.*)"', line) for line in self.cmd]
        return next((move[1].replace("\\", "/") for move in moved if move), "")

    @property
    def image(self):
        return "image.pgm" if self.cmd[-1].endswith(" image.pgm") else "image_0001.pgm"


def block(text, language):
    found = re.search(rf"^```{language}\n(.*?)^```", text, re.M | re.S)
    return found[1].splitlines() if found else []


def sections():
    """Those with commands for Windows."""
    text = (ROOT / "docs/start.md").read_text()
    stated = {title: int(count) for title, count in re.findall(r"^\| \[(.+?)\]\(#\S+\) \| (\d+) \|", text, re.M)}
    parts = re.split(r"^## (.*)\n", text, flags=re.M)[1:]
    found = [Section(title, stated.pop(title, 0), block(body, "bat"), block(body, "powershell"))
             for title, body in zip(parts[::2], parts[1::2])]
    assert not stated, f"the table has what the page has not: {stated}"
    return [section for section in found if section.cmd or section.powershell]


def as_powershell(line):
    """A command for cmd as it is written for PowerShell."""
    line = re.sub(r"%(\w+)%", r"$env:\1", line)
    line = re.sub(r"^set (\w+)=(.*)$", r'$env:\1 = "\2"', line)
    line = re.sub(r"^cd /d ", "cd ", line)
    return re.sub(r'^"', '& "', line)
