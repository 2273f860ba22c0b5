"""A blade behind the bridge: ipmi_sim is its controller, and the daemon keeps a session with it."""

import contextlib
import dataclasses
import os
import pathlib
import sys
import tempfile
import time

from chassis import chassis
from measure import ROOT

sys.path.insert(0, str(ROOT / "tests/interop"))
import sim  # noqa: E402

MOST_ENTRIES = 1000

# Where everything runs, by what the table calls it. The goals are for the first.
PLACES = {
    "one processor": "0",
    "all processors": ",".join(map(str, os.sched_getaffinity(0))),
}


@dataclasses.dataclass(frozen=True)
class Bridged:
    """The blade in slot 1; that in slot 2 is simulated. `environment` is for those who ask them."""

    controller: sim.Controller
    environment: dict

    @property
    def address(self):
        return f"{sim.ADDRESS}:{self.controller.port}"

    def add_entries(self, count):
        """Events of a temperature, in the SEL."""
        event = sim.hex_bytes(sim.sel_event(0x01, 1, 0x01, [0x59, 86, 85]))
        script = self.controller.directory / "events"
        script.write_text(f"raw 0x0a 0x44 {event}\n" * count)
        self.controller.ipmitool("exec", script)


def controller_in(directory):
    """One with room for many entries, and that answers at once: the usual one runs a script to look
    at its power, which takes longer than all that is measured."""
    [port] = sim.free_ports(1)
    controller = sim.Controller(port, directory)
    for name, usual, changed in [
        ("controller.emu", "sel_enable 0x20 200", f"sel_enable 0x20 {MOST_ENTRIES}"),
        ("lan.conf", 'chassis_control "./chassis"\n', ""),
    ]:
        path = directory / name
        text = path.read_text()
        assert usual in text, f"{name} is not as it was"
        path.write_text(text.replace(usual, changed))
    return controller


@contextlib.contextmanager
def running(controller, processors):
    """What a process starts stays on the processors that it was itself on."""
    usual = os.sched_getaffinity(0)
    os.sched_setaffinity(0, map(int, processors.split(",")))
    try:
        controller.start()
    finally:
        os.sched_setaffinity(0, usual)
    try:
        controller.set_clock(time.time())
        yield
    finally:
        controller.stop()


@contextlib.contextmanager
def bridged_blade(processors):
    """A controller and a daemon on those processors."""
    with tempfile.TemporaryDirectory(prefix="ruk-bench-") as name:
        directory = pathlib.Path(name)
        controller = controller_in(directory)
        description = sim.blade_configuration(
            slot=1,
            port=controller.port,
            password_file=directory / "password",
            timeout_ms=2000,
        )
        description += "\n[[blade]]\nslot = 2\n"
        with running(controller, processors), chassis(description, processors) as environment:
            yield Bridged(controller, environment)
