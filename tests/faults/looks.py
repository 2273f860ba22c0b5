"""Looks at a daemon that nobody asks anything, and what may not change from one to the next."""

import dataclasses
import os
import pathlib
import time

# How long a daemon has after its clients have gone to let go of what it held for them.
SETTLING = 3

# What a daemon's private memory may grow in the second half of a phase. Measured were 8 KiB in
# 452 s, 52 KiB from the first look on: the heap's highest level. 24 bytes that are forgotten with
# every answer come to 300 KiB within 8 s.
MOST_GROWTH_KB = 128
TERABYTE_KB = 1 << 30


@dataclasses.dataclass(frozen=True)
class Look:
    at: float
    descriptors: int
    threads: int
    private_kb: int  # resident and nobody else's
    data_kb: int  # asked of the kernel
    files: frozenset  # in the runtime directory
    shared_objects: frozenset  # POSIX shared memory that bears the product's name
    sanitized: bool

    def __str__(self):
        return (
            f"{self.descriptors} descriptors, {self.threads} threads, "
            f"{self.private_kb} KiB private, {self.data_kb} KiB data"
        )


def status(pid):
    lines = pathlib.Path(f"/proc/{pid}/status").read_text().splitlines()
    return {name: value.split() for name, _, value in (line.partition(":") for line in lines)}


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def look_at(pid, runtime, like=None):
    """Waits a while until there are as many descriptors as in the look `like`."""
    until = time.monotonic() + SETTLING
    time.sleep(0.2)
    while like and descriptors(pid) != like.descriptors and time.monotonic() < until:
        time.sleep(0.05)
    values = status(pid)
    return Look(
        time.monotonic(),
        descriptors(pid),
        int(values["Threads"][0]),
        int(values["RssAnon"][0]),
        int(values["VmData"][0]),
        frozenset(os.listdir(runtime)),
        frozenset(name for name in os.listdir("/dev/shm") if "ruk" in name),
        is_sanitized(values),
    )


def is_sanitized(values):
    """A sanitizer's memory grows by itself, and it looks for leaks itself when the daemon ends. Its
    shadow of all memory is some terabytes, of which hardly any are ever touched."""
    return int(values["VmSize"][0]) > TERABYTE_KB


def leaks(looks):
    """What two or more looks tell that was not given back. Where the daemon was restarted between
    them, nothing can be told of its memory: there are just two looks then."""
    first, last = looks[0], looks[-1]
    found = []
    for look in looks[1:]:
        if look.descriptors != first.descriptors:
            found.append(f"descriptors: {first.descriptors}, then {look.descriptors}")
        if look.threads != first.threads:
            found.append(f"threads: {first.threads}, then {look.threads}")
        if look.files != first.files:
            found.append(f"files: {', '.join(sorted(look.files ^ first.files))}")
        if look.shared_objects != first.shared_objects:
            found.append(f"shared memory: {', '.join(look.shared_objects ^ first.shared_objects)}")
    growth = last.private_kb - looks[len(looks) // 2].private_kb
    if not last.sanitized and growth > MOST_GROWTH_KB:
        found.append(f"private memory: {growth} KiB more in the second half of its life")
    return found
