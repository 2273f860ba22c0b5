"""The chassis at a glance: the table, the picture that is drawn anew, and the same in JSON."""

import signal

import pytest

CHASSIS = """
[chassis]
slots = 8
[[blade]]
slot = 1
name = "Compute node A"
[[blade]]
slot = 3
sub_slot = 2
sel_entries = 512
[[blade]]
slot = 6
faults = { completion_code = 0xC1 }
"""


@pytest.fixture
def lab(tmp_path, start):
    """A chassis of eight slots with three blades, one of which knows no command."""
    file = tmp_path / "chassis.toml"
    file.write_text(CHASSIS)
    start("--config", str(file))


def row(lines, slot):
    (found,) = [line for line in lines[3:] if line.split()[0] == slot]
    return found


def test_show_tells_each_slot_in_json(ruk_ipmi, lab):
    seen = ruk_ipmi.json("chassis", "show")
    assert seen["slots"] == 8
    assert [(place["blade"], place["state"]) for place in seen["blades"]] == [
        ("1", "present"),
        ("2", "empty"),
        ("3.2", "present"),
        ("4", "empty"),
        ("5", "empty"),
        ("6", "present"),
        ("7", "empty"),
        ("8", "empty"),
    ]


def test_show_tells_all_of_a_blade_in_json(ruk_ipmi, lab):
    ruk_ipmi.text("-b", 1, "led", "blink", "drive")
    ruk_ipmi.text("-b", 1, "lcd", "hide")
    ruk_ipmi.text("-b", 1, "raw", "0x00", "0x02", "0x00")
    assert ruk_ipmi.json("chassis", "show")["blades"][0] == {
        "blade": "1",
        "state": "present",
        "name": "Compute node A",
        "serial_number": "RKP00100X",
        "power": "off",
        "post_code": "0x00000000",
        "blinking_leds": ["drive"],
        "lcd": "hidden",
        "sel": {"entries": 13, "percent": 2},
        "events": 1,
        "latest_event": 10,
        "latest_event_name": "power off",
    }


def test_show_leaves_open_what_a_blade_does_not_know(ruk_ipmi, lab):
    (blade,) = ruk_ipmi.json("-b", 6, "chassis", "show")["blades"]
    known = {key for key, value in blade.items() if value is not None}
    assert known == {"blade", "state", "events"}


def test_show_shows_the_same_to_people(ruk_ipmi, lab):
    lines = ruk_ipmi.text("chassis", "show", LC_ALL="C").splitlines()
    assert lines[0].startswith("3 blades in 8 slots: 2 on, 1 of unknown power  ")
    assert row(lines, "1").split() == (
        "1 Compute node A RKP00100X on 0xAA off shown 12 #......... 0 -".split()
    )
    assert row(lines, "3.2").split()[-4:] == ["512", "##########", "0", "-"]
    assert row(lines, "4-5").split() == ["4-5", "empty"]


def test_only_neighbouring_slots_share_a_line(ruk_ipmi, lab):
    lines = ruk_ipmi.text("-b", "2,4,5,7,5.1", "chassis", "show").splitlines()
    assert [line.split()[0] for line in lines[3:]] == ["2", "4-5", "7", "5.1"]


def test_a_blade_that_does_not_answer_is_told_and_makes_the_exit_code(ruk_ipmi, made_up_blade):
    made_up_blade.status = 0x500A
    shown = ruk_ipmi("-b", "2,3", "chassis", "show")
    assert shown.returncode == 4
    lines = shown.stdout.decode().splitlines()
    assert row(lines, "2").endswith("the blade's controller does not answer (0x500A)")
    assert row(lines, "3").endswith("the blade's controller does not answer (0x500A)")


def test_without_a_chassis_there_is_nothing_to_show(ruk_ipmi):
    shown = ruk_ipmi("chassis", "show")
    assert (shown.returncode, shown.stdout) == (4, b"")
    assert "no message service" in shown.stderr


@pytest.mark.parametrize("columns", [20, 40, 80, 120, 200])
def test_the_picture_fits_the_terminal(terminal, lab, columns):
    lines = terminal(columns, "chassis", "show").at_the_end()
    assert len(lines) == 3 + 6  # nothing is wrapped
    assert row(lines, "1").startswith("1     Compute node A"[: columns - 1])


def test_a_wide_terminal_shows_more(terminal, lab):
    narrow = terminal(80, "chassis", "show").at_the_end()[1].split()
    wide = terminal(200, "chassis", "show").at_the_end()[1].split()
    assert "FILLED" in wide and "FILLED" not in narrow
    assert set(narrow) < set(wide)


def test_colours_are_for_terminals_that_want_them(terminal, lab, ruk_ipmi):
    colored = terminal(80, "chassis", "show")
    colored.at_the_end()
    assert colored.color("● on") == "green"
    assert colored.color("512") == "red"
    for plain in (
        terminal(80, "chassis", "show", NO_COLOR="1"),
        terminal(80, "chassis", "show", TERM="dumb"),
    ):
        plain.at_the_end()
        assert "\033" not in plain.raw
    assert "\033" not in ruk_ipmi.text("chassis", "show")


def test_watch_draws_anew_in_place(terminal, lab, ruk_ipmi):
    watched = terminal(80, "chassis", "show", "--watch", "--interval", 0.1)
    whole = 3 + 6  # lines of the picture, which the terminal may get in pieces
    watched.until(lambda lines: len(lines) == whole and "off" in row(lines, "1"))
    ruk_ipmi.text("-b", 1, "led", "blink", "server")
    assert len(watched.until(lambda lines: "server" in row(lines, "1"))) == whole
    watched.process.send_signal(signal.SIGINT)
    assert watched.process.wait(timeout=20) == 0


def test_watch_shows_as_much_as_fits(terminal, lab):
    watched = terminal(80, "chassis", "show", "--watch", "--interval", 0.1, lines=5)
    watched.until(lambda lines: any("Compute" in line for line in lines))
    watched.until(lambda lines: lines[0].startswith("3 blades"))  # once all have answered


def test_watch_goes_on_when_the_chassis_comes_back(follow, start):
    start("--simulate", "1").terminate()
    watching = follow("chassis", "show", "--watch", "--interval", 0.1, "-o", "json")
    assert "error" in watching.objects(1)[0]
    start("--simulate", "1")
    assert watching.objects(1)[0] == {"error": None}
    assert watching.stop()[0] == 0


def test_watch_says_the_same_in_json_lines(follow, lab, ruk_ipmi):
    watching = follow("chassis", "show", "--watch", "--interval", 0.1, "-o", "json")
    assert watching.objects(1)[0] == ruk_ipmi.json("chassis", "show")
    assert watching.stop()[0] == 0


def test_watch_does_not_wait_for_a_slow_blade(follow, start, tmp_path):
    slow = '[[blade]]\nslot = 1\n[[blade]]\nslot = 2\nfaults = { delay_ms = 60000 }\n'
    (tmp_path / "slow.toml").write_text(slow)
    start("--config", str(tmp_path / "slow.toml"))
    watching = follow("-b", "1,2", "chassis", "show", "--watch", "--interval", 0.3, "-o", "json")
    assert [place["state"] for place in watching.objects(1)[0]["blades"]] == ["present", "asked"]
