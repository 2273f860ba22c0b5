"""How a blade is, and small actions on it."""

import pytest

READS = [
    (["kvm"], 0x308D, "", "kvm", 6),
    (["media"], 0x308E, "", "media", 4),
    (["identify-led"], 0x3032, "", "identify_led", 1),
    (["post-code"], 0x3099, "", "data", 130),
    (["staging", "7"], 0x3093, "07", "data", 256),
    (["queue", "7", "8"], 0x3094, "0708", "data", 256),
]
REQUESTS = [
    (["alert-test", "3"], 0x3097, "03 00000000 00000000"),
    (["alert-test", "3", "--data", "0a0b0c0d"], 0x3097, "03 0a0b0c0d 00000000"),
    (["edid", "--hex", "0a0b", "--which", "2"], 0x3092, "02 0a0b" + "00" * 126),
    (["edid", "--hex", "0a" * 128], 0x3092, "00" + "0a" * 128),
    (["firmware-update", "--yes"], 0xB818, ""),
]


@pytest.mark.parametrize("arguments, netfn_cmd, payload, field, size", READS)
def test_a_state_is_shown_in_the_blades_bytes(
    ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload, field, size
):
    state = bytes(each % 250 + 1 for each in range(size))
    made_up_blade.answer(netfn_cmd)(lambda _: b"\0" + state)
    (told,) = ruk_ipmi.json("-b", "1", "blade", *arguments)
    assert bytes.fromhex(told[field]) == state
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(payload))]


@pytest.mark.parametrize("arguments, netfn_cmd, payload, field, size", READS)
def test_of_a_short_answer_what_came_is_shown(
    ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload, field, size
):
    made_up_blade.answer(netfn_cmd)(lambda _: b"\0" + bytes(size - 1))
    (told,) = ruk_ipmi.json("-b", "1", "blade", *arguments)
    assert bytes.fromhex(told[field]) == bytes(size - 1)
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(payload))] * 2


@pytest.mark.parametrize("arguments, netfn_cmd, payload", REQUESTS)
def test_an_action_sends_its_bytes_once(ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload):
    made_up_blade.answer(netfn_cmd)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "blade", *arguments)
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(payload))]


def test_the_status_shows_the_events_bytes_as_they_travel(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x3051)(lambda _: b"\0\x34\x12\x05\x06\x07")
    made_up_blade.answer(0x3090)(lambda _: b"\0\x01\x02\x03\x04\x05\x06")
    assert ruk_ipmi.text("-b", "1", "blade", "status") == (
        "host events: 34 12 05 06 07\ncontroller:  01 02 03 04 05 06\n"
    )


def test_a_long_block_can_be_saved(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x3093)(lambda _: b"\0" + b"\x0a" * 256)
    saved = ruk_ipmi("-b", "1", "blade", "staging", "0", "-o", "binary")
    assert saved.stdout == b"\x0a" * 256


def test_a_login_is_tried_with_a_text_that_is_not_typed_on_the_command_line(
    ruk_ipmi, made_up_blade
):
    made_up_blade.answer(0x3096)(lambda _: b"\0\x01\x02\x03\x04\x00")
    told = ruk_ipmi.text("-b", "1", "blade", "login-test", "-", stdin=b"secret\n")
    assert told == "access:       0x04030201\nfurther byte: 0x00\n"
    assert made_up_blade.requests == [(0x3096, b"secret".ljust(36, b"\0"))]


def test_a_logins_text_is_asked_for_without_echo(terminal, made_up_blade):
    made_up_blade.answer(0x3096)(lambda _: b"\0\x01\x02\x03\x04\x00")
    asked = terminal(80, "-b", "1", "blade", "login-test")
    asked.until(lambda lines: any("The text:" in line for line in lines))
    asked.type("secret\n")
    assert "access:       0x04030201" in asked.at_the_end()
    assert "secret" not in asked.raw


@pytest.mark.parametrize("kind, size", [("chassis-info", 133), ("storage-info", 261)])
def test_information_is_passed_through(ruk_ipmi, made_up_blade, kind, size):
    made_up_blade.answer(0x30CB)(lambda _: b"\0\x0a")
    passed = ["blade", kind, "1", "2", "--data", "0506", "--number", "0x304", "--option", "9"]
    (told,) = ruk_ipmi.json("-b", "1", *passed)
    assert bytes.fromhex(told["answer"]) == b"\x0a" + bytes(size - 1)
    assert made_up_blade.requests == [(0x30CB, bytes.fromhex("01 02 0200 0403 0506"))]


@pytest.mark.parametrize("kind", ["chassis-info", "storage-info"])
def test_as_much_as_fits_is_passed_through(ruk_ipmi, made_up_blade, kind):
    made_up_blade.answer(0x30CB)(lambda _: 0)
    passed = ["blade", kind, "1", "2", "--data", "0a" * 482, "--length", "5"]
    ruk_ipmi.text("-b", "1", *passed)
    ((_, payload),) = made_up_blade.requests
    assert payload == b"\x01\x02\x05\0\0\0" + b"\x0a" * 482


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["firmware-update"], "--yes is required"),
        (["edid", "--hex", "00" * 129], "--hex: is longer than 128 bytes"),
        (["edid"], "which EDID? Say FILE or --hex"),
        (["alert-test", "1", "--data", "00"], "--data: has 1 bytes, not 4"),
        (["login-test"], "there is no terminal to ask for the text at"),
        (["chassis-info", "1", "2", "--data", "00" * 483], "--data: is longer than 482 bytes"),
        (["storage-info", "1", "2", "-b", "1.2"], "is for whole slots"),
    ],
)
def test_a_mistake_is_told_before_anything_is_sent(ruk_ipmi, made_up_blade, arguments, message):
    where = [] if "-b" in arguments else ["-b", "1"]
    ended = ruk_ipmi(*where, "blade", *arguments)
    assert ended.returncode == 2
    assert message in ended.stderr
    assert made_up_blade.requests == []
