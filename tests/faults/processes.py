"""The processes of a chassis that are made to be killed: its daemon, its controllers, its clients.

Each has a name and, while it lives, a process, and all are started and killed alike: after SIGKILL
nothing is left of them, after SIGTERM they must have ended in order.
"""

import collections
import dataclasses
import json
import os
import signal
import subprocess

import sim

RECORDS = 48
RECORD_BODY = 48  # bytes

# How long an orderly end may take: clients wait until their commands have called back.
ENDING_LIMIT = 60


def end(process, number):
    """Sends the signal and waits for the end: what of it nobody meant, or nothing."""
    if process.poll() is not None:
        return [f"ended by itself with {process.returncode}"]
    process.send_signal(number)
    try:
        code = process.wait(ENDING_LIMIT)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
        return [f"did not end within {ENDING_LIMIT} s"]
    expected = 0 if number == signal.SIGTERM else -number
    return [] if code == expected else [f"ended with {code}"]


class Daemon:
    name = "daemon"

    def __init__(self, program, config, environment):
        self.command = [program, "--config", config]
        self.environment = environment
        self.process = None
        self.starts = 0
        self.bad_ends = []  # what nobody meant of its ends

    def start(self):
        read_end, write_end = os.pipe()
        self.process = subprocess.Popen(
            [*self.command, "--ready-fd", str(write_end)],
            pass_fds=[write_end],
            env=self.environment,
        )
        os.close(write_end)
        with os.fdopen(read_end) as ready:
            if ready.read() != "ready\n":
                raise RuntimeError("ruk-chassisd does not get ready")
        self.starts += 1

    def take_starts(self):
        """How many there were since the last time."""
        starts, self.starts = self.starts, 0
        return starts

    def kill(self, number=signal.SIGKILL):
        self.bad_ends += end(self.process, number)
        self.process = None


class Controller:
    """A controller behind RMCP+, whose records are drawn: no two blades have any in common."""

    def __init__(self, number, port, directory, draw):
        self.name = f"controller {number}"
        sdrs = [sim.sdr_body(0xC0, draw.randbytes(RECORD_BODY)) for _ in range(RECORDS)]
        self.sim = sim.Controller(port, directory / f"controller-{number}", sdrs=sdrs)
        self.records = directory / f"records-{number}"
        self.records.write_bytes(
            b"".join(number.to_bytes(2, "little") + sdr[2:] for number, sdr in enumerate(sdrs, 1))
        )
        self.bad_ends = []

    @property
    def process(self):
        return self.sim.process

    def start(self):
        self.sim.start()

    def kill(self, number=signal.SIGKILL):
        self.bad_ends += end(self.process, number)
        self.sim.stop()


@dataclasses.dataclass
class Tally:
    """What clients saw; `orderly`: the counts of those that ended in order."""

    counts: collections.Counter = dataclasses.field(default_factory=collections.Counter)
    longest_ms: dict = dataclasses.field(default_factory=dict)
    wrong: list = dataclasses.field(default_factory=list)
    orderly: collections.Counter = dataclasses.field(default_factory=collections.Counter)

    def add(self, other):
        self.counts += other.counts
        self.orderly += other.orderly
        self.wrong += other.wrong
        for what, ms in other.longest_ms.items():
            self.longest_ms[what] = max(ms, self.longest_ms.get(what, 0))


class Client:
    def __init__(self, number, program, blades, directory, environment, seed):
        self.name = f"client {number}"
        self.number = number
        self.command = [program, "--client", str(number), "--seed", str(seed), *blades]
        self.directory = directory
        self.environment = environment
        self.process = None
        self.life = 0
        self.bad_ends = []
        self.tally = Tally()  # of the lives that are over

    def start(self):
        self.life += 1
        self.results = self.directory / f"{self.name}.{self.life}".replace(" ", "-")
        self.results.touch()
        self.process = subprocess.Popen(
            [*self.command, "--life", str(self.life), "--results", self.results],
            env=self.environment,
        )

    def kill(self, number=signal.SIGKILL):
        self.bad_ends += end(self.process, number)
        self.process = None
        self.tally.add(self.seen())
        self.results.unlink()

    def last_line(self, lines=None):
        """The last whole one that tells all counts."""
        if lines is None:
            with open(self.results, "rb") as file:
                file.seek(0, os.SEEK_END)
                file.seek(max(0, file.tell() - 8192))
                lines = file.read().split(b"\n")[:-1]
        for line in reversed(lines):
            if line.startswith(b'{"at"'):
                return json.loads(line)
        return None

    def seen(self):
        """By the life that is just over."""
        lines = self.results.read_bytes().split(b"\n")[:-1]
        wrong = [json.loads(each)["wrong"] for each in lines if each.startswith(b'{"wrong"')]
        last = self.last_line(lines)
        if last is None:
            return Tally(wrong=wrong)
        counts = collections.Counter(last["counts"])
        return Tally(
            counts,
            last["longest_ms"],
            [f"{self.name}: {each}" for each in wrong],
            counts if last["ended"] else collections.Counter(),
        )

    def good_at(self):
        """When each of its conversations last had a right answer; empty before its first line."""
        last = self.last_line()
        return last["good_at"] if last else {}
