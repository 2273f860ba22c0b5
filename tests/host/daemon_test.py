"""ruk-chassisd as whoever starts it sees it: options, readiness, messages, a new file, a clean stop."""

import os
import pathlib
import signal
import socket
import subprocess
import time

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
    socket_file = pathlib.Path(environment["RUK_RUNTIME_DIR"]) / "ipmi.sock"
    give_up = time.monotonic() + 30
    while not socket_file.exists() and time.monotonic() < give_up:
        time.sleep(0.01)
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


@pytest.fixture
def said(tmp_path):
    """What the log has said so far."""
    log = tmp_path / "log"
    log.touch()
    return log


@pytest.fixture
def start_logging(environment, said):
    """Starts a daemon whose messages go to the log; it serves when this returns."""
    started = []

    def start_daemon(*arguments):
        with said.open("w") as log:
            daemon = subprocess.Popen(
                [DAEMON, *arguments], env=dict(environment, RUK_LOG="notice"), stderr=log
            )
        started.append(daemon)
        wait_for(said, "serving")
        return daemon

    yield start_daemon
    for daemon in started:
        daemon.terminate()
        assert daemon.wait(timeout=10) == 0


def wait_for(said, text):
    """Waits until the log says that; the line that does."""
    until = time.monotonic() + 10
    while time.monotonic() < until:
        for line in said.read_text().splitlines():
            if text in line:
                return line
        time.sleep(0.02)
    raise AssertionError(f"{text!r} is not in the log:\n{said.read_text()}")


@pytest.fixture
def chassis_file(tmp_path):
    path = tmp_path / "chassis.toml"
    path.write_text("[[blade]]\nslot = 1\n")
    return path


def test_a_broken_file_changes_nothing_and_its_place_is_told(start_logging, said, chassis_file):
    daemon = start_logging("--config", chassis_file)
    chassis_file.write_text("[[blade]]\nslot = 2\n\n[[blade]]\nslot = 99\n")
    daemon.send_signal(signal.SIGHUP)
    told = wait_for(said, "chassis stays as it is")
    assert " error " in told
    assert f"{chassis_file}:5:8: slot: must be a number from 1 to 16" in told
    assert "inserted" not in said.read_text() and "removed" not in said.read_text()


def test_a_file_that_is_mended_is_read_at_the_next_request(start_logging, said, chassis_file):
    daemon = start_logging("--config", chassis_file)
    chassis_file.write_text("[[blade]\n")
    daemon.send_signal(signal.SIGHUP)
    wait_for(said, "chassis stays as it is")
    chassis_file.write_text("[[blade]]\nslot = 2\n")
    daemon.send_signal(signal.SIGHUP)
    wait_for(said, "blade 1 removed")
    wait_for(said, "blade 2 inserted")


def test_a_file_that_went_away_changes_nothing(start_logging, said, chassis_file):
    daemon = start_logging("--config", chassis_file)
    chassis_file.unlink()
    daemon.send_signal(signal.SIGHUP)
    assert str(chassis_file) in wait_for(said, "chassis stays as it is")


def test_without_a_file_there_is_nothing_to_read_again(start_logging, said):
    start_logging("--simulate", "2").send_signal(signal.SIGHUP)
    wait_for(said, "there is no file to read again")


def test_tells_the_service_manager_when_it_reads_its_file_again(start, chassis_file, tmp_path):
    address = str(tmp_path / "notify")
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as manager:
        manager.bind(address)
        manager.settimeout(10)
        daemon = start("--config", chassis_file, NOTIFY_SOCKET=address)
        assert manager.recv(100) == b"READY=1"
        daemon.send_signal(signal.SIGHUP)
        assert manager.recv(100) == b"RELOADING=1"
        assert manager.recv(100) == b"READY=1"
