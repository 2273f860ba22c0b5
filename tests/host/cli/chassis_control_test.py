"""A blade's power, its identification, and what it boots from."""

import pytest

REQUESTS = [
    (["power", "off"], 0x0002, "00"),
    (["power", "on"], 0x0002, "01"),
    (["power", "cycle"], 0x0002, "02"),
    (["power", "reset"], 0x0002, "03"),
    (["power", "diag"], 0x0002, "04"),
    (["power", "soft"], 0x0002, "05"),
    (["identify"], 0x0004, "0f"),
    (["identify", "60"], 0x0004, "3c"),
    (["identify", "--off"], 0x0004, "00"),
    (["identify", "--force"], 0x0004, "0f 01"),
    (["reset-to-defaults", "3"], 0x3021, "03"),
    (["boot-option", "set", "0x87", "0a0b"], 0x0008, "87 0a0b"),
    (["boot-option", "set", "7", ""], 0x0008, "07"),
]


@pytest.mark.parametrize("arguments, netfn_cmd, payload", REQUESTS)
def test_a_command_sends_its_bytes_once(ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload):
    made_up_blade.answer(netfn_cmd)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "chassis", *arguments)
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(payload))]


@pytest.mark.parametrize("arguments, netfn_cmd, payload", REQUESTS)
def test_a_refusal_is_told(ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload):
    made_up_blade.answer(netfn_cmd)(lambda _: 0xD5)
    ended = ruk_ipmi("-b", "1", "chassis", *arguments)
    assert ended.returncode == 1
    assert "refused: 0xD5" in ended.stderr


def status(blade, answer):
    blade.answer(0x0001)(lambda _: b"\0" + bytes.fromhex(answer))


def test_a_status_is_told_in_words(ruk_ipmi, made_up_blade):
    status(made_up_blade, "4b 10 6d 05")
    assert ruk_ipmi.json("-b", "1", "chassis", "status") == [
        {
            "blade": "1",
            "power": "on",
            "power_problems": ["overload", "power fault"],
            "after_power_loss": "turns on",
            "last_power_change": ["command"],
            "problems": ["intrusion", "drive", "cooling"],
            "identify": "until ended",
            "disabled_buttons": ["power off", "diagnostic interrupt"],
        }
    ]


def test_a_status_may_lack_the_buttons(ruk_ipmi, made_up_blade):
    status(made_up_blade, "00 00 00")
    (told,) = ruk_ipmi.json("-b", "1", "chassis", "status")
    assert (told["power"], told["identify"], told["disabled_buttons"]) == ("off", "not told", None)


def test_a_status_that_is_cut_off_is_refused(ruk_ipmi, made_up_blade):
    status(made_up_blade, "01 00")
    ended = ruk_ipmi("-b", "1", "chassis", "power", "status")
    assert ended.returncode == 1
    assert "Get Chassis Status: the answer has 3 bytes, not 4" in ended.stderr


def test_the_power_cycles_are_a_byte_that_must_come(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x309B)(lambda _: b"\0\x07")
    assert ruk_ipmi.text("-b", "1", "chassis", "power-cycles") == "data: 7\n"
    made_up_blade.answer(0x309B)(lambda _: b"\0")
    assert ruk_ipmi("-b", "1", "chassis", "power-cycles").returncode == 1


@pytest.mark.parametrize(
    "arguments, flags",
    [
        (["pxe"], "80 04"),
        (["none"], "80 00"),
        (["disk", "--persistent"], "c0 08"),
        (["cdrom", "--efi"], "a0 14"),
        (["floppy", "--efi", "--persistent"], "e0 3c"),
    ],
)
def test_a_boot_device_is_set_between_marks_of_progress(
    ruk_ipmi, made_up_blade, arguments, flags
):
    made_up_blade.answer(0x0008)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "chassis", "boot-device", "set", *arguments)
    assert [payload.hex(" ") for _, payload in made_up_blade.requests] == [
        "00 01",
        f"05 {flags} 00 00 00",
        "00 00",
    ]


def test_a_controller_may_lack_the_mark_of_progress(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0008)(lambda payload: 0x80 if payload[0] == 0 else 0)
    ruk_ipmi.text("-b", "1", "chassis", "boot-device", "set", "pxe")
    assert made_up_blade.count(0x0008) == 2


def test_the_boot_device_is_left_to_who_sets_it_at_this_moment(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0008)(lambda payload: 0x81 if payload[0] == 0 else 0)
    ended = ruk_ipmi("-b", "1", "chassis", "boot-device", "set", "pxe")
    assert (ended.returncode, made_up_blade.count(0x0008)) == (1, 1)


def test_the_mark_of_progress_goes_also_when_the_device_is_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0008)(lambda payload: 0xCC if payload[0] == 5 else 0)
    assert ruk_ipmi("-b", "1", "chassis", "boot-device", "set", "pxe").returncode == 1
    assert made_up_blade.requests[-1] == (0x0008, b"\0\0")


def test_a_boot_device_is_told_with_its_flags(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0009)(lambda _: bytes.fromhex("00 01 05 e0 18 00 00 00"))
    assert ruk_ipmi.json("-b", "1", "chassis", "boot-device", "get") == [
        {"blade": "1", "device": "bios", "valid": True, "persistent": True, "efi": True}
    ]
    assert made_up_blade.requests[0] == (0x0009, b"\x05\0\0")


def test_a_boot_option_is_as_long_as_the_blades(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0009)(lambda _: bytes.fromhex("00 01 03 00"))
    shown = ruk_ipmi.json("-b", "1", "chassis", "boot-option", "get", "3", "--set", "2")
    assert shown == [{"blade": "1", "parameter": 3, "data": "00"}]
    assert made_up_blade.requests[0] == (0x0009, b"\x03\x02\0")


def test_an_option_that_the_blade_marks_as_invalid_is_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0009)(lambda _: bytes.fromhex("00 01 87 01 02 03 04 05"))
    ended = ruk_ipmi("-b", "1", "chassis", "boot-option", "get", "7")
    assert ended.returncode == 1
    assert "the blade marks the parameter as invalid: 01 02 03 04 05" in ended.stderr


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["identify", "300"], "SECONDS: 300 is not from 0 to 255"),
        (["identify", "5", "--off"], "excludes"),
        (["boot-device", "set", "tape"], 'DEVICE: "tape" is none of none, pxe, disk, safe'),
        (["boot-option", "get", "128"], "N: 128 is not from 0 to 127"),
        (["boot-option", "set", "1", "00" * 488], "HEX: is longer than 487 bytes"),
    ],
)
def test_a_mistake_is_told_before_anything_is_sent(ruk_ipmi, made_up_blade, arguments, message):
    ended = ruk_ipmi("-b", "1", "chassis", *arguments)
    assert ended.returncode == 2
    assert message in ended.stderr
    assert made_up_blade.requests == []
