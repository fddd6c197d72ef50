"""Every link of the documents leads to something that is installed with them.

check_links.py SOURCES"""

import os
import re
import sys

os.chdir(sys.argv[1])
PAGES = ["README.md", "SECURITY.md", "CHANGELOG.md"]
FOLDERS = ["docs", "examples"]


def pages():
    yield from PAGES
    for folder in FOLDERS:
        for path, _, names in os.walk(folder):
            yield from (os.path.join(path, name) for name in names if name.endswith(".md"))


def prose(path):
    with open(path, encoding="utf-8") as file:
        return re.sub(r"^```.*?^```|^    .*?$", "", file.read(), flags=re.M | re.S)


def anchors(path):
    """The names that headings have as the targets of links."""
    titles = re.findall(r"^#+ (.+)$", prose(path), re.M)
    return {re.sub(r"[^\w -]", "", title.lower()).replace(" ", "-") for title in titles}


def fault(page, link):
    path, _, anchor = link.partition("#")
    target = os.path.normpath(os.path.join(os.path.dirname(page), path)) if path else page
    if target not in PAGES and target.split("/")[0] not in FOLDERS:
        return "is not installed"
    if not os.path.exists(target):
        return "is not there"
    return "has no such heading" if anchor and anchor not in anchors(target) else None


FAULTS, COUNT = [], 0
for source in pages():
    for to in re.findall(r"\]\(([^)]+)\)", prose(source)):
        COUNT += 1
        if not re.match("https?:", to) and fault(source, to):
            FAULTS.append(f"{source}: {to} {fault(source, to)}")
print("\n".join(FAULTS) or f"{COUNT} links lead somewhere")
sys.exit(1 if FAULTS or COUNT < 50 else 0)
