"""The rows of ratios.txt: reading them, and telling from measured figures which goals are met."""
import dataclasses
import math

KNOWN = "known:"

# A virtual machine from which more is taken stands still for tens of milliseconds now and then.
MAX_STOLEN = 0.01


@dataclasses.dataclass(frozen=True)
class Row:
    what: str
    program: str
    figure: str
    reference: str  # empty for a plain figure
    at_most: float
    known: str  # why the goal is out of reach on this machine; empty where it is not


def parse(text):
    return [row(line) for line in text.splitlines() if line.strip() and not line.startswith("#")]


def row(line):
    fields = [field.strip() for field in line.split("|")]
    if len(fields) == 5:
        fields.append(KNOWN)
    if len(fields) != 6 or not fields[5].startswith(KNOWN):
        raise ValueError(f"five columns, or a sixth that begins with '{KNOWN}': {line}")
    what, program, figure, reference, at_most, known = fields
    return Row(what, program, figure, "" if reference == "-" else reference, float(at_most),
               known.removeprefix(KNOWN).strip())


@dataclasses.dataclass(frozen=True)
class Result:
    row: Row
    figure: float
    reference: float  # 1 for a plain figure
    stolen: float = 0.0  # share of the machine's time that its host gave to others meanwhile

    @property
    def ratio(self):
        return self.figure / self.reference if self.reference else math.inf

    @property
    def is_met(self):
        return self.ratio <= self.row.at_most

    @property
    def is_disturbed(self):
        return self.stolen > MAX_STOLEN

    @property
    def fails(self):
        return not self.is_met and not self.row.known and not self.is_disturbed

    @property
    def verdict(self):
        if self.is_met:
            return "met"
        if self.row.known:
            return f"**missed**, known: {self.row.known}"
        if self.is_disturbed:
            return f"**missed**, while {self.stolen:.0%} of the machine was taken away: measure again"
        return "**MISSED**"


def result(row, figures, stolen=0.0):
    """The row's figures out of those of its program; an unknown name is a fault of ratios.txt."""
    return Result(row, figures[row.figure], figures[row.reference] if row.reference else 1.0, stolen)


def stolen_share(before, after):
    """Between two readings of /proc/stat: the share of the time that the host of a virtual machine
    gave to others."""
    spent = [int(later) - int(former) for former, later in
             zip(before.split("\n")[0].split()[1:9], after.split("\n")[0].split()[1:9])]
    return spent[7] / sum(spent) if sum(spent) else 0.0


def better_of(former, later):
    """Of two measurements of the same rows, each row's lower ratio."""
    return [min(pair, key=lambda each: each.ratio) for pair in zip(former, later, strict=True)]


def why_left_out(row, figures):
    """Why one of the row's two could not be measured here; empty when both were."""
    reasons = [figures.get(name) for name in (row.figure, row.reference)]
    return next((reason for reason in reasons if isinstance(reason, str)), "")


def table(results):
    """A table in Markdown whose columns also line up in a terminal."""
    lines = [["what", "figure", "against", "ratio", "goal: at most", ""]]
    lines += [cells(each) for each in results]
    widths = [max(len(line[column]) for line in lines) for column in range(6)]
    lines.insert(1, ["-" * width for width in widths])
    return "\n".join("| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |"
                     for line in lines)


def cells(each):
    row = each.row
    if not row.reference:
        return [row.what, amount(row.figure, each.figure), "–", f"{each.ratio:.3g}",
                f"{row.at_most:g}", each.verdict]
    return [row.what, amount(row.figure, each.figure), amount(row.reference, each.reference),
            f"{each.ratio:.2f}", f"{row.at_most:g}", each.verdict]


def amount(name, number):
    return f"{name} {number:,.4g}" if is_counter(name) else f"{name} {duration(number)}"


def is_counter(name):
    """Google Benchmark's own names may hold a colon too."""
    last = name.rpartition(":")[2] if ":" in name else ""
    return bool(last) and not last.split("/")[0].isdigit()


def duration(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"
