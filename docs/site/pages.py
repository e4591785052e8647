"""The Markdown pages as Doxygen reads them. They are written for a repository's host and for the archive, where links lead from
file to file: each page and each of its headings gets a name, and the links are made to lead there."""
import re

FENCE = re.compile(r"^( *```\w*\n.*?^ *```$)", re.M | re.S)
LINK = re.compile(r"(!?)\[((?:[^\[\]]|\[[^\]]*\])*)\]\(([^)\s]+)\)")


def anchor(heading):
    """As a repository's host makes it."""
    return re.sub(r"[^\w\- ]", "", heading.replace("`", "").lower()).replace(" ", "-")


def page_id(path):
    """Of a page by its path in the repository."""
    name = re.sub(r"^docs/|\.md$", "", path.as_posix())
    return "page_" + re.sub(r"\W", "_", name).lower()


class Pages:
    def __init__(self, root, pages, headers, examples, names):
        self.root, self.headers, self.examples, self.names = root, headers, examples, names
        self.pages = {page.resolve(): page_id(page.relative_to(root)) for page in pages}

    def staged(self, page):
        """The text of a page for Doxygen."""
        parts = FENCE.split(page.read_text())
        for i, part in enumerate(parts):
            parts[i] = part if i % 2 else self.prose(page, part)
        return "".join(parts)

    def prose(self, page, text):
        # Doxygen reads commands outside code; in its tables a code span ends a cell at a bar, however it is written.
        spans = re.split(r"(`[^`\n]*`)", text)
        for i, span in enumerate(spans):
            if i % 2:
                spans[i] = span.replace("\\|", "/")
            else:
                spans[i] = re.sub(r"\\(?!\|)", r"\\\\", span).replace("@", "\\@")
        text = re.sub(r'src="([^"]*/)?([^"/]+)"', r'src="\2"', "".join(spans))
        text = LINK.sub(lambda link: self.link(page, *link.groups()), text)
        text = re.sub(r"^(#+) (.*)$", lambda m: self.heading(page, m[1], m[2]), text, flags=re.M)
        return re.sub(r"(?<!\[)`(\w+)`(?!\])", lambda m: f"[{m[1]}](@ref {m[1]})" if m[1] in self.names else m[0], text)

    def heading(self, page, level, title):
        name = self.pages[page.resolve()]
        title = title.replace("`", "")
        return f"{level} {title} {{#{name if level == '#' else name + '_' + anchor(title)}}}"

    def link(self, page, image, text, target):
        if "://" in target:
            return f"[{text}]({target})"
        path, _, place = target.partition("#")
        file = (page.parent / path).resolve() if path else page.resolve()
        if image:
            return f"![{text}]({file.name})"
        plain = text.replace("`", "").replace("\n", " ")  # Doxygen takes no link that goes on on the next line
        if file in self.pages:
            return f"[{plain}](@ref {self.pages[file]}{'_' + place if place else ''})"
        if file in self.headers:
            return f"[{plain}](@ref {file.name})"
        if file in self.examples:
            return f"[{plain}](@ref {self.examples[file]})"
        return text  # a folder or a source, which the site does not have
