#!/usr/bin/env python3
"""Makes the site and reads it: no warning, every export described, every link leads somewhere, every page in the navigation; and
what was made of other files beside the pages is what would be made of them now.

    site_test.py ROOT TOOL
"""
import html
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
import xml.etree.ElementTree

TOOL = pathlib.Path(sys.argv.pop())
ROOT = pathlib.Path(sys.argv.pop()).resolve()
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "docs" / "site"))
from picture import picture  # noqa: E402

SVG = "{http://www.w3.org/2000/svg}"


def structure(svg):
    """What a drawing shows, wherever its layout puts it: nodes, edges and frames by name, each with its texts."""
    shown = []
    for group in xml.etree.ElementTree.fromstring(svg).iter(f"{SVG}g"):
        if group.get("class") in ("node", "edge", "cluster"):
            shown.append((group.get("class"), group.findtext(f"{SVG}title"), [text.text for text in group.findall(f".//{SVG}text")]))
    return sorted(shown)


class Site(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        made = subprocess.run([ROOT / "scripts" / "docs", "--out", temporary.name], capture_output=True, text=True)
        if made.returncode:
            raise AssertionError(made.stdout + made.stderr)
        cls.folder = pathlib.Path(temporary.name) / "html"
        cls.pages = {page.name: page.read_text() for page in cls.folder.glob("*.html")}

    def test_every_export_is_described(self):
        lines = (ROOT / "src/api/exports.list").read_text().splitlines()
        exports = [re.match(r"\??(\w+)", line)[1] for line in lines if line and not line.startswith("#")]
        self.assertEqual(len(exports), 59)
        modules = "".join(text for name, text in self.pages.items() if name.startswith("group__"))
        for name in exports:
            described = re.search(rf'<td class="memname">[^<]*\b{name} *</td>.*?<div class="memdoc">\s*(.*?)</div>', modules, re.S)
            self.assertTrue(described and len(described[1]) > len("<p></p>"), name)
            self.assertRegex(described[1], "(?s)(Statuses</a>|Result)</td>.*Blocks</td>.*In callbacks</td>", name)

    def test_statuses_and_fields_have_their_texts(self):
        for name in re.findall(r"^ +(VYRA_\w+) = 9", (ROOT / "include/vyra/status.h").read_text(), re.M):
            self.assertRegex(self.pages["group__group__statuses.html"], rf'{name}&#160;</td><td class="fielddoc"><p')
        for record, field, text in (("VyraLoadReport", "function", "the functions that the file lacks"),
                                    ("DeviceInfo", "version", "firmware version"), ("DeviceListRecord", "name", "padded with zeros")):
            self.assertRegex(self.pages[f"struct{record}.html"], rf'(?s)memname">\w+ {record}::{field}.*?memdoc">\s*<p ?>{text}')

    def test_every_link_leads_somewhere(self):
        anchors = {name: set(re.findall(r'\b(?:id|name)="([^"]+)"', text)) for name, text in self.pages.items()}
        for name, text in self.pages.items():
            for link in re.findall(r'\b(?:href|src|data)="([^"]+)"', text):
                path, _, place = urllib.parse.unquote(html.unescape(link)).partition("#")
                if "://" in link or link.startswith(("javascript:", "$")):
                    continue
                self.assertTrue(not path or (self.folder / path).exists(), f"{name}: {link}")
                if place and (path or name) in anchors:
                    self.assertIn(place, anchors[path or name], f"{name}: {link}")

    def test_every_page_is_in_the_navigation(self):
        navigation = (self.folder / "navtreedata.js").read_text()
        layout = (ROOT / "docs/site/layout.xml").read_text()
        for page in (ROOT / "docs").glob("*.md"):
            name = "page_" + page.stem.replace("-", "_")
            self.assertIn(f'"@ref {name}"', layout)
            self.assertIn(f"{name}.html", navigation)

    def test_committed_drawings_are_those_of_their_texts(self):
        drawings = list((ROOT / "docs/drawings").glob("*.dot"))
        self.assertTrue(drawings)
        for drawing in drawings:
            made = subprocess.run(["dot", "-Tsvg", drawing], check=True, capture_output=True).stdout
            committed = (ROOT / "docs/images" / f"{drawing.stem}.svg").read_bytes()
            self.assertEqual(structure(made), structure(committed), f"{drawing.name}: run scripts/docs --regenerate")

    def test_the_picture_is_an_image_of_the_simulated_scanner(self):
        committed = (ROOT / "docs/images/flat.png").read_bytes()
        self.assertTrue(picture(TOOL) == committed, "run scripts/docs --regenerate")


if __name__ == "__main__":
    unittest.main()
