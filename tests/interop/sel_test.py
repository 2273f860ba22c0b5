"""The event log, written by ipmitool and read by ruk-ipmi, and the other way round."""

import sim


def fill(controller, count):
    """Adds events in one run of ipmitool: threshold events of many sensors."""
    events = controller.directory / "events"
    events.write_text(
        "".join(f"0x04 0x01 0x{number:02x} 0x01 0x59 0x56 0x55\n" for number in range(count))
    )
    controller.ipmitool("sel", "add", events)


def log_as_ipmitool_reads_it(controller):
    saved = controller.directory / "log"
    controller.ipmitool("sel", "writeraw", saved)
    return saved.read_bytes()


def test_a_log_of_many_entries_is_read_byte_for_byte(chassis, controllers):
    fill(controllers[0], 150)
    expected = log_as_ipmitool_reads_it(controllers[0])
    assert len(expected) == 150 * 16
    assert chassis.read(1, "-o", "binary", "sel", "list") == expected


def test_an_entry_of_every_byte_value_arrives_unchanged(chassis, controllers):
    record = bytes([0, 0, 0xE0]) + bytes(range(0xF3, 0x100))
    given = controllers[0].add_sel_entry(record)
    entry = chassis.read(1, "-o", "binary", "sel", "get", hex(given))
    assert entry == given.to_bytes(2, "little") + record[2:]


def test_entries_are_shown_with_the_ids_that_ipmitool_was_given(chassis, controllers):
    given = [
        controllers[0].add_sel_entry(sim.sel_event(0x01, sensor, 0x01, [0x59, 86, 85]))
        for sensor in (7, 8, 9)
    ]
    (blade,) = chassis.read_json(1, "sel", "list")
    assert [int(entry["id"], 16) for entry in blade["entries"]] == given
    assert [entry["sensor"] for entry in blade["entries"]] == ["0x07", "0x08", "0x09"]


def test_an_empty_log_is_empty(chassis):
    assert chassis.read(1, "-o", "binary", "sel", "list") == b""


def test_the_summary_counts_what_ipmitool_added(chassis, controllers):
    fill(controllers[0], 5)
    (blade,) = chassis.read_json(1, "sel", "info")
    assert blade["entries"] == 5


def test_a_log_cleared_by_ruk_ipmi_is_empty_for_ipmitool(chassis, controllers):
    fill(controllers[0], 20)
    chassis.read(1, "sel", "clear")
    assert int.from_bytes(controllers[0].raw(0x0A, 0x40)[1:3], "little") == 0


def test_a_log_cleared_by_ipmitool_is_empty_for_ruk_ipmi(chassis, controllers):
    fill(controllers[0], 3)
    assert len(chassis.read(1, "-o", "binary", "sel", "list")) == 3 * 16
    controllers[0].ipmitool("sel", "clear")
    assert chassis.read(1, "-o", "binary", "sel", "list") == b""


def test_the_clock_set_by_ruk_ipmi_is_the_one_that_ipmitool_reads(chassis, controllers):
    chassis.read(1, "sel", "time", "set", "2030-01-02T03:04:05Z")
    read = int.from_bytes(controllers[0].raw(0x0A, 0x48), "little")
    assert 0 <= read - 1893553445 <= 10


def test_entries_of_two_controllers_do_not_mix(chassis, controllers):
    fill(controllers[0], 12)
    fill(controllers[1], 31)
    chassis.read(1, "sel", "clear")
    assert chassis.read(1, "-o", "binary", "sel", "list") == b""
    assert chassis.read(2, "-o", "binary", "sel", "list") == log_as_ipmitool_reads_it(
        controllers[1]
    )
