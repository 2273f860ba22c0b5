"""How the commands for the chassis manager's own parameters show what a blade answers."""

import pytest


def value(blade, group, fields):
    """Makes the blade answer every read of a parameter with these bytes."""

    @blade.answer(0x30D0)
    def read(payload):
        assert payload[:2] == bytes([0x01, group])
        size = (2 + len(fields)).to_bytes(2, "little")
        return b"\0" + bytes([group]) + size + b"\0\0" + size + fields

    return read


def configuration(status, length=0, name=b""):
    return bytes([status, length]) + bytes(5) + name.ljust(16, b"\0")


@pytest.mark.parametrize(
    "status, name",
    [(0, "Not_Started"), (1, "Completed"), (8, "File_Size_CRC_Error"), (9, "unknown")],
)
def test_a_configurations_status_has_a_name(ruk_ipmi, made_up_blade, status, name):
    value(made_up_blade, 0x0C, configuration(status, 5, b"switch-a.cfg"))
    assert ruk_ipmi.json("-b", "1", "sled", "config", "get") == [
        {
            "blade": "1",
            "status": name,
            "status_code": f"0x{status:02X}",
            "name": "switch-a.cfg",
            "length": 5,
        }
    ]


def test_a_blade_that_tells_its_status_alone_has_no_name(ruk_ipmi, made_up_blade):
    answer = value(made_up_blade, 0x0C, configuration(2))
    made_up_blade.answer(0x30D0)(lambda payload: answer(payload) if payload[2] == 4 else 0xC6)
    (told,) = ruk_ipmi.json("-b", "1", "sled", "config", "get")
    assert (told["status"], told["name"], told["length"]) == ("Pending_Busy", None, None)


def test_a_blade_that_tells_not_even_its_status_has_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30D0)(lambda _: 0xC6)
    ended = ruk_ipmi("-b", "1", "sled", "config", "get")
    assert ended.returncode == 1
    assert "Get Sled Switch Configuration refused: 0xC6" in ended.stderr
    assert ended.stdout == b""


def test_a_status_of_all_ones_is_shown(ruk_ipmi, made_up_blade):
    value(made_up_blade, 0x0C, configuration(0xFF))
    assert "status code: 0xFF\n" in ruk_ipmi.text("-b", "1", "sled", "config", "get")


def test_a_name_that_would_upset_a_terminal_is_made_harmless(ruk_ipmi, made_up_blade):
    value(made_up_blade, 0x0C, configuration(1, 5, b"\x1b[2J" + b"x" * 12))
    (told,) = ruk_ipmi.json("-b", "1", "sled", "config", "get")
    assert told["name"] == "?[2J" + "x" * 12


@pytest.mark.parametrize(
    "group, arguments, names",
    [
        (0x0D, ["sled", "links"], ["link_a", "link_b"]),
        (0x02, ["lcd", "status"], ["status_a", "status_b"]),
    ],
)
def test_two_bytes_are_shown_as_they_are(ruk_ipmi, made_up_blade, group, arguments, names):
    value(made_up_blade, group, b"\x01\x82\x00")
    assert ruk_ipmi.json("-b", "1", *arguments) == [
        {"blade": "1", names[0]: "0x01", names[1]: "0x82"}
    ]
    value(made_up_blade, group, b"\x00\x00\x00")
    assert "0x00" in ruk_ipmi.text("-b", "1", *arguments)


@pytest.mark.parametrize(
    "group, arguments",
    [(0x0D, ["sled", "links"]), (0x02, ["lcd", "status"]), (0x1B, ["imc-event", "get"])],
)
def test_an_answer_that_stops_short_is_not_taken_for_zeros(
    ruk_ipmi, made_up_blade, group, arguments
):
    value(made_up_blade, group, b"\x01")
    ended = ruk_ipmi("-b", "1", *arguments)
    assert ended.returncode == 1
    assert "the answer has 9 bytes, not " in ended.stderr
    assert ended.stdout == b""


def test_a_link_tuning_version_is_the_blades_bytes(ruk_ipmi, made_up_blade):
    value(made_up_blade, 0x11, bytes.fromhex("0c 0102030a 0405060b"))
    assert ruk_ipmi.text("-b", "1", "link-tuning", "version") == (
        "value a: 01 02 03 0a\nvalue b: 04 05 06 0b\nvalue c: 0x0C\n"
    )


