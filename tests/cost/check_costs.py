"""Compares what the shipped worker's requests cost with the figures that are kept beside this file.

More is a regression. Less is a gain that the next regression would use up unseen, so it is recorded:
scripts/bench --renew-costs writes the figures anew, and the commit that changes them says why.
"""

import json
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "bench"))
from costs import costs, libraries
from setting import INFO, REQUESTS, Setting

FIGURES = pathlib.Path(__file__).with_name("costs.json")
TOLERANCE = 0.05


def measure(build):
    """The figures, named as they are kept."""
    figures = {}
    with Setting(build) as setting:
        for name, text in REQUESTS.items():
            for when, taken in zip(("a worker's first", "each further"),
                                   costs(setting, text)):
                for what, figure in taken._asdict().items():
                    figures[f"{name}, {when}: {what.replace('_', ' ')}"] = round(figure)
        figures["files with code in memory"] = libraries(setting, INFO)
    return figures


def differs(figure, kept):
    if isinstance(figure, int) and isinstance(kept, int):
        return abs(figure - kept) > TOLERANCE * kept
    return figure != kept


def main():
    figures = measure(sys.argv[1])
    if sys.argv[2:] == ["--renew"]:
        FIGURES.write_text(json.dumps(figures, indent=1) + "\n", encoding="utf-8")
        return 0
    kept = json.loads(FIGURES.read_text(encoding="utf-8"))
    found = [f"{name}: {figures.get(name)}, not {kept.get(name)}"
             for name in {**kept, **figures} if differs(figures.get(name), kept.get(name))]
    print("\n".join(found) or f"{len(kept)} figures hold")
    if found:
        print("If that is meant: scripts/bench --renew-costs")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
