"""Figures as they are shown: tables in Markdown, goals, and their place in a document."""

import re
import statistics


class Samples:
    """Figures of one contender."""

    def __init__(self, values):
        self.low, self.median, self.high = statistics.quantiles(values, n=4)

    def text(self, unit=1, digits=1):
        low, median, high = (f"{value / unit:,.{digits}f}" for value in
                             (self.low, self.median, self.high))
        return f"{median} ({low} to {high})"


class Report:
    """Prints each table as soon as it is there, and keeps it."""

    def __init__(self):
        self.tables = {}
        self.goals = []

    def add(self, name, title, head, rows, note=""):
        text = "\n".join("| " + " | ".join(map(str, row)) + " |"
                         for row in (head, ["---"] * len(head), *rows))
        self.tables[name] = f"{title}:\n\n{text}\n" + (f"\n{note}\n" if note else "")
        print(f"\n{self.tables[name]}", end="", flush=True)

    def add_goal(self, figure, measured, limit, digits=2):
        self.goals.append([figure, f"{measured:,.{digits}f}", f"{limit:,}",
                           "met" if measured <= limit else "not met"])

    def add_goals(self):
        self.add("goals", "Goals", ["figure", "measured", "at most", ""], self.goals)

    def write_into(self, path):
        """Puts every table into its place in the document at path: between <!-- NAME --> and
        <!-- end -->. Every place must have one: tables of two runs do not belong together."""
        places = r"(<!-- ([\w-]+) -->\n).*?(<!-- end -->)"
        document = path.read_text(encoding="utf-8")
        path.write_text(re.sub(places, self._fill, document, flags=re.DOTALL), encoding="utf-8")

    def _fill(self, place):
        begin, name, end = place.groups()
        return f"{begin}{self.tables[name]}{end}"
