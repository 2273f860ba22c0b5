"""Whole command lines, from start to end, beside those of FreeIPMI and ipmitool that ask the same
controller. They open a session each time; the daemon keeps its own."""

import contextlib
import dataclasses
import pathlib
import shutil
import subprocess
import tempfile

from bridged import PLACES, bridged_blade, sim
from measure import Curve, Row, interleaved, pinned, printed, program

TIMES = 5
RUNS = 15
ENTRIES = 200
CURVE_ENTRIES = [10, 50, 100, 200, 400]
CURVE_RUNS = 7


@dataclasses.dataclass(frozen=True)
class Question:
    """The command lines that get one answer; where FreeIPMI has several, the fastest counts."""

    name: str
    ours: list
    freeipmi: list
    ipmitool: list
    goals: tuple = (2, 5)  # times faster than FreeIPMI's, and than ipmitool


LOG = Question(
    f"{ENTRIES} SEL entries",
    ["sel", "list"],
    [["ipmi-sel"]],
    ["sel", "list"],
    goals=(1.5, 4),
)
QUESTIONS = [
    Question(
        "power status",
        ["chassis", "power", "status"],
        [["ipmi-power", "--stat"], ["ipmi-chassis", "--get-chassis-status"]],
        ["chassis", "power", "status"],
    ),
    Question("SEL info", ["sel", "info"], [["ipmi-sel", "--info"]], ["sel", "info"]),
    Question("FRU", ["fru", "print"], [["ipmi-fru"]], ["fru", "print"]),
    LOG,
]

FLOORS = {"true": ["true"], "nothing in C++": [program("nothing")]}

# What FreeIPMI's tools keep is made before they are timed.
CACHED = {"ipmi-fru", "ipmi-sel"}

MANUFACTURERS = "0\n  Reserved\n    Example\n      example@example.com\n"


@dataclasses.dataclass(frozen=True)
class Tools:
    """Command lines that ask one blade's controller, all on the same processors."""

    blade: object
    home: pathlib.Path
    processors: str

    def ours(self, words):
        return [program("ruk-ipmi"), "-b", "1", *words]

    def freeipmi(self, words):
        """With an empty configuration: the usual one is long, and read at every start."""
        return [
            *words,
            *["--config-file", self.home / "freeipmi.conf", "-h", self.blade.address],
            *["-u", sim.USERNAME, "-p", sim.PASSWORD, "-l", "ADMIN", "-D", "LAN_2_0"],
            *["-W", "opensesspriv"],
        ]

    def ipmitool(self, words):
        port = str(self.blade.controller.port)
        return [
            *["ipmitool", "-I", "lanplus", "-C", "3", "-H", sim.ADDRESS, "-p", port],
            *["-U", sim.USERNAME, "-P", sim.PASSWORD, *words],
        ]

    @property
    def environment(self):
        return self.blade.environment | {"HOME": str(self.home)}

    def milliseconds(self, words):
        """How to take a sample of a command line, once it is known to work."""
        command = [shutil.which(words[0]), *words[1:]]
        subprocess.run(command, check=True, capture_output=True, env=self.environment)
        timed = pinned([program("time_command"), TIMES, *command], self.processors)
        return lambda: printed(timed, env=self.environment) / 1e6


@contextlib.contextmanager
def tools_on(processors):
    """With a home directory that makes the peers quick: ipmitool finds a list of manufacturers that
    is short, and FreeIPMI keeps its copy of the SDR there, which the first command makes."""
    with (
        tempfile.TemporaryDirectory(prefix="ruk-bench-") as name,
        bridged_blade(processors) as blade,
    ):
        home = pathlib.Path(name)
        home.joinpath("freeipmi.conf").touch()
        numbers = home / ".local/usr/share/misc/enterprise-numbers.txt"
        numbers.parent.mkdir(parents=True)
        numbers.write_text(MANUFACTURERS)
        yield Tools(blade, home, processors)


def timed(question, tools, runs):
    """By the tool; FreeIPMI's is the fastest of its own."""
    peers = {
        "ours": tools.milliseconds(tools.ours(question.ours)),
        "ipmitool": tools.milliseconds(tools.ipmitool(question.ipmitool)),
    }
    peers |= {
        words[0]: tools.milliseconds(tools.freeipmi(words)) for words in question.freeipmi
    }
    took = interleaved(peers, runs)
    fastest = min((words[0] for words in question.freeipmi), key=lambda each: took[each].median)
    return {"ours": took["ours"], fastest: took[fastest], "ipmitool": took["ipmitool"]}


def compared(question, place, took, gated):
    ours = took["ours"]
    peers = [peer for peer in took if peer != "ours"]
    for peer, goal in zip(peers, question.goals):
        faster = took[peer] / ours
        yield Row(
            f"{question.name}, whole command line, {place}",
            f"{ours} ms",
            f"{peer}{', its SDR cache made' if peer in CACHED else ''}: {took[peer]} ms",
            f"{faster:.1f} x faster",
            f"{goal} x faster" if gated else "",
            faster >= goal if gated else None,
        )


def floors(place, tools):
    took = interleaved({name: tools.milliseconds(words) for name, words in FLOORS.items()}, RUNS)
    return Row(
        f"a program that does nothing, in C++, {place}",
        f"{took['nothing in C++']} ms",
        f"true: {took['true']} ms",
        f"{took['nothing in C++'] / took['true']:.1f} x",
    )


def rows():
    found = []
    for place, processors in PLACES.items():
        with tools_on(processors) as tools:
            tools.blade.add_entries(ENTRIES)
            found.append(floors(place, tools))
            for question in QUESTIONS:
                took = timed(question, tools, RUNS)
                found += compared(question, place, took, gated=processors == "0")
    return found


def curves():
    peers = {}
    with tools_on("0") as tools:
        present = 0
        for count in CURVE_ENTRIES:
            tools.blade.add_entries(count - present)
            present = count
            for peer, took in timed(LOG, tools, CURVE_RUNS).items():
                peers.setdefault(peer, []).append((count, took.median))
    peers["ruk-ipmi"] = peers.pop("ours")
    return [
        Curve(
            "sel_entries",
            "A whole log printed by one command line",
            "SEL entries",
            "milliseconds",
            peers,
        )
    ]
