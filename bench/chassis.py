"""A daemon with blades of the bench's own, and a private message bus to compare it with."""

import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile

from measure import pinned, program

def blades(many, slow=(), delay_ms=200):
    """The description of a chassis of so many simulated blades, some of which answer late."""
    return "\n".join(
        f"[[blade]]\nslot = {slot}\n" + (f"faults = {{delay_ms = {delay_ms}}}\n" * (slot in slow))
        for slot in range(1, many + 1)
    )


@contextlib.contextmanager
def serving(command, environment=None, stderr=None):
    """Keeps a daemon running that writes a line to the descriptor `{fd}` once it serves; yields the
    line."""
    reader, writer = os.pipe()
    with os.fdopen(reader) as told:
        daemon = subprocess.Popen(
            [each.format(fd=writer) for each in command],
            pass_fds=[writer],
            env=environment,
            stderr=stderr,
        )
        os.close(writer)
        try:
            line = told.readline().strip()
            if not line:
                sys.exit(f"{' '.join(map(str, command))} did not start")
            yield line
        finally:
            daemon.terminate()
            daemon.wait()


@contextlib.contextmanager
def chassis(description, processors):
    """Serves a chassis; yields the environment for its clients."""
    with tempfile.TemporaryDirectory(prefix="ruk-bench-") as directory:
        config = pathlib.Path(directory, "chassis.toml")
        config.write_text(description)
        clients = os.environ | {"RUK_RUNTIME_DIR": f"{directory}/run"}
        command = [program("ruk-chassisd"), "--config", config, "--ready-fd", "{fd}"]
        with serving(pinned(command, processors), clients | {"RUK_LOG": "error"}):
            yield clients


@contextlib.contextmanager
def bus(processors):
    """A message bus that nobody else uses; yields the environment for its clients."""
    with tempfile.TemporaryDirectory(prefix="ruk-bench-") as directory:
        command = ["dbus-daemon", "--session", f"--address=unix:dir={directory}", "--nofork"]
        command = pinned([*command, "--print-address={fd}"], processors)
        # It may not raise its limit of descriptors, says so, and does not need it.
        with serving(command, stderr=subprocess.DEVNULL) as address:
            yield os.environ | {"DBUS_SESSION_BUS_ADDRESS": address}
