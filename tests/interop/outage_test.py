"""Controllers that stop, come back, or were never there."""

import signal
import threading
import time

import pytest

import sim
from waits import PATIENCE, TIMEOUT_MS

NO_ANSWER = 4


def ask(chassis, slot):
    """The exit code of a request, and how long it took."""
    started = time.monotonic()
    done = chassis.tool(slot, "raw", "0x06", "0x01")
    return done.returncode, time.monotonic() - started


@pytest.fixture(params=[[], sim.FREEIPMI], ids=["ours", "FreeIPMI's"])
def chassis(controllers, run_chassis, request):
    """The two controllers in slots 1 and 2, their sessions ours or FreeIPMI's."""
    return run_chassis(
        [
            dict(slot=slot, port=controller.port, workarounds=request.param)
            for slot, controller in enumerate(controllers, 1)
        ],
        controllers,
    )


@pytest.fixture
def frozen(chassis, controllers):
    """The first controller has stopped in the middle of a session."""
    chassis.read(1, "sel", "info")
    controllers[0].process.send_signal(signal.SIGSTOP)
    yield controllers[0]
    controllers[0].process.send_signal(signal.SIGCONT)


def test_a_controller_that_stops_is_reported_in_time(chassis, frozen):
    code, took = ask(chassis, 1)
    assert code == NO_ANSWER
    assert took < TIMEOUT_MS / 1000 + 0.5


def test_requests_to_a_dead_controller_fail_at_once_for_a_while(chassis, frozen):
    ask(chassis, 1)  # finds out that the session is lost
    ask(chassis, 1)  # and this one that there is no other
    code, took = ask(chassis, 1)
    assert code == NO_ANSWER
    assert took < 0.5


def test_the_other_blade_is_served_meanwhile(chassis, frozen):
    waiting = threading.Thread(target=ask, args=(chassis, 1))
    waiting.start()
    time.sleep(0.1)
    code, took = ask(chassis, 2)
    assert waiting.is_alive(), "the first blade must still be waiting"
    waiting.join()
    assert code == 0
    assert took < 0.5


def recovery(chassis, slot):
    """Asks until there is an answer; the time it took, and the exit codes before."""
    started = time.monotonic()
    codes = []
    while time.monotonic() < started + PATIENCE:
        code, _ = ask(chassis, slot)
        if code == 0:
            return time.monotonic() - started, codes
        codes.append(code)
        time.sleep(0.1)
    pytest.fail(f"blade {slot} did not recover: {codes}")


def test_a_controller_that_goes_on_is_reached_again(chassis, frozen):
    assert ask(chassis, 1)[0] == NO_ANSWER
    frozen.process.send_signal(signal.SIGCONT)
    recovery(chassis, 1)


def test_a_controller_that_restarts_is_reached_again(chassis, controllers):
    chassis.read(1, "sel", "info")
    controllers[0].stop()
    assert ask(chassis, 1)[0] == NO_ANSWER
    controllers[0].start()
    _, codes = recovery(chassis, 1)
    assert set(codes) <= {NO_ANSWER}


def test_a_restart_that_nobody_asked_during_is_not_noticed(chassis, controllers):
    chassis.read(1, "sel", "info")
    controllers[0].stop()
    time.sleep(2 * TIMEOUT_MS / 1000)  # a session that was idle is asked whether it is still there
    controllers[0].start()
    assert ask(chassis, 1)[0] == 0


def test_an_idle_session_is_still_there(chassis, controllers):
    chassis.read(1, "sel", "info")
    opened = controllers[0].sessions_opened()
    time.sleep(3 * TIMEOUT_MS / 1000)
    chassis.read(1, "sel", "info")
    assert controllers[0].sessions_opened() == opened


def test_a_controller_that_never_was_there_is_no_answer(run_chassis):
    (port,) = sim.free_ports(1)
    chassis = run_chassis([dict(slot=1, port=port)])
    code, took = ask(chassis, 1)
    assert code == NO_ANSWER
    assert took < TIMEOUT_MS / 1000 + 0.5


def test_a_host_that_has_no_address_is_no_answer(run_chassis):
    chassis = run_chassis([dict(slot=1, host="controller.invalid", port=623)])
    assert ask(chassis, 1)[0] == NO_ANSWER
