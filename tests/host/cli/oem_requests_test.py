"""What the commands for the chassis manager's own parameters send, and what they refuse to."""

import pytest

NAME = b"switch-a.cfg"
PATH = b"/srv/files/tuning.bin"
LOGS = b"zatdumplogs.log.zip"
WRITES = [
    (
        ["sled", "config", "set", "--name", NAME.decode(), "--crc", "11223344", "--length", "5"],
        (0x30D0, "00 0c 1900 0000 1900 05 44332211 0000", NAME.ljust(16, b"\0")),
    ),
    (
        ["sled", "mac-map", "set", "--id", "2", "--hex", "0a0b0c"],
        (0x30CB, "00 08 0500 0000 02 03", b"\x0a\x0b\x0c"),
    ),
    (["sled", "mac-map", "set", "--id", "2", "--hex", ""], (0x30CB, "00 08 0200 0000 02 00", b"")),
    (
        ["led", "blink", "server"],
        (0x30D0, "00 0e 0e00 0000 0e00 01 02 ff fa00 fa00 00000000 00", b""),
    ),
    (
        ["led", "off", "drive"],
        (0x30D0, "00 0e 0e00 0000 0e00 03 02 00 f400 f400 ffffffff 00", b""),
    ),
    (["power-button", "lock"], (0x000A, "01", b"")),
    (["power-button", "unlock"], (0x000A, "00", b"")),
    (
        ["file", "path", "set", "--selector", "7", PATH.decode()],
        (0x30D0, "00 16 2100 0000 2100 07", PATH.ljust(30, b"\0")),
    ),
    (
        ["file", "lt-path", "set", PATH.decode()],
        (0x30D0, "00 11 2000 0000 2000", PATH.ljust(30, b"\0")),
    ),
    (["notify", "fw-status", "5"], (0x30D0, "00 16 0400 0000 0400 03 05", b"")),
    (["notify", "timeout"], (0x30D0, "00 16 0300 0000 0300 04", b"")),
    (["notify", "dump-logs", "1"], (0x30D0, "00 20 1900 0000 1900 0000 01 13", LOGS)),
    (["lcd", "hide"], (0x30D0, "00 02 0300 0000 0300 01", b"")),
    (["lcd", "show"], (0x30D0, "00 02 0300 0000 0300 00", b"")),
    (["autothrottle", "set"], (0x30D0, "00 1a 0500 0000 0500 000159", b"")),
    (
        ["power-thermal", "raw", "1", "2", "--data", "0a0b", "--offset", "0x103"],
        (0x30CE, "01 02 0200 0301", b"\x0a\x0b"),
    ),
    (["power-thermal", "raw", "1", "2"], (0x30CE, "01 02 0000 0000", b"")),
]
READS = [
    (["sled", "links"], "Get Sled Switch Link Status"),
    (["sled", "config", "get"], "Get Sled Switch Configuration"),
    (["cpld", "access", "01" * 10], "CPLD Access"),
    (["post-code"], "Get POST Code"),
    (["file", "copy-status", "--selector", "1"], "Get File Copy Status"),
    (["lcd", "status"], "Get LCD Hide Status"),
    (["link-tuning", "version"], "Get Link Tuning Version"),
    (["link-tuning", "tx-status"], "Get Link Tuning Transmit Status"),
    (["imc-event", "get"], "Get Miscellaneous IMC Event"),
]


def accept_all(blade):
    for netfn_cmd in (0x000A, 0x30BC, 0x30CB, 0x30CE, 0x30D0):
        blade.answer(netfn_cmd)(lambda _: 0)


@pytest.mark.parametrize("crc", ["0x01020304", "01020304", "1020304", "0X1020304"])
def test_a_crc_is_hexadecimal_with_and_without_its_prefix(ruk_ipmi, made_up_blade, crc):
    accept_all(made_up_blade)
    file = ["--name", "a.cfg", "--crc", crc, "--length", "5"]
    assert "crc:    0x01020304\n" in ruk_ipmi.text("-b", "1", "sled", "config", "set", *file)
    ((_, payload),) = made_up_blade.requests
    assert payload[9:13] == b"\x04\x03\x02\x01"


