"""The record of instruction counts: reading and writing it, and telling what has grown."""
import dataclasses

MOST_GROWTH = 1.05

HEADER = """\
# Instructions of the workloads of bench/instructions, and what they were counted with.
# Renewed by bench/instructions --renew; the commit message says why the counts have changed.
"""


@dataclasses.dataclass(frozen=True)
class Record:
    versions: dict  # of what the counts depend on
    counts: dict  # by workload


def parse(text):
    lines = [line.split(": ", 1) for line in text.splitlines()
             if line.strip() and not line.startswith("#")]
    return Record(versions={key: value for key, value in lines if not value.isdigit()},
                  counts={key: int(value) for key, value in lines if value.isdigit()})


def text_of(record):
    return HEADER + "".join(f"{key}: {value}\n"
                            for key, value in (record.versions | record.counts).items())


def other_versions(recorded, counted):
    """What differs of what the counts depend on: counts of two compilers say nothing about a change
    of ours."""
    names = recorded.versions.keys() | counted.versions.keys()
    return [f"{name} {counted.versions.get(name)} instead of {recorded.versions.get(name)}"
            for name in sorted(names)
            if recorded.versions.get(name) != counted.versions.get(name)]


def growth(recorded, counted):
    """Each workload's count as a multiple of the recorded one; None where none is recorded."""
    return {name: count / recorded.counts[name] if name in recorded.counts else None
            for name, count in counted.counts.items()}


def has_grown(ratio):
    return ratio is None or ratio > MOST_GROWTH
