"""What a blade draws, what it is granted, and how it is throttled and cooled."""

import signal

import pytest

REQUESTS = [
    (["reset", "--p1", "1", "--p3", "9"], 0x309D, "01 00 09"),
    (["efficiency", "95.12"], 0x30C0, "0000 2825 00 00" + "00" * 10),
    (["efficiency", "57", "--first", "7", "--second", "8"], 0x30C0, "0000 4416 07 08" + "00" * 10),
    (["efficiency", "0.5"], 0x30C0, "0000 3200 00 00" + "00" * 10),
    (["efficiency", "99.99"], 0x30C0, "0000 0f27 00 00" + "00" * 10),
    (["efficiency", "100"], 0x30C0, "0100 0000 00 00" + "00" * 10),
    (["throttle", "memory", "5"], 0x309A, "05 0000"),
]


@pytest.mark.parametrize("arguments, netfn_cmd, payload", REQUESTS)
def test_a_command_sends_its_bytes_once(ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload):
    made_up_blade.answer(netfn_cmd)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "power", *arguments)
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(payload))]


@pytest.mark.parametrize(
    "arguments, netfn_cmd, payload, answer",
    [
        (["throttle", "cpu", "5"], 0x308B, "05 0000", "0a 00"),
        (["fan", "chassis", "2"], 0x3095, "02 0000", "0x0A"),
    ],
)
def test_an_actions_answer_is_shown(
    ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload, answer
):
    made_up_blade.answer(netfn_cmd)(lambda _: b"\0\x0a")
    (told,) = ruk_ipmi.json("-b", "1", "power", *arguments)
    assert told["answer"] == answer
    assert made_up_blade.requests == [(netfn_cmd, bytes.fromhex(payload))]


def test_a_response_grants_power(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x3087)(lambda _: b"\0\x0a")
    granted = ["power", "response", "1", "0x123", "--fail-reason", "4", "--warning", "5"]
    assert ruk_ipmi.text("-b", "1", *granted) == "answer: 0x0A\n"
    ((netfn_cmd, payload),) = made_up_blade.requests
    assert (netfn_cmd, payload[:5]) == (0x3087, bytes.fromhex("01 04 2301 05"))


def test_a_requested_fan_speed_is_what_came(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x308C)(lambda _: b"\0\x0a\x0b\x0c")
    assert ruk_ipmi.text("-b", "1", "power", "fan", "requested") == "requested: 0a 0b\n"
    made_up_blade.answer(0x308C)(lambda _: b"\0\x0a")
    assert ruk_ipmi.text("-b", "1", "power", "fan", "requested") == "requested: 0a\n"


def test_consumption_has_seven_values(ruk_ipmi, made_up_blade):
    answer = "00 01000000 02000000 03000000 04000000 0501 06000001 0700"
    made_up_blade.answer(0x309C)(lambda _: bytes.fromhex(answer))
    (told,) = ruk_ipmi.json("-b", "1", "power", "consumption", "--p1", "8", "--p2", "9")
    assert [told[f"value_{each}"] for each in range(1, 8)] == [1, 2, 3, 4, 0x105, 0x1000006, 7]
    assert made_up_blade.requests == [(0x309C, b"\x08\x09")]


def test_consumption_that_is_cut_off_is_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x309C)(lambda _: bytes(24))
    ended = ruk_ipmi("-b", "1", "power", "consumption")
    assert ended.returncode == 1
    assert "the answer has 24 bytes, not 25" in ended.stderr


def draws(blade, watts, last=1):
    """Word 3 is the number, the corrections taken off it."""
    word = (watts + 16).to_bytes(2, "little")
    blade.answer(0x308F)(lambda _: b"\0\1\0" + word + b"\3\0\4" + bytes(5) + bytes([last]))


def test_a_draws_numbers_are_called_by_their_places(ruk_ipmi, made_up_blade):
    draws(made_up_blade, 300)
    assert ruk_ipmi.json("-b", "1", "power", "draw") == [
        {
            "blade": "1",
            "word_1": 1,
            "word_3": 300,
            "word_5": 3,
            "word_8": 0,
            "word_10": 0,
            "byte_7": "0x04",
            "byte_12": "0x00",
            "byte_13": "0x01",
        }
    ]