@pytest.mark.parametrize("arguments, request_sent", WRITES)
def test_a_command_sends_its_bytes_once(ruk_ipmi, made_up_blade, arguments, request_sent):
    accept_all(made_up_blade)
    ruk_ipmi.text("-b", "1", *arguments)
    netfn_cmd, head, rest = request_sent
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(head) + rest)]


@pytest.mark.parametrize("arguments", [each for each, _ in WRITES + READS if each[0] != "led"])
@pytest.mark.parametrize("code, exit_code", [(0xC1, 5), (0xD5, 1)])
def test_a_refusal_is_told_for_each_command(
    ruk_ipmi, made_up_blade, arguments, code, exit_code
):
    for netfn_cmd in (0x000A, 0x30BC, 0x30CB, 0x30CE, 0x30D0, 0x30D4):
        made_up_blade.answer(netfn_cmd)(lambda _: code)
    ended = ruk_ipmi("-b", "1", *arguments)
    assert ended.returncode == exit_code
    assert f"refused: 0x{code:02X}" in ended.stderr
    assert ended.stdout == b""


@pytest.mark.parametrize("arguments, name", READS)
def test_a_refused_reading_is_told_by_its_name(ruk_ipmi, made_up_blade, arguments, name):
    assert ruk_ipmi("-b", "1", *arguments).stderr.startswith(f"blade 1: {name} refused: 0xC1")


def test_a_leds_refusal_is_only_in_the_log(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30D0)(lambda _: 0xD5)
    ruk_ipmi.text("-b", "1", "led", "blink", "server")
    assert "failed get_ruk_ipmi_response" in ruk_ipmi("-v", "-b", "1", "led", "off", "drive").stderr
    assert made_up_blade.count(0x30D0) == 2


@pytest.mark.parametrize(
    "attribute, code", [(637, 0x10), (706, 0x20), (633, 0x30), (205, 0x40), (600, 0x50)]
)
def test_a_location_is_a_text(ruk_ipmi, made_up_blade, attribute, code):
    accept_all(made_up_blade)
    ruk_ipmi.text("-b", "3", "location", "set", "--attribute", attribute, "--param", "9", "rack")
    ((_, payload),) = made_up_blade.requests
    assert payload[:10] == bytes([0, 1, 11, 0, 0, 0, 11, 0, code, 9])
    assert payload[10] == 3
    assert payload[12:] == b"\x04rack"


def test_a_location_may_be_a_number(ruk_ipmi, made_up_blade):
    accept_all(made_up_blade)
    ruk_ipmi.text("-b", "3", "location", "set", "--attribute", "513", "0x2A")
    ((_, payload),) = made_up_blade.requests
    assert payload[:11] == bytes([0, 1, 6, 0, 0, 0, 6, 0, 0, 42, 3])


def test_a_location_that_is_no_number_is_not_sent(ruk_ipmi, made_up_blade):
    ended = ruk_ipmi("-b", "3", "location", "set", "--attribute", "513", "rack")
    assert ended.returncode == 2
    assert '"rack" is not a number' in ended.stderr
    assert made_up_blade.requests == []


@pytest.mark.parametrize(
    "arguments, end",
    [
        (["location", "set", "--attribute", "600", "x" * 128], b"\x80" + b"x" * 128),
        (["power-thermal", "raw", "0", "2", "--data", "5a" * 482], b"\0\0" + b"\x5a" * 482),
        (["sled", "mac-map", "set", "--id", "1", "--hex", "5a" * 128], b"\x80" + b"\x5a" * 128),
        (["file", "path", "set", "--selector", "1", "x" * 29], b"\x01" + b"x" * 29 + b"\0"),
        (["file", "lt-path", "set", "x" * 29], b"x" * 29 + b"\0"),
    ],
)
def test_the_longest_value_fits(ruk_ipmi, made_up_blade, arguments, end):
    accept_all(made_up_blade)
    ruk_ipmi.text("-b", "1", *arguments)
    ((_, payload),) = made_up_blade.requests
    assert payload.endswith(end)


