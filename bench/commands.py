"""What a command function costs beside the message service: Get SEL Entry over one that costs
nothing, the least that such a function can do, and FreeIPMI's objects doing the same packing."""

import functools
import re
import subprocess

import measure
import small_builds
import stack

LIBRARY = [measure.program("command_library")]
FLOOR = [measure.program("command_floor")]
FRESH = [measure.program("command_freeipmi"), "fresh"]
KEPT = [measure.program("command_freeipmi"), "kept"]

WHAT = "Get SEL Entry over a null transport"
FLOOR_NAME = "two records cleared, the answer copied"
FRESH_NAME = "FreeIPMI's objects made afresh"
KEPT_NAME = "FreeIPMI's objects kept"

RECORDS = 2 * 512
STACK_LIMIT = 1536


def instruction_rows():
    ours, floor, fresh, kept = (
        measure.instructions_each(each) for each in (LIBRARY, FLOOR, FRESH, KEPT)
    )
    what = f"{WHAT}, instructions"
    return [
        measure.Row(
            what,
            measure.number(ours),
            f"{FLOOR_NAME}: {measure.number(floor)}",
            f"floor + {ours - floor:.0f}",
            "floor + 150",
            ours - floor <= 150,
        ),
        measure.Row(
            what,
            measure.number(ours),
            f"{FRESH_NAME}: {measure.number(fresh)}",
            f"{fresh / ours:.1f} x fewer",
            "30 x fewer",
            fresh / ours >= 30,
        ),
        measure.Row(
            what,
            measure.number(ours),
            f"{KEPT_NAME}: {measure.number(kept)}",
            f"{kept / ours:.1f} x fewer",
        ),
    ]


def time_rows():
    def taking(command, count):
        return functools.partial(measure.printed, measure.pinned([*command, count]))

    taken = measure.interleaved(
        {
            WHAT: taking(LIBRARY, 200_000),
            FLOOR_NAME: taking(FLOOR, 200_000),
            FRESH_NAME: taking(FRESH, 5_000),
            KEPT_NAME: taking(KEPT, 10_000),
        },
        runs=11,
    )
    ours = taken[WHAT]
    times_floor = ours / taken[FLOOR_NAME]
    rows = [
        measure.Row(
            f"{WHAT}, ns",
            str(ours),
            f"{FLOOR_NAME}: {taken[FLOOR_NAME]}",
            f"{times_floor:.2f} x",
            "at most 2 x",
            times_floor <= 2,
        )
    ]
    for peer in FRESH_NAME, KEPT_NAME:
        ratio = f"{taken[peer] / ours:.1f} x faster"
        rows.append(measure.Row(f"{WHAT}, ns", str(ours), f"{peer}: {taken[peer]}", ratio))
    return rows


def heap_calls(command):
    """In a whole run of the command, as valgrind counts them."""
    done = subprocess.run(
        ["valgrind", *command], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
        text=True,
    )
    return int(re.search(r"total heap usage: ([\d,]+) allocs", done.stderr)[1].replace(",", ""))


def heap_calls_each(command, few=100, many=1_100):
    first, second = (heap_calls([*command, str(count)]) for count in (few, many))
    return (second - first) / (many - few)


def heap_row():
    ours, fresh, kept = (heap_calls_each(each) for each in (LIBRARY, FRESH, KEPT))
    return measure.Row(
        f"{WHAT}, heap calls",
        f"{ours:g}",
        f"{FRESH_NAME}: {fresh:g}; kept: {kept:g}",
        "",
        "0",
        ours == 0,
    )


def stack_row():
    """The frames of the command that takes the most stack, and of what it calls in the library on
    the way to the message service."""
    ours, path = stack.greatest(small_builds.for_powerpc())
    return measure.Row(
        f"stack of the deepest command ({path[0]}), powerpc, -Os, bytes",
        f"{ours:,}",
        f"the two records: {RECORDS:,}",
        f"records + {ours - RECORDS}",
        "under 1.5 KiB",
        ours < STACK_LIMIT,
    )


def rows():
    return [*instruction_rows(), *time_rows(), heap_row(), stack_row()]
