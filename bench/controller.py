"""One command to a real controller, through daemon and bridge, beside FreeIPMI that asks it from
the process itself, and beside the packets alone. Both keep their session."""

from bridged import PLACES, bridged_blade, sim
from measure import Row, interleaved, pinned, printed, program

COUNT = 3000
RUNS = 9
GOAL = 1.25

COMMANDS = {"Get Device ID": (0x06, 0x01), "Get SEL Info": (0x0A, 0x40)}

# Of either command and of its answer, as UDP carries them: encrypted in whole blocks, and signed.
QUESTION = 64
ANSWER = 80


def round_trips(command, blade, processors):
    """Microseconds each."""
    request = [*command, COUNT]
    session = [blade.address, sim.USERNAME, sim.PASSWORD]

    def taken_by(name, *arguments):
        asking = pinned([program(name), *arguments], processors)
        return lambda: printed(asking, env=blade.environment) / 1e3

    return interleaved(
        {
            "ours": taken_by("controller_library", *request),
            "FreeIPMI": taken_by("controller_freeipmi", *request, *session),
            "packets": taken_by("controller_packets", QUESTION, ANSWER, COUNT),
            "simulated": taken_by("round_trip_exchange", COUNT, 2),
        },
        RUNS,
    )


def compared(what, took, gated):
    ratio = took["ours"] / took["FreeIPMI"]
    both = took["FreeIPMI"] + took["simulated"]
    return [
        Row(
            what,
            f"{took['ours']} us",
            f"FreeIPMI in process: {took['FreeIPMI']} us",
            f"{ratio:.2f} x",
            f"at most {GOAL} x" if gated else "",
            ratio <= GOAL if gated else None,
        ),
        Row(
            what,
            f"{took['ours']} us",
            f"FreeIPMI in process, and an exchange with a simulated blade: {both} us",
            f"{took['ours'] / both:.2f} x",
        ),
        Row(
            what,
            f"{took['ours']} us",
            f"the UDP packets alone: {took['packets']} us",
            f"{took['ours'] / took['packets']:.1f} x",
        ),
    ]


def rows():
    found = []
    for place, processors in PLACES.items():
        with bridged_blade(processors) as blade:
            for name, command in COMMANDS.items():
                took = round_trips(command, blade, processors)
                what = f"{name} to a controller through daemon and bridge, {place}"
                found += compared(what, took, gated=processors == "0")
    return found
