"""A chassis of simulated blades and controllers, with daemon and clients, in its own directory.

How many there are is so chosen that two processors can serve them all.
"""

import collections
import concurrent.futures
import os
import pathlib
import random
import shutil
import signal
import tempfile
import time

import sim
from processes import Client, Controller, Daemon, Tally

CLIENTS = 3
CONTROLLERS = 2
SIMULATED = 4
CONVERSATIONS = 2  # that a client has with each blade

# Slots 1 to 4. One blade is slow.
SIMULATED_BLADES = """\
[chassis]
name = "faults"

[[blade]]
slot = 1

[[blade]]
slot = 2

[[blade]]
slot = 3
faults = { delay_ms = 30 }

[[blade]]
slot = 4
"""

TIMEOUT_MS = 1500  # of bridged blades


class Chassis:
    def __init__(self, build, seed):
        programs = pathlib.Path(build).resolve() / "bin"
        for each in ("ruk-chassisd", "asking_client"):
            if not (programs / each).exists():
                raise RuntimeError(f"there is no {programs / each}: build it first")
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="ruk-faults-"))
        self.runtime = self.directory / "run"
        environment = dict(os.environ, RUK_RUNTIME_DIR=str(self.runtime), RUK_LOG="none")
        draw = random.Random(f"{seed} records")
        ports = sim.free_ports(CONTROLLERS)
        self.controllers = [
            Controller(number, port, self.directory, draw) for number, port in enumerate(ports, 1)
        ]
        self.daemon = Daemon(programs / "ruk-chassisd", self.write_configuration(), environment)
        bridged = [
            f"{slot}={each.records}" for slot, each in enumerate(self.controllers, SIMULATED + 1)
        ]
        blades = [*map(str, range(1, SIMULATED + 1)), *bridged]
        self.conversations = CONVERSATIONS * len(blades)  # of a client
        self.clients = [
            Client(n, programs / "asking_client", blades, self.directory, environment, seed)
            for n in range(CLIENTS)
        ]

    def write_configuration(self):
        path = self.directory / "password"
        path.write_text(sim.PASSWORD + "\n")
        path.chmod(0o600)
        config = self.directory / "chassis.toml"
        config.write_text(
            SIMULATED_BLADES
            + "".join(
                sim.blade_configuration(slot=slot, port=each.sim.port, timeout_ms=TIMEOUT_MS)
                for slot, each in enumerate(self.controllers, SIMULATED + 1)
            )
        )
        return config

    @property
    def everybody(self):
        return [self.daemon, *self.controllers, *self.clients]

    def start_clients(self):
        for each in self.clients:
            each.start()

    def end_clients(self):
        """In order, all at once: every exchange has its end."""
        with concurrent.futures.ThreadPoolExecutor() as pool:
            list(pool.map(lambda each: each.kill(signal.SIGTERM), self.clients))

    def take_tally(self):
        """What the clients that ended saw since the last time."""
        taken = Tally()
        for each in self.clients:
            taken.add(each.tally)
            each.tally = Tally()
        return taken

    def recovery(self, since, limit):
        """How long after that moment every client had a right answer from every blade, both ways,
        and who had none in time. Too long by up to the time between two lines of a client."""
        first_good = {}
        while time.monotonic() < since + limit:
            for client in self.clients:
                for who, at in client.good_at().items():
                    if at > since:
                        first_good.setdefault((client.name, who), at)
            if len(first_good) == CLIENTS * self.conversations:
                return max(first_good.values()) - since, []
            time.sleep(0.02)
        answered = collections.Counter(name for name, _ in first_good)
        return limit, [
            f"{each.name}: {answered[each.name]} of {self.conversations} conversations went on"
            for each in self.clients
            if answered[each.name] < self.conversations
        ]

    def start_the_dead(self):
        """Those that ended although nobody killed them; their ends are told as not meant."""
        for each in self.everybody:
            if each.process.poll() is not None:
                each.kill()
                each.start()

    def bad_ends(self):
        return [f"{each.name} {how}" for each in self.everybody for how in each.bad_ends]

    def clean_up(self):
        for each in self.everybody:
            if each.process and each.process.poll() is None:
                each.process.send_signal(signal.SIGCONT)
                each.process.kill()
                each.process.wait()
        shutil.rmtree(self.directory, ignore_errors=True)
