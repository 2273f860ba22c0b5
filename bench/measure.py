"""How figures are got on a machine that is shared and noisy: peers in turn, several times, medians
with their ranges, and instructions counted rather than timed where that can be done."""

import dataclasses
import os
import pathlib
import re
import statistics
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
BUILD = pathlib.Path(os.environ.get("RUK_BENCH_BUILD", ROOT / "build/bench"))


@dataclasses.dataclass(frozen=True)
class Figure:
    """What several samples of one quantity say."""

    samples: list

    @property
    def median(self):
        return statistics.median(self.samples)

    def __str__(self):
        least, most = min(self.samples), max(self.samples)
        return f"{number(self.median)} ({number(least)} to {number(most)})"

    def __truediv__(self, peer):
        """How many times the peer's, by the samples that were taken in turn: a machine that is
        slower for a while is slower for both."""
        pairs = zip(self.samples, peer.samples, strict=True)
        return statistics.median(ours / theirs for ours, theirs in pairs)

    def __add__(self, other):
        """One after the other."""
        return Figure([sum(pair) for pair in zip(self.samples, other.samples, strict=True)])


@dataclasses.dataclass(frozen=True)
class Row:
    """A row of the table. `met` is None where the figure stands for itself."""

    what: str
    ours: str
    against: str  # the peer or limit with its own figure
    ratio: str
    goal: str = ""
    met: bool | None = None


def number(value):
    """With three digits that count."""
    if value >= 100:
        return f"{value:,.0f}"
    return f"{value:.{1 if value >= 10 else 2}f}"


def interleaved(peers, runs):
    """Takes a sample of each peer in turn, `runs` times; `peers` are functions by name. What
    disturbs the machine for a while then disturbs them all."""
    samples = {name: [] for name in peers}
    for _ in range(runs):
        for name, take in peers.items():
            samples[name].append(take())
    return {name: Figure(taken) for name, taken in samples.items()}


def program(name):
    return str(BUILD / "bin" / name)


def pinned(command, processors="0"):
    """Keeps a command, and what it starts, on some processors: a wake-up across processors costs
    many times the software that is to be measured."""
    return ["taskset", "-c", processors, *map(str, command)]


def printed(command, **others):
    """The number that a command prints as its only output."""
    done = subprocess.run(
        [*map(str, command)], check=True, stdout=subprocess.PIPE, text=True, **others
    )
    return float(done.stdout)


def instructions(command):
    """That a command executes in user mode."""
    with tempfile.NamedTemporaryFile() as counts:
        done = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={counts.name}", *command],
            check=True,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            text=True,
        )
    return int(re.search(r"Collected : (\d+)", done.stderr)[1])


def instructions_each(command, few=1_000, many=11_000):
    """Of one of the operations that `command COUNT` does `COUNT` of: what starting and ending cost
    cancels out."""
    first, second = (instructions([*command, str(count)]) for count in (few, many))
    return (second - first) / (many - few)


@dataclasses.dataclass(frozen=True)
class Curve:
    """How a figure grows with the work: points of each peer by the peer's name."""

    name: str  # of the files that show it
    title: str
    x: str
    y: str
    peers: dict
