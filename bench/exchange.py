"""What an exchange costs, and how many a daemon serves at once."""

import functools
import statistics
import subprocess
import tempfile

from chassis import blades, bus, chassis
from measure import Curve, Figure, Row, interleaved, number, pinned, printed, program

ROUND_TRIPS = 2_000
RUNS = 21
BOTH = "0,1"

CLIENTS = [1, 2, 4, 8, 16, 32, 64]
WINDOW_MS = 500
WINDOWS = 5


@functools.cache
def round_trips():
    """Nanoseconds each, by what makes them; on one processor where nothing else is said."""
    exchange = [program("round_trip_exchange"), ROUND_TRIPS, 1]
    socket = [program("round_trip_socket"), "blocking", ROUND_TRIPS]
    epoll = [program("round_trip_socket"), "epoll", ROUND_TRIPS]
    dbus = [program("round_trip_dbus"), ROUND_TRIPS]
    with (
        chassis(blades(1), processors="0") as near,
        chassis(blades(1), processors="1") as far,
        bus(processors="0") as on_bus,
        tempfile.TemporaryDirectory(prefix="ruk-bench-") as directory,
    ):
        zeromq = [program("round_trip_zeromq"), ROUND_TRIPS, f"{directory}/socket"]
        peers = {
            "ours": lambda: printed(pinned(exchange), env=near),
            "socket": lambda: printed(pinned(socket)),
            "epoll": lambda: printed(pinned(epoll)),
            "dbus": lambda: printed(pinned(dbus), env=on_bus),
            "zeromq": lambda: printed(pinned(zeromq)),
            "ours on two": lambda: printed(pinned(exchange), env=far),
            "socket on two": lambda: printed(pinned([*socket, "1"])),
        }
        return interleaved(peers, RUNS)


def counts(peer, clients, processors, environment):
    """How many exchanges each client did in the window."""
    command = [program("throughput"), peer, clients, WINDOW_MS]
    done = subprocess.run(
        pinned(command, processors), check=True, stdout=subprocess.PIPE, text=True, env=environment
    )
    return [int(line) for line in done.stdout.split()]


@functools.cache
def windows(processors):
    """The counts of several windows, by peer and number of clients."""
    taken = {}
    with chassis(blades(1), processors) as served:
        for clients in CLIENTS:
            ours, bare = taken["ours", clients], taken["bare", clients] = [], []
            for _ in range(WINDOWS):
                ours.append(counts("ours", clients, processors, served))
                bare.append(counts("bare", clients, processors, served))
    return taken


def rates(counted):
    """Exchanges per second of all clients, window by window."""
    return [sum(window) * 1000 / WINDOW_MS for window in counted]


def unfairness(counted):
    """How far the client that is farthest from the mean is from it, as a part of it."""
    return statistics.median(
        max(abs(each / statistics.mean(window) - 1) for each in window) for window in counted
    )


def round_trip_rows():
    taken = round_trips()
    ours = taken["ours"]
    times_socket = ours / taken["socket"]
    times_dbus = taken["dbus"] / ours
    times_far = taken["ours on two"] / taken["socket on two"]

    def row(peer, name, ratio, goal="", met=None):
        against = f"{name}: {taken[peer]} ns"
        return Row("exchange, one processor", f"{ours} ns", against, ratio, goal, met)

    return [
        row(
            "socket",
            "bare socket",
            f"{number(times_socket)} x",
            "at most 1.2 x",
            times_socket <= 1.2,
        ),
        row(
            "epoll",
            "bare socket, its server in epoll_wait",
            f"{number(ours / taken['epoll'])} x",
        ),
        row(
            "dbus",
            "D-Bus method call",
            f"{number(times_dbus)} x faster",
            "4.5 x faster",
            times_dbus >= 4.5,
        ),
        row(
            "zeromq",
            "ZeroMQ request and reply",
            f"{number(taken['zeromq'] / ours)} x faster",
        ),
        Row(
            "exchange, two processors",
            f"{taken['ours on two']} ns",
            f"bare socket: {taken['socket on two']} ns",
            f"{number(times_far)} x",
        ),
    ]


def throughput_rows(processors, place, gated):
    taken = windows(processors)
    ratios = {
        clients: statistics.median(
            ours / bare
            for ours, bare in zip(rates(taken["ours", clients]), rates(taken["bare", clients]))
        )
        for clients in CLIENTS
    }
    least = min(ratios, key=ratios.get)
    unfair = {
        peer: max(unfairness(taken[peer, clients]) for clients in CLIENTS)
        for peer in ("ours", "bare")
    }
    return [
        Row(
            f"exchanges per second, {place}, at the worst of 1 to {CLIENTS[-1]} clients: {least}",
            str(Figure(rates(taken["ours", least]))),
            f"bare server: {Figure(rates(taken['bare', least]))}",
            f"{number(ratios[least])} x",
            "at least 0.85 x" if gated else "",
            ratios[least] >= 0.85 if gated else None,
        ),
        Row(
            f"the client farthest from the mean, {place}, at the worst of these",
            f"{unfair['ours']:.1%}",
            f"bare server: {unfair['bare']:.1%}",
            "",
            "at most 20%" if gated else "",
            unfair["ours"] <= 0.2 if gated else None,
        ),
    ]


def rows():
    return [
        *round_trip_rows(),
        *throughput_rows("0", "one processor", gated=True),
        # Here it is the scheduler that decides which clients share a processor with the server.
        *throughput_rows(BOTH, "two processors", gated=False),
    ]


def curves():
    peers = {
        f"{name}, {place}": (peer, processors)
        for name, peer in (("ours", "ours"), ("bare server", "bare"))
        for place, processors in (("one processor", "0"), ("two processors", BOTH))
    }

    def points(value):
        return {
            name: [
                (clients, value(clients, statistics.median(rates(windows(on)[peer, clients]))))
                for clients in CLIENTS
            ]
            for name, (peer, on) in peers.items()
        }

    return [
        Curve(
            "throughput",
            "Exchanges with one blade",
            "client processes",
            "exchanges per second",
            points(lambda clients, rate: rate),
        ),
        # Every client has one exchange under way all the time.
        Curve(
            "latency",
            "Time of an exchange with one blade",
            "client processes",
            "mean, microseconds",
            points(lambda clients, rate: clients / rate * 1e6),
        ),
    ]
