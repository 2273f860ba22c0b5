"""Any request by its numbers."""


def test_the_answer_is_shown_in_each_format(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0601)(lambda _: b"\x00\x20\x81")
    assert ruk_ipmi.text("-b", "1", "raw", "6", "1") == (
        "completion code: 0x00\nanswer:          20 81\n"
    )
    assert ruk_ipmi.json("-b", "1", "raw", "6", "1") == [
        {"blade": "1", "completion_code": "0x00", "answer": "20 81"}
    ]
    assert ruk_ipmi("-b", "1", "raw", "6", "1", "-o", "binary").stdout == b"\x20\x81"


def test_numbers_are_decimal_or_hexadecimal_and_never_octal(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x3099)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "raw", "0x30", "0x99", "010", "0xFF", "255", "08")
    assert made_up_blade.requests == [(0x3099, bytes([10, 255, 255, 8]))]


def test_the_largest_request_fits_and_a_larger_one_is_not_sent(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x3099)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "raw", "0x30", "0x99", *[1] * 488)
    ended = ruk_ipmi("-b", "1", "raw", "0x30", "0x99", *[1] * 489)
    assert ended.returncode == 2
    assert ended.stderr == "blade 1: 489 bytes do not fit a request of 488\n"
    assert made_up_blade.requests == [(0x3099, b"\x01" * 488)]


def test_an_unknown_command_is_unsupported(ruk_ipmi, chassis):
    ended = ruk_ipmi("-b", "1", "raw", "0x0A", "0xEE")
    assert ended.returncode == 5
    assert ended.stderr == "blade 1: request 0x0A 0xEE refused: 0xC1 (invalid command)\n"
    assert ended.stdout == b""


def test_an_answer_that_does_not_fit_is_a_transport_failure(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0601)(lambda _: bytes(456))
    ended = ruk_ipmi("-b", "1", "raw", "6", "1")
    assert ended.returncode == 4
    assert ended.stderr == "blade 1: the answer is too long (0x5008)\n"


def test_the_largest_answer_comes_whole(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0601)(lambda _: b"\x00" + b"\x5a" * 454)
    assert ruk_ipmi("-b", "1", "raw", "6", "1", "-o", "binary").stdout == b"\x5a" * 454
