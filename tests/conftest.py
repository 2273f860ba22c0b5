"""A chassis of its own for every test: a runtime directory, and a daemon that serves it."""

import os
import pathlib
import signal
import subprocess

import pytest

PROGRAMS = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin"


@pytest.fixture
def environment(tmp_path):
    return dict(os.environ, RUK_RUNTIME_DIR=str(tmp_path / "run"), RUK_LOG="none")


@pytest.fixture
def start(environment):
    """Starts a daemon; it has said that it is ready when this returns."""
    started = []

    def start_daemon(*arguments, **changes):
        read_end, write_end = os.pipe()
        started.append(
            subprocess.Popen(
                [PROGRAMS / "ruk-chassisd", *arguments, "--ready-fd", str(write_end)],
                pass_fds=[write_end],
                env=dict(environment, **changes),
            )
        )
        os.close(write_end)
        with os.fdopen(read_end) as ready:
            assert ready.read() == "ready\n"
        return started[-1]

    yield start_daemon
    for daemon in started:
        daemon.terminate()
    for daemon in started:
        assert daemon.wait(timeout=10) in (0, -signal.SIGKILL), "it stops cleanly, unless killed"
