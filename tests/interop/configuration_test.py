"""Power, identification, boot devices, users and LAN parameters of a controller that nobody here
wrote: what one voice sets, the other one reads."""

import pytest


@pytest.fixture
def controller(chassis):
    return chassis.controllers[0]


def user_row(controller, user_id):
    """A line of ipmitool's list of users, in words."""
    lines = controller.ipmitool("user", "list", 1).stdout.splitlines()
    (found,) = [line for line in lines if line.split()[:1] == [str(user_id)]]
    return found.split()


def lan_value(controller, label):
    lines = controller.ipmitool("lan", "print", 1).stdout.splitlines()
    (found,) = [line for line in lines if line.split(":")[0].strip() == label]
    return found.split(":", 1)[1].strip()


@pytest.mark.parametrize("state", ["off", "on"])
def test_power_switched_by_the_library_is_what_the_other_voice_reads(chassis, controller, state):
    chassis.read(1, "chassis", "power", state)
    assert controller.ipmitool("power", "status").stdout == f"Chassis Power is {state}\n"


@pytest.mark.parametrize("state", ["off", "on"])
def test_power_switched_by_the_other_voice_is_what_the_library_reads(chassis, controller, state):
    controller.ipmitool("power", state)
    assert chassis.read_json(1, "chassis", "power", "status")[0]["power"] == state


def test_reset_reaches_the_chassis(chassis, controller):
    chassis.read(1, "chassis", "power", "reset")
    assert controller.chassis("reset") == "1"


def test_identification_reaches_the_chassis_with_its_interval(chassis, controller):
    chassis.read(1, "chassis", "identify", 7)
    assert controller.chassis("identify").split()[0] == "7"
    controller.ipmitool("chassis", "identify", 9)
    assert controller.chassis("identify").split()[0] == "9"


@pytest.mark.parametrize(
    "device, as_told",
    [
        ("pxe", "Force PXE"),
        ("disk", "Force Boot from default Hard-Drive"),
        ("cdrom", "Force Boot from CD/DVD"),
        ("bios", "Force Boot into BIOS Setup"),
    ],
)
def test_a_boot_device_set_by_the_library_is_read_by_the_other_voice(
    chassis, controller, device, as_told
):
    chassis.read(1, "chassis", "boot-device", "set", device)
    told = controller.ipmitool("chassis", "bootparam", "get", 5).stdout
    assert f"Boot Device Selector : {as_told}\n" in told


@pytest.mark.parametrize("device", ["pxe", "disk", "cdrom", "bios"])
def test_a_boot_device_set_by_the_other_voice_is_read_by_the_library(chassis, controller, device):
    controller.ipmitool("chassis", "bootdev", device)
    assert chassis.read_json(1, "chassis", "boot-device", "get")[0]["device"] == device


def test_a_user_set_up_by_the_library_is_listed_by_the_other_voice(chassis, controller):
    chassis.read(1, "user", "set-name", 3, "ann")
    chassis.read(1, "user", "set-access", 3, "--privilege", "operator")
    assert user_row(controller, 3)[1] == "ann"
    assert user_row(controller, 3)[-1] == "OPERATOR"


def test_a_password_set_by_the_library_lets_its_user_in(chassis, controller, tmp_path):
    password = tmp_path / "ann.password"
    password.write_text("ann's secret\n")
    chassis.read(1, "user", "set-name", 3, "ann")
    chassis.read(1, "user", "set-password", 3, "--password-file", password)
    chassis.read(1, "user", "set-access", 3, "--privilege", "admin")
    chassis.read(1, "user", "enable", 3)
    as_ann = ["-U", "ann", "-f", password]
    controller.ipmitool(*as_ann, "mc", "info")
    chassis.read(1, "user", "disable", 3)
    assert controller.ipmitool(*as_ann, "mc", "info", check=False).returncode != 0


def test_users_set_up_by_the_other_voice_are_listed_by_the_library(chassis, controller):
    controller.ipmitool("user", "set", "name", 4, "bob")
    users = chassis.read_json(1, "user", "list")[0]["users"]
    assert {user["id"]: user["name"] for user in users}[4] == "bob"


@pytest.mark.parametrize(
    "parameter, value, label",
    [
        ("ipaddr", "10.1.2.3", "IP Address"),
        ("netmask", "255.255.240.0", "Subnet Mask"),
        ("defgw", "10.1.0.1", "Default Gateway IP"),
        ("macaddr", "02:00:5e:10:20:30", "MAC Address"),
    ],
)
def test_a_lan_parameter_set_by_the_library_is_printed_by_the_other_voice(
    chassis, controller, parameter, value, label
):
    chassis.read(1, "lan", "set", parameter, value)
    assert lan_value(controller, label) == value


def test_lan_parameters_set_by_the_other_voice_are_printed_by_the_library(chassis, controller):
    controller.ipmitool("lan", "set", 1, "ipsrc", "static")
    controller.ipmitool("lan", "set", 1, "ipaddr", "10.9.8.7")
    told = chassis.read(1, "lan", "print").decode()
    assert "10.9.8.7" in told
    assert "static" in told


def test_entering_the_firmware_update_goes_out_as_network_function_2e(chassis):
    """Of all network functions, requests of this one begin with an enterprise's number, and this
    request has none: so the controller says that its length is wrong."""
    refused = chassis.tool(1, "blade", "firmware-update", "--yes")
    assert refused.returncode == 1
    assert b"0xC7" in refused.stderr
    same = chassis.tool(1, "raw", "0x2E", "0x18")
    assert b"0xC7" in same.stderr
    other = chassis.tool(1, "raw", "0x30", "0x18")
    assert b"0xC7" not in other.stderr
