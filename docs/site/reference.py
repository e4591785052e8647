"""The public headers as Doxygen reads them. They carry no markup themselves: the comment above a declaration is its text, and
so is one behind it; a comment above several is their common text; a line of dashes with a title begins a group."""
import re

# Where a header's declarations stand among the modules, until a line of dashes says otherwise.
GROUPS = {
    "vyra.h": "Constants and records",
    "status.h": "Statuses",
    "status_text.h": "Statuses",
    "functions.h": "Loading at run time",
    "loader.h": "Loading at run time",
    "notify.h": "USB and power events",
    "vyra.hpp": "C++ objects",
}
INTERNAL = re.compile(r"VYRA_(TAKE|MEMBER|ADDRESS|TEXT_OF|TEXT_AS|(SCANNER_|NOTIFICATION_)?FUNCTIONS$)|VYRA_\w*_HP?P?$")
SECTION = re.compile(r"/\* -+ (.+?) -+ \*/$")
ONE_LINE = re.compile(r"(#define .*[^\\]|\w[^{}]*\);( +/\*.*)?)$")
TRAILING = re.compile(r"( {0,4}\S.*?) +(/\*|//) (.*)$")


def group_id(title):
    return "group_" + re.sub(r"\W+", "_", title.lower())


class Reference:
    def __init__(self, headers, statuses, functions):
        """functions: for each export, the cells of its row in docs/functions.md."""
        self.functions = functions
        self.statuses = {str(code): name for name, code in statuses.items() if code != "0"}
        self.names = set()
        for file in headers:
            text = file.read_text()
            self.names |= set(re.findall(r"^(?:int32_t|void|bool|static __inline .*?) \*?(\w+)\(", text, re.M))
            self.names |= set(re.findall(r"^#define (\w+)", text, re.M)) | set(re.findall(r"^    (VYRA_\w+) = ", text, re.M))
        self.names = {name for name in self.names if not INTERNAL.match(name)}

    def linked(self, text):
        """Plain text as Doxygen's: nothing in it is markup, and names and statuses lead to what they are."""
        text = re.sub(r"([\\@*%#])", r"\\\1", text).replace("<", "&lt;").replace(">", "&gt;")

        def link(word):
            if word[0] in self.statuses:
                return f"[{word[0]}](@ref {self.statuses[word[0]]})"
            return f"[{word[0]}](@ref {word[0]})" if word[0] in self.names else word[0]

        return re.sub(r"(?<![\w/])\w+(?![\w.])|\w+(?=\.$|\.\s)", link, text)

    def facts(self, declaration):
        """What docs/functions.md says of the export that is declared."""
        name = re.match(r"\w+ (\w+)\(", declaration)
        cells = self.functions.get(name[1], []) if name else []
        titles = ("Result" if declaration.startswith("bool") else "[Statuses](@ref page_functions)", "Blocks", "In callbacks")
        rows = "".join(f"<tr><td>{title}</td><td>{self.linked(cell.replace('`', ''))}</td></tr>" for title, cell in zip(titles, cells))
        return f"\n\n<table class='terms'>{rows}</table>" if rows else ""

    def laid_out(self, lines):
        """A comment's lines: lists of terms become tables, code stays as it is, a line alone above others is a heading."""
        out, table = [], False
        for number, line in enumerate(lines):
            row = re.match(r" {0,2}(\S+(?: \S+)*) {2,}(\S.*)$", line)
            more = re.match(r" {8,}(\S.*)$", line) if table else None
            if table and not row and not more:
                out[-1] += "</td></tr></table>"
                table = False
            if row:
                out.append(("</td></tr>" if table else "<table class='terms'>") +
                           f"<tr><td>{self.linked(row[1])}</td><td>{self.linked(row[2])}")
                table = True
            elif more:
                out.append(self.linked(more[1]))
            elif line.startswith("    "):
                out.append(line)
            elif re.match(r"[A-Z][\w ]+$", line) and (number == 0 or not lines[number - 1]) and number + 1 < len(lines):
                out += [f"### {line}", ""]
            else:
                out.append(self.linked(line))
        if table:
            out[-1] += "</td></tr></table>"
        return "\n".join(out)

    def staged(self, file):
        """The text of a header for Doxygen."""
        self.source, self.at, self.out = file.read_text().splitlines(), 0, []
        group = GROUPS.get(file.name, GROUPS["vyra.hpp"])
        name = file.name if file.parent.name == "vyra" else f"{file.parent.name}/{file.name}"
        self.emit(f"@file {name}\n" + self.laid_out(self.comment()))
        self.header = name
        self.open_group(group)
        while self.at < len(self.source):
            line = self.source[self.at]
            section, trailing = SECTION.match(line), TRAILING.match(line)
            if section:
                self.out.append("/** @} */")
                self.open_group(section[1])
                self.at += 1
            elif re.match(r" {0,4}(/\*|//)", line):
                self.put_above(self.comment())
            elif trailing and re.match(r"#define| *\w", line):
                self.put_behind(trailing)
            else:
                self.put_code(line)
        return "\n".join(self.out + ["/** @} */", ""])

    def open_group(self, title):
        self.out.append(f"/** @addtogroup {group_id(title)} {title}\nOf vyra/@ref {self.header}.\n@{{ */")

    def emit(self, text):
        self.out.append(f"/** {text} */")

    def comment(self):
        """Reads the comment that begins here: its lines without the signs around them."""
        lines = []
        if "//" in self.source[self.at][:6]:
            while self.at < len(self.source) and re.match(r"\s*//", self.source[self.at]):
                lines.append(re.sub(r"^\s*// ?", "", self.source[self.at]))
                self.at += 1
            return lines
        indent = len(self.source[self.at]) - len(self.source[self.at].lstrip())
        while True:
            line = self.source[self.at][indent:]
            self.at += 1
            lines.append(re.sub(r"^ ?(/?\*|  )? ?|\s*\*/$", "", line.replace("/* ", "/*", 1)))
            if "*/" in line:
                while lines and not lines[0]:
                    del lines[0]
                while lines and not lines[-1]:
                    lines.pop()
                return lines

    def put_above(self, lines):
        following = self.source[self.at:self.at + 2]
        if not following or not following[0].strip() or lines[0].startswith("clang-format"):
            return
        if len(following) == 2 and all(ONE_LINE.match(line) for line in following) and following[0][0] == following[1][0]:
            self.put_group(lines)
        else:
            self.emit(self.laid_out(lines) + self.facts(self.source[self.at]))
            self.put_code(self.source[self.at])

    def put_group(self, lines):
        """Declarations up to the next blank line under one text: its first sentence is the title, and each function's text."""
        first, _, rest = " ".join(lines).partition(". ")
        first = first.rstrip(".")
        self.out.append(f"/** @name {first}\n\n{self.linked(rest)}\n@{{ */")
        while self.at < len(self.source) and self.source[self.at].strip():
            line = self.source[self.at]
            trailing = TRAILING.match(line)
            if trailing:
                self.put_behind(trailing)
            else:
                if re.match(r"\w.*\(", line):
                    self.emit(self.linked(first) + "." + self.facts(line))
                self.put_code(line)
        self.out.append("/** @} */")

    def put_behind(self, trailing):
        code, sign, text = trailing.groups()
        self.at += 1
        if sign == "//":
            while self.at < len(self.source) and re.match(r"\s{5,}// ", self.source[self.at]):
                text += " " + self.source[self.at].strip()[3:]
                self.at += 1
        else:
            while "*/" not in text:
                text += " " + self.source[self.at].strip()
                self.at += 1
            text = text[:text.index("*/")].strip()
        self.emit(self.linked(text) + self.facts(code))
        self.put_code(code, advance=False)

    def put_code(self, line, advance=True):
        name = re.match(r"#define (\w+)", line)
        hidden = name and INTERNAL.match(name[1])
        self.out.append(("/** @cond */\n" if hidden else "") + line)
        self.at += advance
        while line.endswith("\\") and hidden:
            line = self.source[self.at]
            self.out.append(line)
            self.at += 1
        if hidden:
            self.out.append("/** @endcond */")
