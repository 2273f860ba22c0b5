"""The LAN configuration of a blade's controller, in words and in bytes."""

import pytest

VALUES = [
    ("ipaddr", "192.0.2.7", 3, "c0 00 02 07"),
    ("netmask", "255.255.255.0", 6, "ff ff ff 00"),
    ("defgw", "192.0.2.1", 12, "c0 00 02 01"),
    ("bakgw", "192.0.2.2", 14, "c0 00 02 02"),
    ("ipsrc", "dhcp", 4, "02"),
    ("macaddr", "02:00:5e:00:53:01", 5, "02 00 5e 00 53 01"),
    ("defgw-mac", "02:00:5e:00:53:02", 13, "02 00 5e 00 53 02"),
    ("bakgw-mac", "02:00:5e:00:53:03", 15, "02 00 5e 00 53 03"),
    ("community", "public", 16, "70 75 62 6c 69 63" + " 00" * 12),
    ("community", "x" * 18, 16, "78" + " 78" * 17),
    ("vlan", "0x123", 20, "23 81"),
    ("vlan", "off", 20, "00 00"),
    ("priority", "5", 21, "05"),
]


@pytest.mark.parametrize("name, value, number, data", VALUES)
def test_a_parameter_is_set_by_its_name(ruk_ipmi, made_up_blade, name, value, number, data):
    made_up_blade.answer(0x0C01)(lambda _: 0)
    (told,) = ruk_ipmi.json("-b", "1", "lan", "set", name, value)
    assert told["value"] == ("291" if value == "0x123" else value)
    assert made_up_blade.requests == [(0x0C01, bytes([1, number]) + bytes.fromhex(data))]


@pytest.mark.parametrize("name, value, number, data", VALUES)
def test_a_parameter_is_shown_as_it_is_typed(ruk_ipmi, made_up_blade, name, value, number, data):
    made_up_blade.answer(0x0C02)(lambda _: b"\0\x11" + bytes.fromhex(data))
    assert ruk_ipmi.json("-b", "1", "lan", "get", name) == [
        {
            "blade": "1",
            "parameter": number,
            "value": "291" if value == "0x123" else value,
            "data": data,
        }
    ]
    assert made_up_blade.requests == [(0x0C02, bytes([1, number, 0, 0]))]


def test_any_parameter_can_be_set_in_bytes(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0C01)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "lan", "set", "0xC0", "0a0b", "--hex")
    ruk_ipmi.text("-b", "1", "lan", "set", "ipaddr", "00" * 253, "--hex")
    assert made_up_blade.requests == [
        (0x0C01, b"\x01\xc0\x0a\x0b"),
        (0x0C01, b"\x01\x03" + bytes(253)),
    ]


def test_a_value_that_is_too_short_is_shown_in_bytes_alone(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0C02)(lambda _: b"\0\x11\xc0\x00")
    (told,) = ruk_ipmi.json("-b", "1", "lan", "get", "ipaddr")
    assert (told["value"], told["data"]) == (None, "c0 00")


@pytest.mark.parametrize("length", [0, 200, 201, 254])
def test_a_value_is_as_long_as_the_blades(ruk_ipmi, made_up_blade, length):
    made_up_blade.answer(0x0C02)(lambda _: b"\0\x11" + b"\x0a" * length)
    shown = ruk_ipmi("-b", "1", "lan", "get", "0xC0", "-o", "binary")
    assert shown.stdout == b"\x0a" * length


def test_an_answer_without_a_revision_is_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0C02)(lambda _: 0)
    assert ruk_ipmi("-b", "1", "lan", "get", "ipaddr").returncode == 1


def test_print_leaves_open_what_the_controller_does_not_have(ruk_ipmi, made_up_blade):
    values = {0: "00", 1: "14", 3: "c0000207", 4: "01"}
    made_up_blade.answer(0x0C02)(
        lambda payload: b"\0\x11" + bytes.fromhex(values[payload[1]])
        if payload[1] in values
        else 0x80
    )
    (told,) = ruk_ipmi.json("-b", "1", "lan", "print")
    assert {key: value for key, value in told.items() if value is not None} == {
        "blade": "1",
        "set_in_progress": "complete",
        "authentication": "MD5, password",
        "ip_address": "192.0.2.7",
        "ip_address_source": "static",
    }


def test_print_ends_with_a_blade_that_does_not_answer(ruk_ipmi, made_up_blade):
    made_up_blade.status = 0x500A
    assert ruk_ipmi("-b", "1", "lan", "print").returncode == 4


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["set", "ipaddr", "192.0.2"], '"192.0.2" is not an address like 192.0.2.7'),
        (["set", "ipsrc", "magic"], '"magic" is none of unspecified, static, dhcp'),
        (["set", "macaddr", "02:00"], "has 2 bytes, not 6"),
        (["set", "community", "x" * 19], "is longer than 18 bytes"),
        (["set", "vlan", "4095"], "4095 is not from 1 to 4094"),
        (["set", "priority", "8"], "8 is not from 0 to 7"),
        (["set", "0xC0", "1"], "say --hex"),
        (["set", "progress", "1"], "say --hex"),
        (["set", "nothing", "1"], 'PARAMETER: "nothing" is none of progress, auth, ipaddr'),
        (["set", "256", "1"], "PARAMETER: 256 is not from 0 to 255"),
        (["set", "ipaddr", "00" * 254, "--hex"], "is longer than 253 bytes"),
    ],
)
def test_a_mistake_is_told_before_anything_is_sent(ruk_ipmi, made_up_blade, arguments, message):
    ended = ruk_ipmi("-b", "1", "lan", *arguments)
    assert ended.returncode == 2
    assert message in ended.stderr
    assert made_up_blade.requests == []
