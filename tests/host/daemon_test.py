"""ruk-chassisd as whoever starts it sees it: options, readiness, messages, a clean stop."""

import os
import pathlib
import signal
import socket
import subprocess

import pytest

DAEMON = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin/ruk-chassisd"


def run(environment, *arguments):
    return subprocess.run(
        [DAEMON, *arguments], env=environment, capture_output=True, text=True, timeout=30
    )


@pytest.mark.parametrize("stop", [signal.SIGTERM, signal.SIGINT])
def test_stops_cleanly_when_asked_to(start, environment, stop):
    daemon = start("--simulate", "2")
    runtime = pathlib.Path(environment["RUK_RUNTIME_DIR"])
    assert (runtime / "ipmi.sock").exists()
    daemon.send_signal(stop)
    assert daemon.wait(timeout=10) == 0
    assert not (runtime / "ipmi.sock").exists()
    assert (runtime / "ipmi.shm").exists(), "the region outlives the daemon"


def test_tells_the_service_manager_that_it_is_ready(start, tmp_path):
    address = str(tmp_path / "notify")
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as manager:
        manager.bind(address)
        manager.settimeout(10)
        daemon = start("--simulate", "1", NOTIFY_SOCKET=address)
        assert manager.recv(100) == b"READY=1"
        daemon.terminate()
        assert manager.recv(100) == b"STOPPING=1"


def test_serves_also_when_nobody_waits_for_its_readiness_any_more(environment):
    read_end, write_end = os.pipe()
    os.close(read_end)
    daemon = subprocess.Popen(
        [DAEMON, "--simulate", "1", "--ready-fd", str(write_end)],
        pass_fds=[write_end],
        env=environment,
    )
    os.close(write_end)
    with pytest.raises(subprocess.TimeoutExpired):
        daemon.wait(timeout=0.5)
    daemon.terminate()
    assert daemon.wait(timeout=10) == 0


def test_a_runtime_directory_is_made_for_its_user_alone(start, environment):
    start("--simulate", "1")
    runtime = pathlib.Path(environment["RUK_RUNTIME_DIR"])
    assert runtime.stat().st_mode & 0o777 == 0o700


def test_a_runtime_directory_may_have_a_long_name(start, tmp_path):
    long_name = tmp_path / ("x" * 120)
    start("--simulate", "1", RUK_RUNTIME_DIR=str(long_name))
    assert (long_name / "ipmi.sock").exists()


def test_a_second_daemon_in_the_same_directory_is_refused(start, environment):
    start("--simulate", "1")
    second = run(environment, "--simulate", "1")
    assert second.returncode == 1
    assert second.stderr == f"ruk-chassisd: another ruk-chassisd serves {environment['RUK_RUNTIME_DIR']}\n"


def test_a_killed_daemon_leaves_nothing_that_keeps_the_next_one_out(start):
    start("--simulate", "1").kill()
    start("--simulate", "1")


def test_a_runtime_directory_that_cannot_be_made_is_named(environment):
    failed = run(dict(environment, RUK_RUNTIME_DIR="/proc/nowhere"), "--simulate", "1")
    assert failed.returncode == 1
    assert failed.stderr.startswith("ruk-chassisd: cannot use the runtime directory /proc/nowhere")


def test_check_finds_no_mistakes_in_a_good_file(environment, tmp_path):
    path = tmp_path / "chassis.toml"
    path.write_text("[[blade]]\nslot = 1\n")
    checked = run(environment, "--config", path, "--check")
    assert checked.returncode == 0
    assert checked.stdout == f"{path}: 1 blade, no mistakes found\n"


def test_check_tells_file_line_and_column_of_a_mistake(environment, tmp_path):
    path = tmp_path / "chassis.toml"
    path.write_text("[[blade]]\nslot = 1\n\n[[blade]]\nslot = 99\n")
    checked = run(environment, "--config", path, "--check")
    assert checked.returncode == 2
    assert checked.stderr == f"{path}:5:8: slot: must be a number from 1 to 16\n"


def test_a_file_that_is_not_there_is_named(environment, tmp_path):
    failed = run(environment, "--config", tmp_path / "none.toml")
    assert failed.returncode == 2
    assert str(tmp_path / "none.toml") in failed.stderr


@pytest.mark.parametrize(
    "arguments",
    [
        [],
        ["--simulate", "0"],
        ["--simulate", "256"],
        ["--simulate", "1", "--config", "chassis.toml"],
        ["--check"],
        ["--nonsense"],
    ],
)
def test_wrong_options_are_a_usage_error(environment, arguments):
    failed = run(environment, *arguments)
    assert failed.returncode == 2
    assert failed.stderr
    assert failed.stdout == ""


def test_its_version_and_its_help_are_on_standard_output(environment):
    assert run(environment, "--version").stdout.startswith("ruk-chassisd ")
    assert "--simulate" in run(environment, "--help").stdout