def test_a_draw_that_is_cut_off_is_refused(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x308F)(lambda _: bytes(13))
    assert ruk_ipmi("-b", "1", "power", "draw").returncode == 1


@pytest.mark.parametrize("percent", ["", "x", "-1", "1.234", "5.", ".5", "1000", "1e1", "95,1"])
def test_what_is_no_percentage_is_refused(ruk_ipmi, made_up_blade, percent):
    ended = ruk_ipmi("-b", "1", "power", "efficiency", "--", percent)
    assert ended.returncode == 2
    assert made_up_blade.requests == []


@pytest.mark.parametrize("percent", ["100.01", "101", "999.99"])
def test_more_than_all_is_no_efficiency(ruk_ipmi, made_up_blade, percent):
    ended = ruk_ipmi("-b", "1", "power", "efficiency", percent)
    assert (ended.returncode, made_up_blade.requests) == (2, [])
    assert f"PERCENT: {percent} is more than 100 per cent" in ended.stderr


def watch(follow, *arguments):
    return follow("power", "watch", "--interval", 0.1, "-o", "json", *arguments)


def test_watch_tells_samples_in_json_lines(follow, made_up_blade):
    draws(made_up_blade, 300)
    watching = watch(follow, "-b", "1,3.2")
    seen = watching.objects(1)[0]
    assert seen["value"] == "word_3"
    assert seen["blades"] == [
        {"blade": "1", "now": 300, "min": 300, "max": 300},
        {"blade": "3.2", "now": 300, "min": 300, "max": 300},
    ]
    draws(made_up_blade, 200)
    while seen["blades"][0]["now"] != 200:
        seen = watching.objects(1)[0]
    assert seen["blades"][0] == {"blade": "1", "now": 200, "min": 200, "max": 300}
    assert watching.stop()[0] == 0


def test_watch_may_show_another_number(follow, made_up_blade):
    draws(made_up_blade, 300)
    seen = watch(follow, "-b", "1", "--value", "word_5").objects(1)[0]
    assert (seen["value"], seen["blades"][0]["now"]) == ("word_5", 3)


def test_watch_says_why_there_is_no_sample(follow, made_up_blade):
    made_up_blade.status = 0x500A
    (blade,) = watch(follow, "-b", "1").objects(1)[0]["blades"]
    assert blade["now"] is None
    assert "does not answer" in blade["remark"]


def test_watch_finds_the_blades_that_there_are(follow, chassis):
    seen = watch(follow).objects(1)[0]
    assert [blade["blade"] for blade in seen["blades"]] == ["1", "2", "3"]


@pytest.mark.parametrize("columns", [40, 80, 200])
def test_the_plot_fits_the_terminal_and_is_drawn_in_place(terminal, made_up_blade, columns):
    draws(made_up_blade, 300)
    plot = terminal(columns, "-b", "1-2", "power", "watch", "--interval", 0.1)
    plot.until(lambda lines: any("▅▅▅" in line for line in lines))
    draws(made_up_blade, 100)
    lines = plot.until(lambda lines: any(line.endswith("100     100     300") for line in lines))
    assert len(lines) == 4
    assert all(line.startswith(str(slot)) for slot, line in enumerate(lines[2:], 1))
    plot.process.send_signal(signal.SIGINT)
    assert plot.process.wait(timeout=20) == 0


def test_without_unicode_the_plot_is_of_letters(terminal, made_up_blade):
    draws(made_up_blade, 300)
    plot = terminal(80, "-b", "1", "power", "watch", "--interval", 0.1, LC_ALL="C")
    plot.until(lambda lines: any("+++" in line for line in lines))
    assert plot.raw.isascii()


def test_the_plots_colours_are_for_terminals_that_want_them(terminal, made_up_blade):
    draws(made_up_blade, 300)
    colored = terminal(80, "-b", "1", "power", "watch", "--interval", 0.1)
    colored.until(lambda lines: any("▅▅" in line for line in lines))
    assert colored.color("▅") == "green"
