"""The system event log through the tool."""

import re
import struct
import time

ZONED = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(Z|[+-]\d\d:\d\d)")


def test_info_counts_the_entries_that_list_shows(ruk_ipmi, chassis):
    (info,) = ruk_ipmi.json("-b", "1", "sel", "info")
    (log,) = ruk_ipmi.json("-b", "1", "sel", "list")
    assert info["version"] == "1.5"
    assert info["entries"] == len(log["entries"]) > 0


def test_every_format_shows_the_same_entries(ruk_ipmi, chassis):
    (log,) = ruk_ipmi.json("-b", "1", "sel", "list")
    lines = ruk_ipmi.text("-b", "1", "sel", "list").splitlines()
    records = ruk_ipmi("-b", "1", "sel", "list", "-o", "binary").stdout
    ids = [entry["id"] for entry in log["entries"]]
    assert lines[0].split()[:2] == ["ID", "TIME"]
    assert [line.split()[0] for line in lines[1:]] == ids
    assert [f"0x{number:04X}" for (number,) in struct.iter_unpack("<H14x", records)] == ids


def test_an_entrys_id_can_be_typed_back(ruk_ipmi, chassis):
    (log,) = ruk_ipmi.json("-b", "1", "sel", "list")
    summary = log["entries"][4]
    (entry,) = ruk_ipmi.json("-b", "1", "sel", "get", summary["id"])
    assert entry.items() >= summary.items()


def test_an_entry_says_what_happened(ruk_ipmi, made_up_blade):
    record = bytes.fromhex("3412 02 00000065 2000 04 01 30 81 59 50 4b")
    made_up_blade.answer(0x0A43)(lambda _: b"\x00\xff\xff" + record)
    (entry,) = ruk_ipmi.json("-b", "1", "--utc", "sel", "get", "0x1234")
    assert entry["id"] == "0x1234"
    assert entry["time"] == "2023-09-12T06:06:56Z"
    assert (entry["sensor_type"], entry["sensor"]) == ("Temperature", "0x30")
    assert entry["direction"] == "deassertion"
    assert entry["event"].startswith("Upper Critical - going high")
    assert bytes.fromhex(entry["record"]) == record


def test_a_time_stamp_from_before_the_clock_was_set_says_so(ruk_ipmi, made_up_blade):
    record = bytes.fromhex("0100 02 2a000000 2000 04 01 30 01 59 50 4b")
    made_up_blade.answer(0x0A43)(lambda _: b"\x00\xff\xff" + record)
    assert ruk_ipmi.json("-b", "1", "sel", "get", "1")[0]["time"] == "42 s since start"


def test_times_carry_their_zone(ruk_ipmi, chassis):
    for zone, options, ending in [("Asia/Kolkata", [], "+05:30"), ("Asia/Kolkata", ["--utc"], "Z")]:
        (clock,) = ruk_ipmi.json("-b", "1", "sel", "time", "get", *options, TZ=zone)
        assert ZONED.fullmatch(clock["time"]) and clock["time"].endswith(ending)


def test_an_entry_that_is_not_there_is_refused(ruk_ipmi, chassis):
    ended = ruk_ipmi("-b", "1", "sel", "get", "0x7777")
    assert ended.returncode == 1
    assert ended.stderr.startswith("blade 1: Get SEL Entry refused: 0xCB (")


def test_clear_leaves_at_most_the_event_of_the_clearing(ruk_ipmi, chassis):
    assert ruk_ipmi.json("-b", "1-2", "sel", "clear") == [
        {"blade": "1", "erased": True},
        {"blade": "2", "erased": True},
    ]
    (log,) = ruk_ipmi.json("-b", "1", "sel", "list")
    assert len(log["entries"]) <= 1


def test_clear_waits_until_the_erasure_is_complete(ruk_ipmi, made_up_blade):
    progress = iter([0, 0, 1])
    made_up_blade.answer(0x0A42)(lambda _: b"\x00\x05\x00")
    made_up_blade.answer(0x0A47)(lambda _: bytes([0, next(progress)]))
    assert ruk_ipmi.json("-b", "1", "sel", "clear") == [{"blade": "1", "erased": True}]
    actions = [payload[5] for command, payload in made_up_blade.requests if command == 0x0A47]
    assert actions == [0xAA, 0x00, 0x00]


def test_clear_reserves_again_when_its_reservation_is_lost(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A42)(lambda _: bytes([0, made_up_blade.count(0x0A42), 0]))
    made_up_blade.answer(0x0A47)(lambda payload: b"\x00\x01" if payload[0] == 2 else 0xC5)
    assert ruk_ipmi("-b", "1", "sel", "clear").returncode == 0
    assert made_up_blade.count(0x0A42) == 2


