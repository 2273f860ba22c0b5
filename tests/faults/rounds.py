"""What is done to the processes of a chassis: rounds of faults, drawn at random."""

import dataclasses
import signal
import time

KILL, TERMINATE, STOP = "killed", "terminated", "stopped"

# Whoever does not answer again within that time is taken to be lost for good.
RECOVERY_LIMIT = 30

MOST_AT_ONCE = 3


@dataclasses.dataclass
class Fault:
    victim: object
    kind: str
    begins: float  # seconds from the beginning of the round on
    lasts: float

    def begin(self):
        if self.kind == STOP:
            self.victim.process.send_signal(signal.SIGSTOP)
        else:
            self.victim.kill(signal.SIGTERM if self.kind == TERMINATE else signal.SIGKILL)

    def end(self):
        if self.kind == STOP:
            self.victim.process.send_signal(signal.SIGCONT)
        else:
            self.victim.start()

    def __str__(self):
        return f"{self.victim.name} {self.kind} for {self.lasts:.1f} s"


def drawn_round(draw, chassis, longest, daemon_may_die):
    """Some of the processes, each with what happens to it and when; one that may die is the daemon
    every time."""
    victims = [chassis.daemon] if daemon_may_die else []
    for _ in range(draw.randint(1, MOST_AT_ONCE)):
        group = draw.choice([[chassis.daemon], chassis.controllers, chassis.clients])
        victims.append(draw.choice(group))
    faults = {}
    for victim in victims:
        kinds = [KILL, STOP]
        if victim is chassis.daemon:
            kinds = [KILL, TERMINATE, STOP] if daemon_may_die else [STOP]
        # Most are short, some are so long that calls run out of time.
        lasts = longest * draw.random() ** 2
        begins = draw.uniform(0, longest / 4)
        faults[victim.name] = Fault(victim, draw.choice(kinds), begins, lasts)
    return list(faults.values())


def carry_out(faults):
    """The moment when the last fault ended."""
    steps = [(each.begins, each.begin) for each in faults]
    steps += [(each.begins + each.lasts, each.end) for each in faults]
    began = time.monotonic()
    for at, step in sorted(steps, key=lambda step: step[0]):
        time.sleep(max(0, began + at - time.monotonic()))
        step()
    return time.monotonic()
