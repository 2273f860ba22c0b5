"""The tool, run as a user runs it, on simulated blades or on a blade that a test makes up."""

import json
import os
import pathlib
import subprocess

import pytest

from made_up_blade import MadeUpBlade


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


@pytest.fixture
def chassis(start):
    """Three simulated blades in slots 1 to 3."""
    return start("--simulate", "3")


@pytest.fixture
def made_up_blade(environment):
    """A blade in every slot that answers as the test says."""
    blade = MadeUpBlade(environment["RUK_RUNTIME_DIR"])
    yield blade
    blade.close()
