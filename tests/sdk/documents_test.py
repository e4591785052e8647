#!/usr/bin/env python3
"""Reads the documents as a host developer would: every export and every status has its row, every code block of C and
C++ compiles, every link leads somewhere, and the README's program is the example that the tests run.

    documents_test.py ROOT
"""
import pathlib
import re
import subprocess
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop())
PAGES = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]
INCLUDE = [ROOT / "include", ROOT / "simulator/include", ROOT / "tests/win32/include"]
COMPILERS = {"c": ["gcc", "-std=c99", "-x", "c"], "cpp": ["g++", "-std=c++17", "-x", "c++"]}


def rows(page):
    """The cells of the tables' rows, by the text in backquotes in their first cell."""
    found = {}
    for line in (ROOT / "docs" / page).read_text().splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        name = re.search(r"`(\w+)`", cells[0])
        if line.startswith("|") and name:
            found.setdefault(name[1], []).append(cells[1:])
    return found


def exports():
    lines = (ROOT / "src/api/exports.list").read_text().splitlines()
    names = [line.split()[0] for line in lines if line and not line.startswith("#")]
    return {re.sub(r"^\?(\w+)@.*", r"\1", name) for name in names}


def statuses():
    return dict(re.findall(r"^ +(VYRA_\w+) = (\d+)", (ROOT / "include/vyra/status.h").read_text(), re.M))


def code_blocks():
    for page in PAGES:
        for indent, language, code in re.findall(r"^( *)```(c|cpp)\n(.*?)^ *```", page.read_text(), re.M | re.S):
            yield page, language, code


class Documents(unittest.TestCase):
    def test_every_export_has_its_statuses_blocking_time_and_callback_rule(self):
        table = rows("functions.md")
        self.assertEqual(set(table), exports())
        for name, entries in table.items():
            self.assertEqual(len(entries), 1, name)
            self.assertEqual(len(entries[0]), 3, name)
            self.assertTrue(all(entries[0]), f"{name} has an empty cell")
            for code in re.findall(r"\b9\d{3}\b", entries[0][0]):
                self.assertIn(code, statuses().values(), name)

    def test_every_status_has_its_row(self):
        table = rows("when-something-fails.md")
        self.assertEqual(set(table), set(statuses()))
        text = (ROOT / "docs/when-something-fails.md").read_text()
        for name, code in statuses().items():
            self.assertIn(f"| {code} `{name}` |", text)

    def test_every_code_block_compiles(self):
        blocks = list(code_blocks())
        self.assertTrue(blocks)
        for page, language, code in blocks:
            if "#include" not in code:
                code = "#include <vyra/vyra.h>\n" + code
            command = [*COMPILERS[language], "-fsyntax-only", "-Wall", "-Wextra", "-Wno-unused-function", "-Werror"]
            command += [f"-I{folder}" for folder in INCLUDE] + ["-"]
            result = subprocess.run(command, input=code, capture_output=True, text=True)
            self.assertEqual(result.returncode, 0, f"{page.name}:\n{code}\n{result.stderr}")

    def test_every_link_leads_somewhere(self):
        for page in PAGES:
            for link in re.findall(r"\]\(([^)#]+)\)", page.read_text()):
                if "://" not in link:
                    self.assertTrue((page.parent / link).exists(), f"{page.name}: {link}")

    def test_program_of_the_readme_is_the_example_that_is_tested(self):
        example = (ROOT / "examples/c/capture/capture.c").read_text()
        self.assertTrue(example in (ROOT / "README.md").read_text(), "it is another program")


if __name__ == "__main__":
    unittest.main()
