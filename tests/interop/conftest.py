"""A chassis whose blades are ipmi_sim controllers, and the tool to ask them with."""

import dataclasses
import json
import os
import pathlib
import subprocess
import tempfile

import pytest

import sim
from waits import TIMEOUT_MS

PROGRAMS = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin"


@dataclasses.dataclass
class Chassis:
    """A running daemon with one blade per controller, slot 1 being the first."""

    directory: pathlib.Path
    controllers: list

    @property
    def environment(self):
        return dict(os.environ, RUK_RUNTIME_DIR=str(self.directory / "run"), RUK_LOG="none")

    def tool(self, slot, *arguments, input=None):
        """Runs ruk-ipmi for a slot; its output stays bytes."""
        return subprocess.run(
            [PROGRAMS / "ruk-ipmi", "-b", str(slot), *map(str, arguments)],
            env=self.environment,
            input=input,
            capture_output=True,
            timeout=30,
        )

    def read(self, slot, *arguments):
        """What ruk-ipmi printed; fails unless it was fine."""
        done = self.tool(slot, *arguments)
        assert done.returncode == 0, done.stderr.decode()
        return done.stdout

    def read_json(self, slot, *arguments):
        return json.loads(self.read(slot, "-o", "json", *arguments))


def write_configuration(chassis, blades):
    """Blades are dictionaries of what differs from the usual: at least slot and port."""
    for name, password in [("password", sim.PASSWORD), ("wrong-password", "guess")]:
        path = chassis.directory / name
        path.write_text(password + "\n")
        path.chmod(0o600)
    config = chassis.directory / "chassis.toml"
    config.write_text(
        '[chassis]\nname = "interop"\nslots = 16\n'
        + "".join(
            sim.blade_configuration(**{"timeout_ms": TIMEOUT_MS, **blade}) for blade in blades
        )
    )
    return config


@pytest.fixture
def run_chassis(start, tmp_path):
    """Starts a daemon for blades and controllers that the test describes."""

    def run(blades, controllers=()):
        directory = tempfile.mkdtemp(prefix="chassis", dir=tmp_path)
        chassis = Chassis(pathlib.Path(directory), list(controllers))
        start("--config", write_configuration(chassis, blades), **chassis.environment)
        return chassis

    return run


@pytest.fixture
def controllers(tmp_path):
    """Two controllers, which differ in their names, records and inventories."""
    ports = sim.free_ports(2)
    started = [
        sim.Controller(port, tmp_path / name, name, manufacturer)
        for port, name, manufacturer in zip(ports, ["first", "second"], [0x0F0001, 0x0F0002])
    ]
    try:
        for controller in started:
            controller.start()
        yield started
    finally:
        for controller in started:
            controller.stop()


@pytest.fixture
def chassis(controllers, run_chassis):
    """The two controllers in slots 1 and 2."""
    blades = [
        dict(slot=slot, port=controller.port) for slot, controller in enumerate(controllers, 1)
    ]
    return run_chassis(blades, controllers)
