"""The sensor data records, as both programs read them."""

import pytest

import sim


def records_as_ipmitool_reads_them(controller):
    dumped = controller.directory / "records"
    controller.ipmitool("sdr", "dump", dumped)
    return dumped.read_bytes()


def test_the_repository_is_read_byte_for_byte(chassis, controllers):
    expected = records_as_ipmitool_reads_them(controllers[0])
    assert b"first temp" in expected
    assert chassis.read(1, "-o", "binary", "sdr", "list") == expected


def test_the_repositories_of_two_controllers_do_not_mix(chassis, controllers):
    for slot, controller in enumerate(controllers, 1):
        expected = records_as_ipmitool_reads_them(controller)
        assert chassis.read(slot, "-o", "binary", "sdr", "list") == expected
    assert b"second temp" in expected


def test_a_record_is_found_by_the_id_of_the_list(chassis):
    (blade,) = chassis.read_json(1, "sdr", "list")
    listed = blade["records"]
    records = [chassis.read(1, "-o", "binary", "sdr", "get", record["id"]) for record in listed]
    assert len(records) == 3
    assert b"".join(records) == chassis.read(1, "-o", "binary", "sdr", "list")


@pytest.fixture
def with_records(tmp_path, run_chassis):
    """A chassis of one controller whose repository holds the given records."""
    started = []

    def start(records):
        (port,) = sim.free_ports(1)
        started.append(sim.Controller(port, tmp_path / "only", sdrs=records))
        started[0].start()
        return run_chassis([dict(slot=1, port=port)], started)

    yield start
    for controller in started:
        controller.stop()


def test_a_long_repository_of_long_and_short_records_is_read_byte_for_byte(with_records):
    oem = [sim.sdr_body(0xC0, bytes([0x34, 0x12, 0x0F] + [n] * n)) for n in range(48)]
    chassis = with_records([sim.temperature_sdr(n, f"sensor {n}") for n in range(1, 80)] + oem)
    expected = records_as_ipmitool_reads_them(chassis.controllers[0])
    assert len(expected) > 79 * 48 + 48 * 8
    assert chassis.read(1, "-o", "binary", "sdr", "list") == expected


def test_an_empty_repository_is_empty(with_records):
    chassis = with_records([])
    assert chassis.read(1, "-o", "binary", "sdr", "list") == b""


def test_the_summary_agrees_with_ipmitools(chassis, controllers):
    (blade,) = chassis.read_json(1, "sdr", "info")
    assert blade["records"] == int.from_bytes(controllers[0].raw(0x0A, 0x20)[1:3], "little") == 3
