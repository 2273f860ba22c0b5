"""Whether a blade that is slow makes others wait."""

import statistics

from chassis import blades, chassis
from measure import Curve, Row, interleaved, number, printed, program

BLADES = 8
WINDOW_MS = 600
RUNS = 7
AT_ONCE = [1, 2, 4, 8, 16]


def round_trip(asked, counted, environment):
    """Nanoseconds of the round trips to the first `counted` blades while `asked` are asked."""
    command = [program("blades_at_once"), asked, counted, WINDOW_MS]
    return printed(command, env=environment)


def slow_blade():
    """Of the seven that are not slow."""
    others = BLADES - 1
    with (
        chassis(blades(BLADES), "0,1") as quick,
        chassis(blades(BLADES, slow=[BLADES]), "0,1") as one_slow,
    ):
        peers = {
            "eighth slow": lambda: round_trip(BLADES, others, one_slow),
            "eighth quick": lambda: round_trip(BLADES, others, quick),
            "eighth not asked": lambda: round_trip(others, others, one_slow),
            "alone": lambda: round_trip(1, 1, one_slow),
        }
        return interleaved(peers, RUNS)


def rows():
    figures = slow_blade()
    ours = figures["eighth slow"]

    def against(peer, name, gated):
        ratio = ours / figures[peer]
        return Row(
            "seven blades while an eighth takes 200 ms",
            f"{ours} ns",
            f"{name}: {figures[peer]} ns",
            f"{number(ratio)} x",
            "at most 1.1 x" if gated else "",
            ratio <= 1.1 if gated else None,
        )

    return [
        against("eighth not asked", "the eighth is not asked", gated=True),
        against("eighth quick", "the eighth is as quick as they", gated=True),
        against("alone", "one blade alone", gated=False),
    ]


def latencies():
    with chassis(blades(AT_ONCE[-1]), "0,1") as served:
        return [
            (asked, statistics.median(round_trip(asked, asked, served) for _ in range(3)) / 1000)
            for asked in AT_ONCE
        ]


def curves():
    return [
        Curve(
            "blades",
            "Round trips to blades asked at once, each by a client of its own",
            "blades asked at once",
            "median, microseconds",
            {"ours": latencies()},
        )
    ]
