"""Blade events through the tool: posted, watched, and looked up in the ring."""

import re
import signal

import pytest

from region import SLOTS, Region


@pytest.fixture
def region(chassis, environment):
    return Region(environment)


@pytest.fixture
def post(ruk_ipmi):
    """Posts interrupts, one for each of the blades: their numbers."""

    def post_interrupts(blades, events, *more):
        posted = ruk_ipmi.json("-b", blades, "events", "post", "--events", events, *more)
        return [each["interrupt"] for each in posted]

    return post_interrupts


def test_post_tells_the_number_of_each_interrupt(ruk_ipmi, chassis):
    assert ruk_ipmi.text("-b", "3", "events", "post", "--events", "3,40") == "interrupt: 1\n"
    assert ruk_ipmi.json("-b", "3,1.2", "events", "post", "--events", "1") == [
        {"blade": "3", "interrupt": 2},
        {"blade": "1.2", "interrupt": 3},
    ]


def test_the_ring_is_empty_before_the_first_interrupt(ruk_ipmi, chassis):
    assert ruk_ipmi.json("events", "ring") == {
        "last_interrupt": 0,
        "renumbered": False,
        "next_slot": 0,
        "interrupts": [],
    }


def test_the_ring_shows_what_was_posted_oldest_first(ruk_ipmi, chassis, post):
    post("3", "3,40", "--data", "01 fe")
    post("1.2", "64")
    ring = ruk_ipmi.json("events", "ring")
    assert (ring["last_interrupt"], ring["next_slot"]) == (2, 2)
    fields = ("interrupt", "previous", "blade", "events", "data_length", "data")
    assert [tuple(each[name] for name in fields) for each in ring["interrupts"]] == [
        (1, 1, "3", [3, 40], 2, "01 fe"),
        (2, 2, "1.2", [64], 0, ""),
    ]


def test_the_ring_is_a_table_for_people(ruk_ipmi, chassis, post):
    post("3", "3,40", "--data", "01fe")
    lines = ruk_ipmi.text("events", "ring").splitlines()
    assert lines[0] == "last interrupt: 1"
    assert lines[-1].split() == ["1", "1", "3", "3,", "40", "2", "01", "fe"]


def test_the_ring_outlives_the_daemon(ruk_ipmi, chassis, post):
    post("2", "7")
    chassis.terminate()
    chassis.wait(timeout=10)
    assert [each["events"] for each in ruk_ipmi.json("events", "ring")["interrupts"]] == [[7]]


@pytest.mark.parametrize("next_slot, first", [(0, 1), (3, 4), (SLOTS, 1), (0xFFFFFFFF, 1)])
def test_the_oldest_interrupt_is_found_whatever_slot_is_next(ruk_ipmi, region, next_slot, first):
    for slot in range(SLOTS):
        region.write_interrupt(slot, slot + 1)
    region.write_head(SLOTS, next_slot=next_slot)
    numbers = [each["interrupt"] for each in ruk_ipmi.json("events", "ring")["interrupts"]]
    assert numbers[0] == first
    assert sorted(numbers) == list(range(1, SLOTS + 1))


@pytest.mark.parametrize("length, shown", [(164, 164), (165, 164), (0xFFFFFFFF, 164)])
def test_data_that_claims_to_be_too_long_is_shown_as_far_as_it_goes(
    ruk_ipmi, region, length, shown
):
    region.write_interrupt(0, 1, data_length=length)
    (interrupt,) = ruk_ipmi.json("events", "ring")["interrupts"]
    assert interrupt["data_length"] == length
    assert bytes.fromhex(interrupt["data"]) == b"\xab" * shown


@pytest.mark.parametrize("byte", [0xFF, 0x80, 0x01])
def test_a_spoilt_region_is_shown_as_it_is(ruk_ipmi, region, byte):
    region.fill(byte)
    ring = ruk_ipmi.json("events", "ring")
    assert len(ring["interrupts"]) == SLOTS
    assert ring["last_interrupt"] == byte * 0x01010101


def test_watch_tells_each_event_of_an_interrupt_on_a_line(chassis, watch, post):
    watcher = watch()
    post("3.2", "10,40")
    time, *known = re.split(r"  +", watcher.line())
    assert re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", time)
    assert known == ["blade 3.2", "event 10", "power off", "interrupt 1"]
    assert re.split(r"  +", watcher.line())[2:] == ["event 40", "-", "interrupt 1"]


def test_watch_tells_the_same_in_json_lines(chassis, watch, post):
    watcher = watch("-o", "json")
    post("3.2", "10,40")
    first, second = watcher.objects(2)
    assert list(first) == ["time", "blade", "event", "name", "interrupt"]
    assert (first["blade"], first["event"], first["name"]) == ("3.2", 10, "power off")
    assert (second["event"], second["name"], second["interrupt"]) == (40, None, 1)


