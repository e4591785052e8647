#!/usr/bin/env python3
"""Reads the documents as a host developer would: every export and every status has its row, every code block compiles or is one
that is run elsewhere, every link leads somewhere, and the README's program is the example that the tests run.

    documents_test.py ROOT TOOL
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(sys.argv.pop())
ROOT = pathlib.Path(sys.argv.pop()).resolve()
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "docs" / "site"))
from links import broken_links  # noqa: E402
from start_page import as_powershell, block, sections  # noqa: E402
from status_table import table, with_table  # noqa: E402

PAGES = [*ROOT.glob("*.md"), *sorted((ROOT / "docs").glob("*.md")), *sorted(ROOT.glob("bindings/*/README.md")),
         ROOT / "simulator/README.md", ROOT / "tools/vyra/README.md"]
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


def code_blocks(*languages):
    for page in PAGES:
        for language, code in re.findall(r"^ *```(\w+)\n(.*?)^ *```", page.read_text(), re.M | re.S):
            if not languages or language in languages:
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

    def test_what_the_header_says_of_statuses_stands_in_the_table(self):
        page = (ROOT / "docs/functions.md").read_text().replace("\n", " ")
        common, handle, driver = (set(re.findall(r"\b9\d{3}\b", text))
                                  for text in re.search(r"\*common\* is (.*?)\*handle\*(.*?)\*driver\*(.*?)\. ", page).groups())
        header = (ROOT / "include/vyra/vyra.h").read_text()
        compared = 0
        for comment, name in re.findall(r"/\*((?:(?!\*/).)*)\*/\n(?:int32_t|void) (\w+)\(", header, re.S):
            statuses_cell = rows("functions.md")[name][0][0]
            stated = set(re.findall(r"\b9\d{3}\b", statuses_cell))
            for word, codes in ("common", common), ("handle", handle), ("driver", driver):
                stated |= codes if re.search(rf"\b{word}\b(?!'s)", statuses_cell) else set()
            if name == "VyraTerminate":
                comment = comment.partition("Waits for a notification subscriber")[0]  # then of what others return meanwhile
            self.assertEqual(set(re.findall(r"\b9\d{3}\b", comment)) - stated, set(), name)
            if re.search(r"[Aa]sks\s+the\s+scanner", comment):
                self.assertTrue(driver <= stated, f"{name} asks the scanner")
            compared += 1
        self.assertGreater(compared, 30)

    def test_every_status_has_its_row(self):
        table = rows("when-something-fails.md")
        self.assertEqual(set(table), set(statuses()))
        text = (ROOT / "docs/when-something-fails.md").read_text()
        for name, code in statuses().items():
            self.assertIn(f"| {code} `{name}` |", text)

    def test_the_table_of_the_statuses_is_that_of_the_header(self):
        page = (ROOT / "docs/when-something-fails.md").read_text()
        lines = table((ROOT / "include/vyra/status_text.h").read_text(), statuses())
        self.assertEqual(len(lines), len(statuses()) + 2)
        self.assertEqual(page, with_table(page, lines), "run scripts/docs --regenerate")

    def compiles(self, page, code, command):
        result = subprocess.run(command, input=code, capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, f"{page.name}:\n{code}\n{result.stderr}{result.stdout}")

    def test_every_block_of_c_and_cpp_compiles(self):
        blocks = list(code_blocks(*COMPILERS))
        self.assertTrue(blocks)
        for page, language, code in blocks:
            if "#include" not in code:
                code = "#include <vyra/vyra.h>\n" + code
            command = [*COMPILERS[language], "-fsyntax-only", "-Wall", "-Wextra", "-Wno-unused-function", "-Werror"]
            self.compiles(page, code, command + [f"-I{folder}" for folder in INCLUDE] + ["-"])

    def test_every_block_of_another_language_is_read_by_its_compiler(self):
        for page, _, code in code_blocks("python"):
            compile(code, page.name, "exec")
        for page, _, code in code_blocks("json"):
            json.loads(code)
        for page, _, code in code_blocks("js"):
            self.compiles(page, f"async function block() {{\n{code}\n}}", ["node", "--check", "-"])
        for page, _, code in code_blocks("csharp"):
            code = f"using System;\nclass Block {{ static async System.Threading.Tasks.Task Run() {{\n{code}\n}} }}"
            with tempfile.TemporaryDirectory() as folder:
                (pathlib.Path(folder) / "Block.cs").write_text(code)
                self.compiles(page, code, ["mcs", "-nologo", "-target:library", f"-out:{folder}/Block.dll", f"{folder}/Block.cs",
                                           *ROOT.glob("bindings/csharp/*.cs")])

    def test_every_other_block_is_one_that_is_looked_at(self):
        looked_at = {"python", "json", "js", "csharp", *COMPILERS, "cmake", "bat", "powershell", "sh"}
        self.assertEqual({language for _, language, _ in code_blocks()} - looked_at, set())
        example = (ROOT / "examples/c/capture/CMakeLists.txt").read_text()
        for page, _, code in code_blocks("cmake"):
            for line in code.replace("station", "capture").splitlines():
                self.assertIn(line, example, f"{page.name}: the example, which is built, has not this line")
        for page, _, code in code_blocks("sh"):
            for script, arguments in re.findall(r"^(scripts/\S+)(.*)$", code, re.M):
                text = (ROOT / script).read_text()
                for option in re.findall(r" (--\w+)", arguments.partition(".exe")[0]):
                    self.assertIn(option, text, f"{page.name}: {script}")

    def test_files_have_the_version_of_the_headers(self):
        header = (ROOT / "include/vyra/vyra.h").read_text()
        version = ".".join(re.findall(r"#define VYRA_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", header))
        named = [(page.name, found) for page in PAGES
                 for found in re.findall(r"\b(?:[Vv]yra|vyrabrenvozulta)[-.](\d+\.\d+\.\d+)", page.read_text())]
        self.assertGreater(len(named), 15)
        self.assertEqual({found for _, found in named}, {version}, named)

    def test_every_script_that_is_named_is_there(self):
        for page in PAGES:
            for name in re.findall(r"(?<![\w/])scripts/([\w-]+)", page.read_text()):
                self.assertTrue((ROOT / "scripts" / name).exists(), f"{page.name}: scripts/{name}")

    def test_both_consoles_are_told_the_same(self):
        for page in PAGES:
            for part in re.split(r"^## ", page.read_text(), flags=re.M):
                self.assertEqual([as_powershell(line) for line in block(part, "bat")], block(part, "powershell"), page.name)

    def run_tool(self, folder, arguments, **environment):
        return subprocess.run([TOOL, *arguments], cwd=folder, env={**os.environ, **environment}, capture_output=True, timeout=60)

    def test_every_scenario_is_one_that_the_simulator_plays(self):
        page = (ROOT / "docs/without-a-scanner.md").read_text()
        scenarios = re.findall(r"""[`=']({".*?})[`']""", page)
        scenarios += [str(ROOT / "simulator" / file) for file in re.findall(r"`(examples/\w+\.json)`", page)]
        self.assertGreater(len(scenarios), 6)
        with tempfile.TemporaryDirectory() as folder:
            (pathlib.Path(folder) / "prints").mkdir()
            (pathlib.Path(folder) / "prints/one.pgm").write_bytes(b"P5\n1600 1500\n255\n" + bytes(2400000))
            for scenario in scenarios:
                done = self.run_tool(folder, ["list"], BRENVOZULTA_SCENARIO=scenario)
                self.assertEqual(done.returncode, 3 if '"scanners": []' in scenario else 0, f"{scenario}: {done.stderr}")

    def test_a_contributor_gets_an_image_too(self):
        commands = [line.split()[1:] for _, _, code in code_blocks("sh") for line in code.splitlines() if line.startswith("build/host/bin/vyra ")]
        self.assertTrue(commands)
        for arguments in commands:
            with tempfile.TemporaryDirectory() as folder:
                self.assertEqual(self.run_tool(folder, arguments).returncode, 0)
                self.assertEqual((pathlib.Path(folder) / "image_0001.pgm").stat().st_size, 2400017)

    def test_start_here_says_how_many_commands_there_are(self):
        self.assertEqual(len(sections()), 7)
        for section in sections():
            self.assertEqual(len(section.cmd), section.stated, section.title)

    def test_every_link_leads_somewhere(self):
        self.assertEqual(broken_links(PAGES), [])

    def test_program_of_the_readme_is_the_example_that_is_tested(self):
        example = (ROOT / "examples/c/capture/capture.c").read_text()
        self.assertTrue(example in (ROOT / "README.md").read_text(), "it is another program")


if __name__ == "__main__":
    unittest.main()