def test_the_cpld_gets_the_bytes_as_they_are_typed(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30BC)(lambda _: b"\x00\x0a\x0b\x0c\x0d")
    for operation in ("01", "02", "03"):
        typed = operation + " 01 02 03 04 05 06 07 08 09"
        assert ruk_ipmi.json("-b", "1", "cpld", "access", typed) == [
            {"blade": "1", "answer": "0a 0b 0c"}
        ]
        assert made_up_blade.requests[-1] == (0x30BC, bytes.fromhex(typed))


def test_a_map_may_come_from_a_file_or_standard_input(ruk_ipmi, made_up_blade, tmp_path):
    accept_all(made_up_blade)
    file = tmp_path / "map"
    file.write_bytes(b"\x01\x02")
    ruk_ipmi.text("-b", "1", "sled", "mac-map", "set", "--id", "1", file)
    ruk_ipmi.text("-b", "1", "sled", "mac-map", "set", "--id", "1", "-", stdin=b"\x01\x02")
    assert made_up_blade.requests == [(0x30CB, b"\x00\x08\x04\0\0\0\x01\x02\x01\x02")] * 2


def test_a_map_that_is_not_given_is_asked_for(ruk_ipmi, made_up_blade):
    ended = ruk_ipmi("-b", "1", "sled", "mac-map", "set", "--id", "1")
    assert ended.returncode == 2
    assert ended.stderr == "blade 1: which map? Say FILE or --hex; nothing was sent\n"
    assert made_up_blade.requests == []


def test_a_map_cannot_be_given_twice(ruk_ipmi, made_up_blade, tmp_path):
    file = tmp_path / "map"
    file.write_bytes(b"\x01")
    ended = ruk_ipmi("-b", "1", "sled", "mac-map", "set", "--id", "1", "--hex", "01", file)
    assert ended.returncode == 2
    assert ended.stderr == "ruk-ipmi: FILE excludes --hex\n"
    assert made_up_blade.requests == []


@pytest.mark.parametrize("length", [1, 127, 128])
def test_short_lldp_information_goes_in_one_request(ruk_ipmi, made_up_blade, length):
    accept_all(made_up_blade)
    info = bytes(range(length))
    ruk_ipmi.text("-b", "1", "lldp", "send", "-", stdin=info)
    ((_, payload),) = made_up_blade.requests
    size = (length + 2).to_bytes(2, "little")
    assert payload == b"\x00\x24" + size + b"\0\0" + size + info


@pytest.mark.parametrize("length", [129, 130, 131, 256, 257, 1000])
def test_long_lldp_information_goes_in_parts_and_whole(ruk_ipmi, made_up_blade, length):
    accept_all(made_up_blade)
    info = bytes(each % 251 for each in range(length))
    assert ruk_ipmi.json("-b", "1", "lldp", "send", "-", stdin=info) == [
        {"blade": "1", "bytes": length}
    ]
    parts = [payload[6:] for _, payload in made_up_blade.requests]
    assert b"".join(parts) == (length + 2).to_bytes(2, "little") + info
    assert max(map(len, parts)) <= 130


def test_a_part_that_is_refused_before_the_last_is_only_in_the_log(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30D0)(lambda payload: 0xD5 if payload[4:6] == b"\0\0" else 0)
    ruk_ipmi.text("-b", "1", "lldp", "send", "-", stdin=bytes(200))
    logged = ruk_ipmi("-vv", "-b", "1", "lldp", "send", "-", stdin=bytes(200))
    assert logged.returncode == 0
    assert "response->comp_code =213" in logged.stderr


def test_the_last_parts_refusal_is_told(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x30D0)(lambda payload: 0 if payload[4:6] == b"\0\0" else 0xD5)
    ended = ruk_ipmi("-b", "1", "lldp", "send", "-", stdin=bytes(200))
    assert ended.returncode == 1
    assert "Set LLDP Connection Info refused: 0xD5" in ended.stderr