def test_eight_watchers_see_every_event_once_and_in_order(chassis, watch, post):
    watchers = [watch("-o", "json") for _ in range(8)]
    numbers = [number for _ in range(5) for number in post("1-20", "2,30")]
    expected = [(number, event) for number in numbers for event in (2, 30)]
    for watcher in watchers:
        seen = [(each["interrupt"], each["event"]) for each in watcher.objects(len(expected))]
        assert seen == expected
        assert watcher.stop() == (0, "")


def test_watch_shows_nothing_from_before_its_start(chassis, watch, post):
    post("1-3", "1-64")
    watcher = watch("-o", "json")
    (number,) = post("2", "9")
    assert [each["interrupt"] for each in watcher.objects(1)] == [number]
    assert watcher.stop() == (0, "")


def test_watch_shows_nothing_older_when_the_numbers_are_high(region, watch, post):
    for slot in range(SLOTS):
        region.write_interrupt(slot, 20000 + slot)
    region.write_head(20000 + SLOTS - 1)
    watcher = watch("-o", "json")
    numbers = post("1-3", "9")
    assert numbers == [20200, 20201, 20202]
    assert [each["interrupt"] for each in watcher.objects(3)] == numbers
    assert watcher.stop() == (0, "")


def test_watch_can_be_for_some_events(chassis, watch, post):
    watcher = watch("-o", "json", "--events", "1-8,40")
    post("1", "9,41")
    post("1", "8,9,40")
    assert [each["event"] for each in watcher.objects(2)] == [8, 40]
    assert watcher.stop() == (0, "")


def test_watch_can_be_for_some_blades(chassis, watch, post):
    watcher = watch("-o", "json", "-b", "2,3.1")
    post("1-3,3.1,3.2", "5")
    assert [each["blade"] for each in watcher.objects(2)] == ["2", "3.1"]
    assert watcher.stop() == (0, "")


def test_watch_says_what_it_missed(chassis, watch, post):
    watcher = watch("-o", "json")
    watcher.process.send_signal(signal.SIGSTOP)
    post("1-205", "1")
    watcher.process.send_signal(signal.SIGCONT)
    missed, first = watcher.objects(2)
    assert missed == {"missed": {"first": 1, "last": 5}}
    assert first["interrupt"] == 6
    assert watcher.message().startswith("ruk-ipmi: missed interrupts 1 to 5: ")


@pytest.mark.parametrize("byte", [0xFF, 0x80, 0x01])
def test_watch_survives_a_region_that_is_spoilt(region, watch, post, byte):
    watcher = watch("-o", "json")
    region.fill(byte)
    while "missed" not in watcher.objects(1)[0]:
        pass
    region.fill(0)
    while watcher.objects(1)[0].get("missed", {}).get("last") != 0:
        pass
    (number,) = post("3", "7")
    assert watcher.objects(1)[0]["interrupt"] == number
    assert watcher.stop() == (0, "")


@pytest.mark.parametrize("how", [signal.SIGINT, signal.SIGTERM])
def test_watch_ends_well_when_it_is_interrupted(chassis, watch, how):
    assert watch().stop(how) == (0, "")


def test_watch_ends_quietly_when_nobody_reads_any_more(chassis, watch):
    watcher = watch()
    watcher.process.stdout.close()
    assert watcher.process.wait(timeout=10) == 0
    assert watcher.process.stderr.read() == b""


def test_watch_goes_on_while_the_daemon_is_away(start, chassis, watch, post):
    watcher = watch("-o", "json")
    chassis.kill()
    chassis.wait()
    post("1", "1")
    start("--simulate", "3")
    post("1", "2")
    assert [each["event"] for each in watcher.objects(2)] == [1, 2]


def test_watch_sees_what_happens_to_a_simulated_blade(ruk_ipmi, chassis, watch):
    watcher = watch("-o", "json", "-b", "2")
    ruk_ipmi.text("-b", "2", "raw", "0x00", "0x02", "0x00")
    (off,) = watcher.objects(1)
    assert (off["blade"], off["event"], off["name"]) == ("2", 10, "power off")


@pytest.mark.parametrize("command", [["watch"], ["ring"], ["post", "-b", "1", "--events", "1"]])
def test_without_a_chassis_the_message_says_so(ruk_ipmi, command):
    ended = ruk_ipmi("events", *command, "-o", "json")
    assert ended.returncode == 4
    assert ended.stderr.endswith(": no message service: is ruk-chassisd running? (0x5001)\n")
    assert b'"kind":"transport"' in ended.stdout.replace(b" ", b"")
