"""The table of docs/when-something-fails.md, which is made of include/vyra/status_text.h."""
import re

RETRY = {"NEVER": "no", "SOON": "yes, as it is", "AFTER": "after what follows"}
HEAD = ["| Status | What has happened | Again | What the host does | What the person does |", "|---|---|---|---|---|"]
ENTRY = re.compile(r'\{(VYRA_\w+),((?:\s*"[^"]*"[,\s]*)+)VYRA_RETRY_(\w+),((?:\s*"[^"]*"[,\s]*)+)\}')


def texts(literals):
    """C literals, those next to each other as one."""
    return [text.replace('" "', "") for text in re.findall(r'"((?:[^"]|" ")*)"', re.sub(r'"\s+"', '" "', literals))]


def table(status_text, statuses):
    """The lines of the table. status_text is the header's text, statuses has the numbers by name."""
    lines = list(HEAD)
    for name, before, retry, after in ENTRY.findall(status_text):
        _, meaning = texts(before)
        host, person = texts(after)
        lines.append(f"| {statuses[name]} `{name}` | {meaning} | {RETRY[retry]} | {host} | {person} |")
    return lines


def with_table(page, lines):
    """The page's text with the lines in place of those of its table."""
    return re.sub(r"(^\|.*\n)+", lambda _: "".join(line + "\n" for line in lines), page, count=1, flags=re.M)
