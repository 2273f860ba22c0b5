"""What it takes until the last process that waits for an interrupt has been told of it."""

from chassis import blades, bus, chassis
from measure import Row, interleaved, number, pinned, printed, program

TIMES = 60
RUNS = 7
BOTH = "0,1"


def wakes(processes, processors):
    """Nanoseconds, by what wakes the processes."""

    def taken(name, *how, environment=None):
        command = [program(name), TIMES, processes, *how]
        return lambda: printed(pinned(command, processors), env=environment)

    with chassis(blades(1), processors) as served, bus(processors) as on_bus:
        peers = {
            "interrupt": taken("wake_interrupt", environment=served),
            "futex": taken("wake_futex", "1"),
            "two hops": taken("wake_futex", "2"),
            "dbus": taken("wake_dbus", environment=on_bus),
        }
        return interleaved(peers, RUNS)


def rows_of(processes, processors, gated):
    figures = wakes(processes, processors)
    ours, futex, hops, dbus = (
        figures[each] for each in ("interrupt", "futex", "two hops", "dbus")
    )
    plural = "es" if processes > 1 else ""
    place = "two processors" if processors == BOTH else "one processor"
    what = f"interrupt to callback in {processes} process{plural}, {place}"
    times_futex, times_dbus = ours / futex, dbus / ours
    return [
        Row(
            what,
            f"{ours} ns",
            f"futex wake: {futex} ns",
            f"{number(times_futex)} x",
            "at most 2 x" if gated else "",
            times_futex <= 2 if gated else None,
        ),
        Row(
            what,
            f"{ours} ns",
            f"futex wake, handed on to a second thread: {hops} ns, "
            f"{number(hops / futex)} x the futex wake",
            f"{number(ours / hops)} x",
        ),
        Row(
            what,
            f"{ours} ns",
            f"D-Bus signal: {dbus} ns",
            f"{number(times_dbus)} x faster",
            "ahead" if gated else "",
            times_dbus > 1 if gated else None,
        ),
    ]


def rows():
    return [
        row
        for processors in ("0", BOTH)
        for processes in (1, 16)
        for row in rows_of(processes, processors, gated=processors == "0")
    ]
