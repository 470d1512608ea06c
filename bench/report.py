"""Samples, and tables in Markdown."""
import dataclasses
import statistics


@dataclasses.dataclass(frozen=True)
class Sample:
    median: float
    least: float
    most: float

    @classmethod
    def of(cls, values):
        return cls(statistics.median(values), min(values), max(values))


def number(value):
    """With the digits that it is known to."""
    return f"{value:,.0f}" if abs(value) >= 100 else f"{value:,.1f}" if abs(value) >= 10 else f"{value:,.2f}"


def spread(sample):
    return f"{number(sample.median)} ({number(sample.least)} to {number(sample.most)})"


def ratio(value, base):
    return f"×{number(value / base)}" if base else "–"


def table(title, header, rows, note=None):
    print(f"## {title}\n")
    print("| " + " | ".join(header) + " |")
    print("|" + "---|" * len(header))
    for row in rows:
        print("| " + " | ".join(row) + " |")
    print(f"\n{note}\n" if note else "", flush=True)
