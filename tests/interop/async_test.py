"""Asynchronous commands, through the bridge, against what ipmitool reads of the same controller."""

import subprocess

from conftest import PROGRAMS

GET_SEL_INFO = (0x0A, 0x40)
GET_SDR = (0x0A, 0x23)


def answer(chassis, slot, *request):
    done = subprocess.run(
        [PROGRAMS / "async_command", str(slot), *map(str, request)],
        env=chassis.environment, capture_output=True, text=True, timeout=30,
    )
    assert done.returncode == 0, done.stderr
    return done.stdout.strip()


def test_the_summary_of_the_log_is_what_ipmitool_reads(chassis, controllers):
    for slot, controller in enumerate(controllers, 1):
        expected = controller.raw(*GET_SEL_INFO)
        assert len(expected) == 14
        assert answer(chassis, slot, *GET_SEL_INFO) == "00" + expected.hex()


def test_the_first_sensor_record_is_what_ipmitool_reads(chassis, controllers):
    whole_first_record = (*GET_SDR, 0, 0, 0, 0, 0, 0xFF)
    for slot, controller in enumerate(controllers, 1):
        expected = controller.raw(*whole_first_record)
        assert len(expected) > 10
        assert answer(chassis, slot, *whole_first_record) == "00" + expected.hex()


def test_a_refusal_arrives_as_the_controller_gave_it(chassis):
    assert answer(chassis, 1, *GET_SDR, 0, 0, 0xEE, 0xEE, 0, 0xFF) == "cb"


def test_a_controller_that_is_down_is_told_by_its_status(chassis, controllers):
    controllers[0].stop()
    assert answer(chassis, 1, *GET_SEL_INFO) == "status 0x500a"
