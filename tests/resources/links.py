# SPDX-License-Identifier: MIT
"""links.py BUILT SOURCES: walks the built help from its first page. Fails on a link or picture whose
file does not exist or is outside the folder, and on a source file that no page refers to."""

import html.parser
import pathlib
import sys
import urllib.parse


class References(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.found = []

    def handle_starttag(self, tag, attributes):
        self.found += [value for name, value in attributes if name in ("href", "src")]


root = pathlib.Path(sys.argv[1]).resolve()
faults = []
reached = {root / "index.html"}
waiting = list(reached)
while waiting:
    page = waiting.pop()
    references = References()
    references.feed(page.read_text(encoding="utf-8"))
    for reference in references.found:
        address = urllib.parse.urlsplit(reference)
        target = (page.parent / urllib.parse.unquote(address.path)).resolve()
        if address.scheme or address.netloc or not target.is_relative_to(root) or not target.is_file():
            faults.append(f"{page.relative_to(root)} refers to {reference}")
        elif target not in reached:
            reached.add(target)
            waiting += [target] if target.suffix == ".html" else []

faults += [f"no page refers to {file}" for file in sorted(pathlib.Path(sys.argv[2]).iterdir())
           if root / "help" / file.name not in reached]
sys.exit("\n".join(faults) or 0)
