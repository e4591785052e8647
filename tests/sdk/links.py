#!/usr/bin/env python3
"""The links of Markdown files that lead nowhere: to no file, or to a heading that the file does not have.

    links.py FOLDER     looks at all in the folder, and lets none lead out of it
"""
import pathlib
import re
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "docs" / "site"))
from pages import FENCE, anchor  # noqa: E402


def prose(page):
    return "".join(FENCE.split(page.read_text())[::2])


def broken_links(pages, root=None):
    broken = []
    for page in pages:
        for link in re.findall(r'(?:\]\(|src=")([^)\s"]+)[)"]', prose(page)):
            path, _, place = link.partition("#")
            target = (page.parent / path).resolve() if path else page
            if "://" in link:
                continue
            if not target.exists() or root and root not in target.parents:
                broken.append(f"{page}: {link}")
            elif place and place not in map(anchor, re.findall(r"^#+ (.*)$", prose(target), re.M)):
                broken.append(f"{page}: {link}, which has no such heading")
    return broken


if __name__ == "__main__":
    folder = pathlib.Path(sys.argv[1]).resolve()
    found = list(folder.rglob("*.md"))
    sys.exit("\n".join(broken_links(found, folder)) or not found)
