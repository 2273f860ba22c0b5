"""What the commands for a blade's controller bring about in a simulated blade."""

from patience import until


def test_the_power_goes_off_and_on(tool):
    def power():
        return tool("chassis", "power", "status")["power"]

    assert power() == "on"
    tool("chassis", "power", "off")
    until(lambda: power() == "off")
    tool("chassis", "power", "on")
    until(lambda: power() == "on")
    assert tool("chassis", "status")["last_power_change"] == ["command"]


def test_identification_lasts_until_it_is_ended(tool):
    tool("chassis", "identify", "--force")
    assert tool("chassis", "status")["identify"] == "until ended"
    tool("chassis", "identify", "--off")
    assert tool("chassis", "status")["identify"] == "off"


def test_a_boot_device_is_kept(tool):
    tool("chassis", "boot-device", "set", "pxe", "--efi")
    told = tool("chassis", "boot-device", "get")
    assert told == {"device": "pxe", "valid": True, "persistent": False, "efi": True}


def test_a_lan_parameter_is_kept(tool):
    tool("lan", "set", "ipsrc", "static")
    tool("lan", "set", "ipaddr", "192.0.2.7")
    told = tool("lan", "print")
    assert (told["ip_address"], told["ip_address_source"]) == ("192.0.2.7", "static")


def test_a_user_is_made(tool):
    tool("user", "set-name", "5", "operator")
    tool("user", "set-password", "5", "--password-file", "-", stdin=b"a long secret")
    tool("user", "set-access", "5", "--privilege", "operator")
    tool("user", "enable", "5")
    made = tool("user", "list")["users"][4]
    assert (made["name"], made["enabled"], made["privilege"]) == ("operator", True, "operator")
    tool("user", "disable", "5")
    assert tool("user", "list")["users"][4]["enabled"] is False


def test_consumption_begins_anew(tool):
    tool("power", "reset")
    told = tool("power", "consumption")
    assert told["value_2"] <= told["value_1"] <= told["value_3"]
    assert tool("power", "draw")["word_3"] > 0


def test_a_controller_is_known(tool):
    told = tool("controller", "info")
    assert told["ipmi_version"] == "2.0"
    assert "SEL" in told["supports"]


def test_a_name_in_the_system_information_is_kept(tool):
    tool("sysinfo", "set", "system-name", "--text", "node-a.example.net")
    assert tool("sysinfo", "get", "system-name")["text"] == "node-a.example.net"


def test_an_extended_parameter_is_kept_by_its_index(tool):
    assert tool("ext", "get", "7")["value"] == ""
    tool("ext", "set", "7", "-", stdin=bytes(300))
    tool("ext", "set", "7", "--index", "1", "--hex", "0a0b")
    assert tool("ext", "get", "7")["length"] == 300
    assert tool("ext", "get", "7", "--index", "1")["value"] == "0a 0b"


def test_a_blade_has_states_to_show(tool):
    for state in ("status", "kvm", "media", "identify-led", "post-code"):
        assert all(bytes.fromhex(shown) for shown in tool("blade", state).values())


def test_throttling_and_the_supply_are_told_to_the_blade(tool):
    tool("power", "throttle", "cpu", "1")
    tool("power", "throttle", "memory", "1")
    tool("power", "efficiency", "50")
    told = tool("power", "draw")
    assert told["byte_7"] == "0x01"
    assert told["word_5"] >= told["word_3"]