def test_a_transmit_status_is_a_byte(ruk_ipmi, made_up_blade):
    value(made_up_blade, 0x11, b"\x02")
    assert ruk_ipmi.text("-b", "1", "link-tuning", "tx-status") == "tx status: 0x02\n"
    assert made_up_blade.requests == [(0x30D0, bytes.fromhex("01 11 0300 0000 02"))]


@pytest.mark.parametrize("item", ["version", "tx-status"])
def test_a_link_tuning_of_a_wrong_length_is_refused(ruk_ipmi, made_up_blade, item):
    value(made_up_blade, 0x11, b"\x0c\x01")
    ended = ruk_ipmi("-b", "1", "link-tuning", item)
    assert ended.returncode == 1
    assert "the answer has a wrong length (0x5109)" in ended.stderr


@pytest.mark.parametrize("status, shown", [(b"2", "2"), (b"F", "F"), (b"\x07", "?")])
def test_a_copys_status_is_a_character(ruk_ipmi, made_up_blade, status, shown):
    value(made_up_blade, 0x16, status)
    assert ruk_ipmi.json("-b", "1", "file", "copy-status", "--selector", "9") == [
        {
            "blade": "1",
            "selector": 9,
            "copy_status": shown,
            "copy_status_code": f"0x{status[0]:02X}",
        }
    ]
    assert made_up_blade.requests == [(0x30D0, bytes.fromhex("01 16 0300 0000 09"))]


def test_a_post_code_is_a_number_and_what_follows(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30D4)(lambda _: bytes.fromhex("00 aa010203") + bytes(range(1, 13)))
    assert ruk_ipmi.text("-b", "1", "post-code", "--request", "01020304") == (
        "post code:     0x030201AA\nfurther bytes: 01 02 03 04 05 06 07 08 09 0a 0b 0c\n"
    )
    assert made_up_blade.requests == [(0x30D4, b"\x01\x02\x03\x04")]


def test_of_a_short_post_code_what_is_there_is_shown(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30D4)(lambda _: bytes.fromhex("00 aa000000 07"))
    assert ruk_ipmi.json("-b", "1", "post-code") == [
        {"blade": "1", "post_code": "0x000000AA", "further_bytes": "07"}
    ]


def test_a_post_code_that_is_cut_off_is_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30D4)(lambda _: b"\x00\xaa")
    assert ruk_ipmi("-b", "1", "post-code").returncode == 1


def event(blade, length, data):
    """A record with features 0x8001 of FRU 3, which says that it has `length` bytes."""
    record = length.to_bytes(2, "little") + b"\x01\x80\x03" + data
    blade.answer(0x30D0)(lambda payload: b"\0\x1b\x2a\0\0\0" + record)


def test_an_imc_event_shows_its_fields_and_data(ruk_ipmi, made_up_blade):
    event(made_up_blade, 8, b"\x0a\x0b\x0c" + bytes(34))
    assert ruk_ipmi.json("-b", "1", "imc-event", "get") == [
        {"blade": "1", "length": 8, "features": "0x8001", "fru": "0x03", "data": "0a 0b 0c"}
    ]


def test_an_imc_event_may_have_no_data(ruk_ipmi, made_up_blade):
    event(made_up_blade, 5, b"")
    assert "data:     -\n" in ruk_ipmi.text("-b", "1", "imc-event", "get")


def test_an_imc_event_that_is_too_long_shows_what_is_good_of_it(ruk_ipmi, made_up_blade):
    event(made_up_blade, 43, bytes(38))
    ended = ruk_ipmi("-b", "1", "imc-event", "get")
    assert ended.returncode == 1
    assert "the record says that it has 43 bytes, which is more than 42" in ended.stderr
    assert b"features: 0x8001\n" in ended.stdout


def test_a_power_thermal_answer_is_shown_in_full(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30CE)(lambda _: bytes(range(10)))
    assert ruk_ipmi.json("-b", "1", "power-thermal", "raw", "1", "2") == [
        {"blade": "1", "answer": "01 02 03 04 05 06 07 08 09"}
    ]
