"""The inventory, written by one program and read by the other."""

import random

import sim


def image_as_ipmitool_reads_it(controller):
    saved = controller.directory / "inventory"
    controller.ipmitool("fru", "read", "0", saved)
    return saved.read_bytes()


def test_the_inventory_is_read_byte_for_byte(chassis, controllers):
    expected = image_as_ipmitool_reads_it(controllers[0])
    assert expected == sim.fru_image(f"first-{controllers[0].port}")
    assert chassis.read(1, "fru", "read", "-") == expected


def test_an_inventory_written_by_ruk_ipmi_is_what_ipmitool_reads(chassis, controllers, tmp_path):
    image = tmp_path / "image"
    image.write_bytes(sim.fru_image("written-by-ruk"))
    chassis.read(1, "fru", "write", image)
    assert image_as_ipmitool_reads_it(controllers[0]) == image.read_bytes()
    assert "written-by-ruk" in controllers[0].ipmitool("fru", "print", "0").stdout


def test_an_inventory_written_by_ipmitool_is_what_ruk_ipmi_reads(chassis, controllers, tmp_path):
    image = tmp_path / "image"
    image.write_bytes(sim.fru_image("written-by-ipmitool"))
    controllers[0].ipmitool("fru", "write", "0", image)
    assert chassis.read(1, "fru", "read", "-") == image.read_bytes()
    assert b"written-by-ipmitool" in chassis.read(1, "fru", "print")


def test_every_byte_value_survives_both_ways(chassis, controllers, tmp_path):
    image = tmp_path / "image"
    image.write_bytes(bytes(random.Random(1).sample(range(256), 256)))
    chassis.read(1, "fru", "write", "--force", image)  # it is no inventory
    assert chassis.read(1, "fru", "read", "-") == image.read_bytes()
    assert b"".join(
        controllers[0].raw(0x0A, 0x11, 0, offset, 0, 16)[1:] for offset in range(0, 256, 16)
    ) == image.read_bytes()


def test_what_is_printed_is_what_ipmitool_prints(chassis, controllers):
    printed = chassis.read(1, "fru", "print").decode()
    theirs = controllers[0].ipmitool("fru", "print", "0").stdout
    for text in ["Example Boards", "Controller card", f"first-{controllers[0].port}", "BL-7"]:
        assert text in printed
        assert text in theirs


def test_the_inventories_of_two_controllers_do_not_mix(chassis, controllers, tmp_path):
    untouched = image_as_ipmitool_reads_it(controllers[1])
    image = tmp_path / "image"
    image.write_bytes(sim.fru_image("only-the-first"))
    chassis.read(1, "fru", "write", image)
    assert chassis.read(2, "fru", "read", "-") == untouched


def test_a_missing_device_is_the_blades_refusal(chassis):
    done = chassis.tool(1, "fru", "info", "--id", "9")
    assert done.returncode == 1
    assert b"0xC" in done.stderr
