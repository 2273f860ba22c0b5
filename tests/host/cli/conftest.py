"""The tool, run as a user runs it, on simulated blades or on a blade that a test makes up."""

import json
import os
import pathlib
import select
import signal
import subprocess
import time

import pytest

from made_up_blade import MadeUpBlade
from terminal import Terminal


class Tool:
    path = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin/ruk-ipmi"

    def __init__(self, environment):
        self.environment = dict(environment, TZ="UTC")
        del self.environment["RUK_LOG"]

    def __call__(self, *arguments, stdin=b"", **changes):
        """Runs it; the result's standard output is bytes, its standard error text."""
        ended = subprocess.run(
            [self.path, *map(str, arguments)],
            env=dict(self.environment, **changes),
            input=stdin,
            capture_output=True,
            timeout=60,
            start_new_session=True,  # whatever it asks, it does not ask who runs the tests
        )
        ended.stderr = ended.stderr.decode()
        return ended

    def text(self, *arguments, **more):
        ended = self(*arguments, **more)
        assert (ended.returncode, ended.stderr) == (0, "")
        return ended.stdout.decode()

    def json(self, *arguments, **more):
        return json.loads(self(*arguments, "-o", "json", **more).stdout)


@pytest.fixture
def ruk_ipmi(environment):
    return Tool(environment)


class Following:
    """The tool in a command that goes on until it is interrupted."""

    patience = 20

    def __init__(self, tool, *arguments):
        self.process = subprocess.Popen(
            [tool.path, *map(str, arguments)],
            env=tool.environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
        )

    def _line(self, stream):
        line = b""
        until = time.monotonic() + self.patience
        while not line.endswith(b"\n"):
            ready, _, _ = select.select([stream], [], [], until - time.monotonic())
            assert ready, f"no line came, but {line!r}"
            byte = os.read(stream.fileno(), 1)
            assert byte, f"it ended after {line!r}"
            line += byte
        return line.decode().rstrip("\n")

    def line(self):
        return self._line(self.process.stdout)

    def message(self):
        """A line of its standard error."""
        return self._line(self.process.stderr)

    def objects(self, count):
        """Its next lines, which are JSON."""
        return [json.loads(self.line()) for _ in range(count)]

    def stop(self, how=signal.SIGINT):
        """Interrupts it: the exit code, and what else it had to say on standard output."""
        self.process.send_signal(how)
        rest, _ = self.process.communicate(timeout=self.patience)
        return self.process.returncode, rest.decode()


@pytest.fixture
def follow(ruk_ipmi):
    """Starts the tool in a command that goes on."""
    started = []

    def start_following(*arguments):
        started.append(Following(ruk_ipmi, *arguments))
        return started[-1]

    yield start_following
    for each in started:
        each.process.kill()
        each.process.communicate()


@pytest.fixture
def watch(follow):
    """Starts `events watch`, which has begun when this returns."""

    def start_watching(*arguments):
        watcher = follow("-v", "--utc", "events", "watch", *arguments)
        assert "watching from behind interrupt" in watcher.message()
        return watcher

    return start_watching


@pytest.fixture
def chassis(start):
    """Three simulated blades in slots 1 to 3."""
    return start("--simulate", "3")


@pytest.fixture
def tool(ruk_ipmi, chassis):
    """Runs the tool for blade 1: the fields of its report."""

    def run(*arguments, **more):
        ended = ruk_ipmi("-b", "1", *arguments, "-o", "json", **more)
        assert (ended.returncode, ended.stderr) == (0, "")
        (fields,) = json.loads(ended.stdout)
        assert fields.pop("blade") == "1"
        return fields

    return run


@pytest.fixture
def made_up_blade(environment):
    """A blade in every slot that answers as the test says."""
    blade = MadeUpBlade(environment["RUK_RUNTIME_DIR"])
    yield blade
    blade.close()


@pytest.fixture
def terminal(ruk_ipmi):
    """Starts the tool on a terminal."""
    started = []

    def start_there(columns, *arguments, lines=24, **changes):
        usual = {"NO_COLOR": "", "TERM": "xterm", "LC_ALL": "C.UTF-8"}
        environment = {**ruk_ipmi.environment, **usual, **changes}
        command = [ruk_ipmi.path, *map(str, arguments)]
        started.append(Terminal(command, environment, columns, lines))
        return started[-1]

    yield start_there
    for each in started:
        each.close()
