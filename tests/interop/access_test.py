"""Requests as they stand, refusals by their names, and sessions that are not granted."""

import socket
import threading

import pytest

import sim

ACCESS_REFUSED = 3
NO_ANSWER = 4


def test_get_device_id_is_answered_as_ipmitool_sees_it(chassis, controllers):
    for slot, controller in enumerate(controllers, 1):
        shown = chassis.read(slot, "-o", "binary", "raw", "0x06", "0x01")
        assert shown == controller.raw(0x06, 0x01)


def test_the_two_controllers_are_told_apart(chassis):
    ids = [chassis.read(slot, "-o", "binary", "raw", "0x06", "0x01") for slot in (1, 2)]
    assert [device[6:9] for device in ids] == [b"\x01\x00\x0f", b"\x02\x00\x0f"]


def test_a_refused_command_ends_with_1_and_names_the_code(chassis):
    done = chassis.tool(1, "sel", "get", "0x7777")
    assert done.returncode == 1
    assert b"0xCB" in done.stderr


def test_an_unknown_command_passes_on_the_controllers_code(chassis, controllers):
    done = chassis.tool(1, "raw", "0x06", "0x77")
    theirs = controllers[0].ipmitool("raw", "0x06", "0x77", check=False)
    assert "rsp=0xc1" in theirs.stderr
    assert done.returncode == 5
    assert b"0xC1" in done.stderr


@pytest.mark.parametrize(
    "difference",
    [
        dict(password_file="wrong-password"),
        dict(username="nobody"),
        dict(cipher_suite=17),  # ipmi_sim has none of the SHA-256 suites
    ],
    ids=["password", "user", "cipher suite"],
)
@pytest.mark.parametrize("workarounds", [[], sim.FREEIPMI], ids=["ours", "FreeIPMI's"])
def test_a_session_that_is_not_granted_is_told_from_a_dead_host(
    run_chassis, controllers, difference, workarounds
):
    blade = dict(slot=1, port=controllers[0].port, workarounds=workarounds, **difference)
    chassis = run_chassis([blade])
    for _ in range(2):  # the second time while the bridge leaves the controller alone
        done = chassis.tool(1, "sel", "info")
        assert done.returncode == ACCESS_REFUSED
        assert b"refuses" in done.stderr


@pytest.fixture
def echoing_network(controllers):
    """The port by which the first controller is reached; whatever it says comes twice."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as network:
        network.bind((sim.ADDRESS, 0))
        controller = (sim.ADDRESS, controllers[0].port)

        def carry():
            asking = None
            while True:
                content, sender = network.recvfrom(1500)
                if not content:
                    return
                if sender != controller:
                    asking = sender
                    network.sendto(content, controller)
                else:
                    for _ in range(2):
                        network.sendto(content, asking)

        carrier = threading.Thread(target=carry)
        carrier.start()
        port = network.getsockname()[1]
        yield port
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as end:
            end.sendto(b"", (sim.ADDRESS, port))
        carrier.join()


def test_answers_that_come_twice_are_taken_once(run_chassis, echoing_network):
    chassis = run_chassis([dict(slot=1, port=echoing_network)])
    for _ in range(2):
        chassis.read(1, "sel", "info")


def test_answers_that_come_twice_are_told_from_a_refusal(run_chassis, echoing_network):
    chassis = run_chassis([dict(slot=1, port=echoing_network, workarounds=sim.FREEIPMI)])
    done = chassis.tool(1, "sel", "info")
    assert done.returncode == NO_ANSWER


def test_a_session_of_lower_privilege_is_refused_by_command(run_chassis, controllers):
    chassis = run_chassis([dict(slot=1, port=controllers[0].port, privilege="user")])
    chassis.read(1, "sel", "info")
    done = chassis.tool(1, "sel", "clear")
    assert done.returncode != 0
    assert b"0xD4" in done.stderr


@pytest.mark.parametrize("workarounds", [[], sim.FREEIPMI], ids=["ours", "FreeIPMI's"])
def test_one_session_serves_many_requests(run_chassis, controllers, workarounds):
    chassis = run_chassis([dict(slot=1, port=controllers[0].port, workarounds=workarounds)])
    before = controllers[0].sessions_opened()
    for _ in range(20):
        chassis.read(1, "raw", "0x06", "0x01")
    assert controllers[0].sessions_opened() == before + 1
