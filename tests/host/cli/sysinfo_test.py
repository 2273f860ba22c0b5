"""The system information that a blade's controller keeps."""

import pytest


def text_answer(text):
    """A value in one block: revision, selector, encoding and length stand before it."""
    return b"\0\x11\0\0" + bytes([len(text)]) + text.ljust(14, b"\0")


def test_a_name_is_shown_as_text(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0659)(lambda _: text_answer(b"node-a"))
    assert ruk_ipmi.json("-b", "1", "sysinfo", "get", "system-name") == [
        {
            "blade": "1",
            "parameter": "system-name",
            "text": "node-a",
            "data": "6e 6f 64 65 2d 61",
        }
    ]
    assert made_up_blade.requests == [(0x0659, b"\0\x02\0\0")]


def test_what_is_no_text_is_shown_in_bytes(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0659)(lambda _: b"\0\x11\x01\x02\xff")
    (told,) = ruk_ipmi.json("-b", "1", "sysinfo", "get", "0xE2")
    assert (told["text"], told["data"]) == (None, "01 02 ff")
    assert ruk_ipmi("-b", "1", "sysinfo", "get", "0xE2", "-o", "binary").stdout == b"\x01\x02\xff"


def test_list_leaves_open_what_the_controller_does_not_have(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0659)(
        lambda payload: text_answer(b"2.14") if payload[1] == 1 else 0x80
    )
    (told,) = ruk_ipmi.json("-b", "1", "sysinfo", "list")
    assert told["parameters"][0] == {"parameter": "firmware-version", "text": "2.14"}
    assert [row["text"] for row in told["parameters"][1:]] == [None] * 6


def test_a_long_text_goes_in_blocks(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0658)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "sysinfo", "set", "system-name", "--text", "node-a.example.net")
    assert [payload[:4] for _, payload in made_up_blade.requests] == [
        b"\x02\0\0\x12",
        b"\x02\x01.n",
    ]


@pytest.mark.parametrize(
    "number, data, payload",
    [
        ("0xC0", "0a0b", b"\xc0\x02\x0a\x0b"),
        ("0xE2", "0a0b", b"\xe2\x0a\x0b"),
        ("0xE2", "", b"\xe2"),
        ("0xE2", "0a" * 487, b"\xe2" + b"\x0a" * 487),
        ("0xC0", "0a" * 255, b"\xc0\xff" + b"\x0a" * 255),
    ],
)
def test_a_value_may_be_typed_in_bytes(ruk_ipmi, made_up_blade, number, data, payload):
    made_up_blade.answer(0x0658)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "sysinfo", "set", number, "--hex", data)
    assert made_up_blade.requests == [(0x0658, payload)]


def test_a_block_is_asked_for_by_its_selectors(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0659)(lambda _: b"\0\x11\x0a\x0b")
    chosen = ["--set", "3", "--block", "4", "--data", "0506"]
    assert ruk_ipmi.json("-b", "1", "sysinfo", "raw", "0xD4", *chosen) == [
        {"blade": "1", "parameter": "0xD4", "revision": "0x11", "data": "0a 0b"}
    ]
    assert made_up_blade.requests == [(0x0659, b"\0\xd4\x03\x04\x05\x06")]


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["get", "colour"], 'PARAMETER: "colour" is none of firmware-version, system-name'),
        (["set", "2"], "which value? Say FILE or --hex"),
        (["set", "2", "--text", "x" * 256], "--text: is longer than 255 bytes"),
        (["set", "2", "--hex", "00" * 256], "is longer than 255 bytes"),
        (["set", "0xC0", "--hex", "00" * 256], "is longer than 255 bytes"),
        (["set", "0xE2", "--hex", "00" * 488], "is longer than 487 bytes"),
        (["set", "5", "--text", "x"], "the library refuses a parameter"),
        (["raw", "2", "--data", "00" * 256], "--data: is longer than 255 bytes"),
    ],
)
def test_a_mistake_is_told_before_anything_is_sent(ruk_ipmi, made_up_blade, arguments, message):
    ended = ruk_ipmi("-b", "1", "sysinfo", *arguments)
    assert ended.returncode == 2
    assert message in ended.stderr
    assert made_up_blade.requests == []