def test_clear_gives_up_when_its_reservation_is_lost_again_and_again(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A42)(lambda _: b"\x00\x05\x00")
    made_up_blade.answer(0x0A47)(lambda _: 0xC5)
    ended = ruk_ipmi("-b", "1", "sel", "clear")
    assert ended.returncode == 1
    assert "Clear SEL refused: 0xC5" in ended.stderr


def sel_info(entries):
    return b"\x00\x51" + struct.pack("<HHIIB", entries, 100, 0xFFFFFFFF, 0xFFFFFFFF, 2)


def test_an_empty_log_is_an_empty_list(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A40)(lambda _: sel_info(0))
    assert ruk_ipmi.json("-b", "1", "sel", "list") == [{"blade": "1", "entries": []}]
    assert ruk_ipmi.text("-b", "1", "sel", "list") == "entries: none\n"
    assert ruk_ipmi("-b", "1", "sel", "list", "-o", "binary").stdout == b""


def test_a_log_that_runs_in_a_circle_ends_and_keeps_what_was_read(ruk_ipmi, made_up_blade):
    @made_up_blade.answer(0x0A43)
    def entry(payload):
        number = max(1, payload[2])
        return bytes([0, number % 3 + 1, 0, number, 0, 2]) + bytes(13)

    made_up_blade.answer(0x0A40)(lambda _: sel_info(3))
    ended = ruk_ipmi("-b", "1", "sel", "list")
    assert ended.returncode == 1
    assert "the records run in a circle" in ended.stderr
    assert [line.split()[0] for line in ended.stdout.decode().splitlines()[1:4]] == [
        "0x0001",
        "0x0002",
        "0x0003",
    ]


def test_a_log_that_fails_half_way_keeps_what_was_read(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A40)(lambda _: sel_info(9))
    made_up_blade.answer(0x0A43)(
        lambda payload: 0xCB if payload[2] == 2 else bytes([0, 2, 0, 1, 0, 2]) + bytes(13)
    )
    (log,) = ruk_ipmi.json("-b", "1", "sel", "list")
    assert [entry["id"] for entry in log["entries"]] == ["0x0001"]
    assert log["error"]["code"] == "0xCB"


def test_the_clock_can_be_set_to_a_time(ruk_ipmi, chassis):
    (clock,) = ruk_ipmi.json("-b", "1", "--utc", "sel", "time", "set", "2030-01-02T03:04:05+01:00")
    assert clock == {"blade": "1", "time": "2030-01-02T02:04:05Z", "seconds": 1893549845}
    (clock,) = ruk_ipmi.json("-b", "1", "sel", "time", "get")
    assert 0 <= clock["seconds"] - 1893549845 <= 5


def test_the_clock_can_be_set_to_now(ruk_ipmi, chassis):
    ruk_ipmi.text("-b", "1", "sel", "time", "set", "1900000000")
    ruk_ipmi.text("-b", "1", "sel", "time", "set", "now")
    assert abs(ruk_ipmi.json("-b", "1", "sel", "time", "get")[0]["seconds"] - time.time()) <= 5


def test_a_clock_answer_that_is_too_short_is_a_failure(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A48)(lambda _: b"\x00\x01\x02")
    ended = ruk_ipmi("-b", "1", "sel", "time", "get")
    assert ended.returncode == 1
    assert ended.stderr == "blade 1: Get SEL Time: the answer has 3 bytes, not 5\n"


def test_a_utc_offset_may_be_negative(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A5D)(lambda _: 0)
    assert ruk_ipmi.text("-b", "1", "sel", "utc-offset", "set", "-60") == "utc offset minutes: -60\n"
    assert made_up_blade.requests == [(0x0A5D, b"\xc4\xff")]


def test_an_entry_that_comes_cut_short_is_a_failure(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A43)(lambda _: b"\x00\xff\xff\x01")
    ended = ruk_ipmi("-b", "1", "sel", "get", "1")
    assert ended.returncode == 1
    assert ended.stderr == "blade 1: Get SEL Entry: the answer has 4 bytes, not 19\n"


def test_a_summary_that_comes_cut_short_is_a_failure(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0A40)(lambda _: b"\x00\x51\x0c\x00")
    ended = ruk_ipmi("-b", "1", "sel", "info")
    assert ended.returncode == 1
    assert ended.stderr == "blade 1: Get SEL Info: the answer has 4 bytes, not 15\n"


def test_an_entry_that_ends_in_a_zero_is_whole_all_the_same(ruk_ipmi, made_up_blade):
    record = bytes.fromhex("0100 02 00000000 2000 04 01 10 01 57 27 00")
    made_up_blade.answer(0x0A43)(lambda _: b"\x00\xff\xff" + record)
    assert ruk_ipmi("-b", "1", "sel", "get", "1", "-o", "binary").stdout == record
