"""The interrupt ring: interrupts written and read, each beside a record copied into or out of the
same memory under the same mutex."""

import functools
import os
import tempfile

import measure

PROGRAM = measure.program("ring")
PAIRS = [  # what, and the copy beside it
    ("of that, an interrupt written", "write", "copy-in"),
    ("of that, the newest interrupt read by one who has the others", "read-newest", "copy-out"),
    ("interrupts read in a row, from the oldest on", "read-in-a-row", "copy-out"),
]
GOAL = 1.5


def told(name, taken, counted):
    """A figure of nanoseconds as a rate, with what it stands on."""
    rate = 1e3 / taken[name].median
    return f"{rate:.2f} million: {taken[name]} ns, {measure.number(counted[name])} instructions"


def part(what, operation, copy, taken, counted):
    ratio = taken[operation] / taken[copy]
    return measure.Row(
        f"{what}, per second",
        told(operation, taken, counted),
        f"a record copied under the same mutex: {told(copy, taken, counted)}",
        f"{ratio:.2f} x its cost",
    )


def followed(taken):
    """What an interrupt costs from the producer to a reader who takes each as it comes."""
    ours = taken["write"] + taken["read-newest"]
    copies = taken["copy-in"] + taken["copy-out"]
    ratio = ours / copies
    return measure.Row(
        "interrupts written and read as they come, per second",
        f"{1e3 / ours.median:.2f} million",
        f"records copied in and out under the same mutex: {1e3 / copies.median:.2f} million",
        f"{ratio:.2f} x the cost",
        f"at most {GOAL} x",
        ratio <= GOAL,
    )


def rows():
    names = ["write", "copy-in", "read-newest", "read-in-a-row", "copy-out"]
    with tempfile.TemporaryDirectory() as directory:
        os.environ["RUK_RUNTIME_DIR"] = directory
        try:
            samples = {
                name: functools.partial(measure.printed, measure.pinned([PROGRAM, name, 50_000]))
                for name in names
            }
            taken = measure.interleaved(samples, runs=11)
            counted = {name: measure.instructions_each([PROGRAM, name]) for name in names}
        finally:
            del os.environ["RUK_RUNTIME_DIR"]
    return [followed(taken)] + [part(*pair, taken, counted) for pair in PAIRS]
