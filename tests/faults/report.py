"""What a run found, and the report of it."""

import collections
import time

import chassis
import looks
import processes

# The statuses that faults explain; any other means that something is broken.
NO_SERVICE, SERVICE_GONE = "0x5001", "0x5002"
EXPLAINED = {
    "0x5007": "no answer in time",
    "0x500a": "the controller does not answer",
}
EXPLAINED_BY_RESTARTS = {
    NO_SERVICE: "nobody serves the chassis",
    SERVICE_GONE: "the service went away",
}

WAYS = {
    "sync": "waited for",
    "hasty": "hardly waited for",
    "async": "called back",
}

# What a call may take beyond its time-out: a daemon that hangs takes a second to be found out.
MOST_BEYOND_MS = 1500


class Findings:
    def __init__(self):
        self.began = time.monotonic()
        self.faults = collections.Counter()  # by victim and kind
        self.stalls = []  # seconds and what they came after
        self.not_recovered = []
        self.bad_ends = []
        self.looked = []  # at the daemon, in each phase
        self.tally = processes.Tally()
        self.unexplained = collections.Counter()  # failures
        self.forgotten_for_nothing = 0

    def elapsed(self):
        return time.monotonic() - self.began

    def recovered(self, what, took, lost):
        self.stalls.append((took, what))
        self.not_recovered += [f"after {what}: {each}" for each in lost]

    def add_phase(self, looked, tally, restarts):
        self.looked.append((looked, restarts))
        self.tally.add(tally)
        explained = {**EXPLAINED, **(EXPLAINED_BY_RESTARTS if restarts else {})}
        for what, count in tally.counts.items():
            way, _, rest = what.partition(" failed ")
            if rest and rest not in explained:
                self.unexplained[rest] += count
        # A new daemon has new blades: each conversation may find out once.
        excused = restarts * chassis.CLIENTS * chassis.CONVERSATIONS * chassis.SIMULATED
        self.forgotten_for_nothing += max(0, tally.counts["forgotten"] - excused)

    def leaks(self):
        return [leak for looked, _ in self.looked for leak in looks.leaks(looked)]

    def overdue(self):
        return {what: ms for what, ms in self.tally.longest_ms.items() if ms > MOST_BEYOND_MS}

    def without_end(self):
        """Of clients that ended in order: exchanges that had no end at all."""
        ended = self.tally.orderly
        return sum(
            ended[f"{way} asked"] - ended[f"{way} answered"] - failures(ended, way) for way in WAYS
        )

    def musts(self):
        """What must be 0: the count of each, and examples."""
        counts = self.tally.counts
        return [
            ("wrongly successful", len(self.tally.wrong), self.tally.wrong),
            ("forgotten without a restart", self.forgotten_for_nothing, []),
            ("exchanges without an end", self.without_end(), []),
            ("async never called back", counts["async never called back"], []),
            ("async called back unasked, or twice", counts["async called back unasked"], []),
            ("calls too long after their time-out", len(self.overdue()), self.overdue()),
            ("failures that no fault explains", self.unexplained.total(), self.unexplained),
            ("not recovered", len(self.not_recovered), self.not_recovered),
            ("leaks of the daemon", len(self.leaks()), self.leaks()),
            ("ends that nobody meant", len(self.bad_ends), self.bad_ends),
        ]

    def total_faults(self):
        return sum(count for _, count, _ in self.musts())

    def text(self, seed, interrupted):
        lines = [
            "",
            row("seconds", f"{self.elapsed():.0f}"),
            row("seed", seed),
        ]
        if interrupted:
            lines.insert(0, "\ninterrupted: exchanges and looks are of the phases that ended")
        for (victim, kind), count in sorted(self.faults.items()):
            lines.append(row(f"{victim} {kind}", count))
        lines += ["", *self.exchanges(), "", *self.times(), "", *self.daemons(), "", "must be 0:"]
        for what, count, examples in self.musts():
            lines.append(row(f"  {what}", count))
            lines += [f"      {each}" for each in list(examples)[:5]]
        lines.append("")
        return "\n".join(lines)

    def exchanges(self):
        counts = self.tally.counts
        lines = []
        for way, said in WAYS.items():
            lines.append(row(f"asked, {said}", counts[f"{way} asked"]))
            lines.append(row("  answered", counts[f"{way} answered"]))
            for status, meaning in {**EXPLAINED, **EXPLAINED_BY_RESTARTS}.items():
                count = counts[f"{way} failed {status}"]
                if count:
                    lines.append(row(f"  {meaning}", count))
            lines.append(row("  under way when killed", self.cut_off(way)))
        lines.append(row("blades found new after a restart", counts["forgotten"]))
        return lines

    def cut_off(self, way):
        counts = self.tally.counts
        return counts[f"{way} asked"] - counts[f"{way} answered"] - failures(counts, way)

    def times(self):
        took, what = max(self.stalls, default=(0, "nothing"))
        ordered = sorted(seconds for seconds, _ in self.stalls) or [0]
        lines = [
            row("longest stall after a fault", f"{took:.2f} s, after {what}"),
            row("  half of them were below", f"{ordered[len(ordered) // 2]:.2f} s"),
        ]
        for way, said in WAYS.items():
            beyond = self.tally.longest_ms.get(f"{way} beyond its time-out", 0)
            lines.append(row(f"most beyond the time-out, {said}", f"{beyond} ms"))
        return lines

    def daemons(self):
        lines = []
        for looked, restarts in self.looked:
            if restarts:
                continue
            life = looked[-1].at - looked[0].at
            lines.append(row("daemon, looked at", f"{len(looked)} times in {life:.0f} s"))
            lines.append(row("  first", looked[0]))
            lines.append(row("  halfway", looked[len(looked) // 2]))
            lines.append(row("  last", looked[-1]))
            if looked[0].sanitized:
                lines.append("  its memory is judged by its sanitizer when it ends")
        return lines


def failures(counts, way):
    return sum(count for what, count in counts.items() if what.startswith(f"{way} failed "))


def row(what, value):
    return f"{what:<44}{value}"
