"""A blade's controller: what it is, and what it can do."""

import pytest

DEVICE_ID = bytes.fromhex("00 20 81 02 14 02 bf 5700 00 1d0b 01020304")


def knows(blade, answers):
    for netfn_cmd, answer in answers.items():
        blade.answer(netfn_cmd)(lambda _, answer=answer: bytes.fromhex(answer))


def test_info_tells_all_of_a_controller(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0601)(lambda _: DEVICE_ID)
    knows(made_up_blade, {0x30BD: "00 010203040506", 0x3033: "00 0102030405"})
    made_up_blade.answer(0x30A9)(
        lambda payload: b"\0\0\0\x05" if payload[0] == 0x12 else b"\0\0\0" + b"x" * 20
    )
    (told,) = ruk_ipmi.json("-b", "1", "controller", "info")
    assert told.pop("manufacturer")
    assert told == {
        "blade": "1",
        "device_id": "0x20",
        "device_revision": 1,
        "provides_sdrs": True,
        "firmware_version": "2.14",
        "being_updated": False,
        "ipmi_version": "2.0",
        "supports": [
            *("sensors", "SDRs", "SEL", "FRU"),
            *("event receiver", "event generator", "chassis"),
        ],
        "manufacturer_id": 0x57,
        "product_id": "0x0B1D",
        "further_bytes": "01 02 03 04",
        "features": "01 02 03 04 05 06",
        "cpld_version": "01 02 03 04 05",
        "power_management": "0x05",
        "rebrand": "x" * 15,
    }


def test_info_leaves_open_what_a_controller_does_not_know(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0601)(lambda _: DEVICE_ID[:12])
    (told,) = ruk_ipmi.json("-b", "1", "controller", "info")
    assert told["further_bytes"] == ""
    open_fields = [key for key, value in told.items() if value is None]
    assert open_fields == ["features", "cpld_version", "power_management", "rebrand"]


def test_a_device_id_that_is_cut_off_is_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0601)(lambda _: DEVICE_ID[:11])
    assert ruk_ipmi("-b", "1", "controller", "info").returncode == 1


def test_discovery_is_shown_in_the_blades_bytes(ruk_ipmi, made_up_blade):
    knows(made_up_blade, {0x30A3: "00 010203040506070809"})
    shown = ruk_ipmi.text("-b", "1", "controller", "discovery")
    assert shown == "discovery: 01 02 03 04 05 06 07 08 09\n"
    assert made_up_blade.requests == [(0x30A3, b"\x12")]


@pytest.mark.parametrize(
    "arguments, netfn_cmd, payload",
    [
        (["send-value", "010203040506"], 0x30C9, "0000 010203040506" + "00" * 24),
        (["send-feature", "0102030405060708"], 0x30C3, "0102030405060708"),
    ],
)
def test_what_is_sent_is_sent_once(ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload):
    made_up_blade.answer(netfn_cmd)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "controller", *arguments)
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(payload))]


@pytest.mark.parametrize("arguments", [["send-value", "0102"], ["send-feature", "0102"]])
def test_what_has_a_wrong_length_is_not_sent(ruk_ipmi, made_up_blade, arguments):
    ended = ruk_ipmi("-b", "1", "controller", *arguments)
    assert (ended.returncode, made_up_blade.requests) == (2, [])
    assert "HEX: has 2 bytes, not " in ended.stderr
