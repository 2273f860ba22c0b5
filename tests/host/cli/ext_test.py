"""Extended parameters: long values that come and go in pieces."""

import pytest

ENTERPRISE = b"\xa2\x02\x00"


def has(blade, value):
    """Makes the blade answer with a value, which begins with its own length."""
    stream = (len(value) + 2).to_bytes(2, "little") + value

    @blade.answer(0x2E02)
    def get(payload):
        offset, count = int.from_bytes(payload[6:8], "little"), payload[8]
        piece = stream[offset : offset + count]
        return b"\0" + ENTERPRISE + b"\0\0" + bytes([len(piece)]) + piece


@pytest.mark.parametrize("length", [1, 253, 254, 600, 1022])
def test_a_value_is_read_whole(ruk_ipmi, made_up_blade, length):
    value = bytes(each % 251 for each in range(length))
    has(made_up_blade, value)
    read = ruk_ipmi("-b", "1", "ext", "get", "7", "--index", "3", "-o", "binary")
    assert (read.returncode, read.stdout) == (0, value)
    assert made_up_blade.requests[0] == (0x2E02, ENTERPRISE + b"\0\x07\x03\0\0\xff")


def test_a_value_is_told_with_its_length(ruk_ipmi, made_up_blade):
    has(made_up_blade, b"\x0a\x0b")
    assert ruk_ipmi.json("-b", "1", "ext", "get", "7") == [
        {"blade": "1", "command": "0x07", "index": 0, "length": 2, "value": "0a 0b"}
    ]


def test_of_a_value_that_is_too_long_the_first_bytes_are_kept(ruk_ipmi, made_up_blade):
    has(made_up_blade, bytes(1500))
    read = ruk_ipmi("-b", "1", "ext", "get", "7", "-o", "binary")
    assert (read.returncode, len(read.stdout)) == (1, 1022)
    assert "of 1500 bytes only the first 1022 are kept" in read.stderr


@pytest.mark.parametrize("length, pieces", [(0, 0), (1, 1), (128, 1), (300, 3), (65535, 512)])
def test_a_value_is_written_in_pieces(ruk_ipmi, made_up_blade, length, pieces):
    made_up_blade.answer(0x2E01)(lambda _: b"\0" + ENTERPRISE + b"\x09")
    made_up_blade.answer(0x2E03)(lambda _: b"\0" + ENTERPRISE)
    value = bytes(each % 251 for each in range(length))
    source = ["-"] if length else ["--hex", ""]
    ruk_ipmi.text("-b", "1", "ext", "set", "7", "--index", "3", *source, stdin=value)
    sent = [payload for netfn_cmd, payload in made_up_blade.requests if netfn_cmd == 0x2E03]
    assert b"".join(payload[9:] for payload in sent) == value
    assert {payload[3:6] for payload in sent} <= {b"\x09\x07\x03"}
    assert len(sent) == pieces


def test_a_refusal_is_told(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x2E01)(lambda _: 0xD5)
    ended = ruk_ipmi("-b", "1", "ext", "set", "7", "--hex", "0a")
    assert ended.returncode == 1
    assert "Set Extended Parameter refused: 0xD5" in ended.stderr
    assert ruk_ipmi("-b", "1", "ext", "get", "7").returncode == 5


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["set", "7"], "which value? Say FILE or --hex"),
        (["set", "7", "/dev/zero"], "FILE: is longer than 65535 bytes"),
        (["set", "256", "--hex", "0a"], "COMMAND: 256 is not from 0 to 255"),
    ],
)
def test_a_mistake_is_told_before_anything_is_sent(ruk_ipmi, made_up_blade, arguments, message):
    ended = ruk_ipmi("-b", "1", "ext", *arguments)
    assert ended.returncode == 2
    assert message in ended.stderr
    assert made_up_blade.requests == []
