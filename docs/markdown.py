"""What pages of Markdown hold: the text outside of code blocks, headings, links."""

import re

LINK = re.compile(r"(\[(?:[^\[\]]|\[[^\]]*\])*\])\(([^()\s]+)\)")
HEADING = re.compile(r"^(#{1,6})\s+(.*?)\s*#*$")
FENCE = re.compile(r"^\s*(`{3,}|~{3,})")


def marked_lines(lines):
    """Each line, and whether it is text: not in a code block, and not its fence."""
    fence = None
    for line in lines:
        mark = FENCE.match(line)
        if fence is not None:
            yield line, False
            if mark is not None and line.strip() == fence:
                fence = None
        else:
            if mark is not None:
                fence = mark[1]
            yield line, mark is None


class Anchors:
    """What a link may name behind the # of a page, as hosts of Markdown make it from headings."""

    def __init__(self):
        self.known = set()

    def add(self, heading):
        text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading).lower()
        base = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
        anchor, count = base, 0
        while anchor in self.known:
            count += 1
            anchor = f"{base}-{count}"
        self.known.add(anchor)
        return anchor
