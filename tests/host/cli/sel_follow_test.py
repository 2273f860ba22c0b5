"""The system event log, followed."""

import json
import signal
import struct
import subprocess
import threading
import time

import pytest

ADD_ENTRY = ["raw", "0x0A", "0x44", 0, 0, 2, 0, 0, 0, 0, 0x20, 0, 4, 1, 0x30, 1, 0x57]


@pytest.fixture
def add_entry(ruk_ipmi):
    """Adds an entry to a blade's log: its ID."""

    def add(blade, *data):
        added = ruk_ipmi.json("-b", blade, *ADD_ENTRY, *(data or (1, 2)))
        low, high = bytes.fromhex(added[0]["answer"])
        return f"0x{high << 8 | low:04X}"

    return add


@pytest.fixture
def follow_log(ruk_ipmi, chassis, follow):
    """Follows logs; what they held already was shown when this returns."""

    def start_following(blades, *arguments):
        there = sum(len(log["entries"]) for log in ruk_ipmi.json("-b", blades, "sel", "list"))
        following = follow("-b", blades, "sel", "list", "--follow", "--interval", 0.1, *arguments)
        return following, [following.line() for _ in range(there)]

    return start_following


def test_follow_shows_the_log_and_then_what_comes(follow_log, add_entry):
    following, old = follow_log("1")
    assert old[0].startswith("blade 1  0x0001  ")
    for _ in range(3):
        assert f"blade 1  {add_entry('1')}  " in following.line()
    assert following.stop() == (0, "")


def test_follow_says_the_same_as_list_in_json_lines(ruk_ipmi, follow_log, add_entry):
    following, old = follow_log("1", "-o", "json")
    add_entry("1")
    (log,) = ruk_ipmi.json("-b", "1", "sel", "list")
    lines = [json.loads(line) for line in old] + following.objects(1)
    assert lines == [{"blade": "1", **entry} for entry in log["entries"]]


def test_follow_follows_every_blade(follow_log, add_entry):
    following, _ = follow_log("1-3", "-o", "json")
    for blade in ("3", "1", "2"):
        added = add_entry(blade)
        (entry,) = following.objects(1)
        assert (entry["blade"], entry["id"]) == (blade, added)


def test_follow_says_that_the_log_was_cleared_and_goes_on(ruk_ipmi, follow_log, add_entry):
    following, _ = follow_log("1", "-o", "json")
    ruk_ipmi.text("-b", "1", "sel", "clear")
    assert following.objects(1) == [{"blade": "1", "cleared": True}]
    assert following.message() == "blade 1: the log was cleared"
    added = add_entry("1")
    assert following.objects(1)[0]["id"] == added


def test_follow_repeats_nothing_when_single_entries_are_deleted(
    ruk_ipmi, follow_log, add_entry
):
    following, _ = follow_log("1", "-o", "json")
    for record in (1, 5):
        low, high = ruk_ipmi("-b", "1", "raw", "0x0A", "0x42", "-o", "binary").stdout
        ruk_ipmi.text("-b", "1", "raw", "0x0A", "0x46", low, high, record, 0)
    added = add_entry("1")
    assert following.objects(1)[0]["id"] == added
    assert following.stop() == (0, "")


class Log:
    """A log without erase times whose entries the test changes, on a made-up blade."""

    def __init__(self, blade):
        self.entries = []  # IDs
        self.refusal = 0
        blade.answer(0x0A40)(self._info)
        blade.answer(0x0A43)(self._entry)

    def _info(self, _):
        if self.refusal:
            return self.refusal
        count = len(self.entries)
        return b"\x00\x51" + struct.pack("<HHIIB", count, 1000 - sum(self.entries), 0, 0, 2)

    def _entry(self, payload):
        wanted = struct.unpack_from("<H", payload, 2)[0] or self.entries[0]
        if wanted not in self.entries:
            return 0xCB
        after = (self.entries + [0xFFFF])[self.entries.index(wanted) + 1]
        return struct.pack("<BHHB", 0, after, wanted, 2) + b"\x01" * 13


def test_follow_notices_an_erasure_that_the_controller_does_not_date(made_up_blade, follow):
    log = Log(made_up_blade)
    log.entries = [1, 2]
    following = follow("-b", "1", "sel", "list", "--follow", "--interval", 0.1, "-o", "json")
    assert [each["id"] for each in following.objects(2)] == ["0x0001", "0x0002"]
    log.entries = [7]
    cleared, entry = following.objects(2)
    assert cleared == {"blade": "1", "cleared": True}
    assert entry["id"] == "0x0007"


def test_follow_waits_for_the_end_of_an_erasure(made_up_blade, follow):
    log = Log(made_up_blade)
    log.refusal = 0x81
    following = follow("-b", "1", "sel", "list", "--follow", "--interval", 0.1)
    while made_up_blade.count(0x0A40) < 3:
        time.sleep(0.01)
    log.entries, log.refusal = [1], 0
    assert "0x0001" in following.line()
    assert following.stop() == (0, "")


def test_follow_asks_again_only_for_what_is_new(made_up_blade, follow):
    log = Log(made_up_blade)
    log.entries = list(range(1, 20))
    following = follow("-b", "1", "sel", "list", "--follow", "--interval", 0.1)
    for _ in log.entries:
        following.line()
    asked = made_up_blade.count(0x0A43)
    log.entries = list(range(1, 21))
    assert "0x0014" in following.line()
    assert made_up_blade.count(0x0A43) - asked <= 3


def test_follow_tells_a_failure_once_and_goes_on_when_it_is_over(made_up_blade, follow):
    log = Log(made_up_blade)
    log.entries = [1]
    following = follow("-b", "1", "sel", "list", "--follow", "--interval", 0.1)
    following.line()
    log.refusal = 0xFF
    assert following.message().startswith("blade 1: Get SEL Info refused: 0xFF ")
    asked = made_up_blade.count(0x0A40)
    while made_up_blade.count(0x0A40) < asked + 3:
        time.sleep(0.01)
    log.entries, log.refusal = [1, 2], 0
    assert following.message() == "blade 1: works again"
    assert "0x0002" in following.line()


def test_follow_of_a_blade_that_is_not_there_does_not_hide_the_others(
    ruk_ipmi, chassis, follow, add_entry
):
    following = follow("-b", "9,1", "sel", "list", "--follow", "--interval", 0.1, "-o", "json")
    failed, first = following.objects(2)
    assert (failed["blade"], failed["error"]["kind"]) == ("9", "transport")
    assert (first["blade"], first["id"]) == ("1", "0x0001")
    assert following.stop()[0] == 0


def test_follow_ends_when_no_blade_can_be_asked(ruk_ipmi):
    ended = ruk_ipmi("-b", "1", "sel", "list", "--follow", "-o", "json")
    assert ended.returncode == 4
    assert ended.stderr == "blade 1: no message service: is ruk-chassisd running? (0x5001)\n"
    assert json.loads(ended.stdout)["error"]["code"] == "0x5001"


@pytest.mark.parametrize("how", [signal.SIGINT, signal.SIGTERM])
def test_follow_ends_at_once_when_it_is_interrupted(made_up_blade, follow, how):
    asked = threading.Event()
    made_up_blade.answer(0x0A40)(lambda _: asked.set() or time.sleep(30))
    following = follow("-b", "1", "sel", "list", "--follow")
    assert asked.wait(10)
    began = time.monotonic()
    assert following.stop(how) == (0, "")
    assert time.monotonic() - began < 5


def test_follow_ends_quietly_when_nobody_reads_any_more(chassis, follow):
    following = follow("-b", "1", "sel", "list", "--follow")
    following.line()
    following.process.stdout.close()
    assert following.process.wait(timeout=10) == 0
    assert following.process.stderr.read() == b""


def test_lines_that_cannot_be_written_are_a_failure(ruk_ipmi, chassis):
    with open("/dev/full", "wb") as full:
        ended = subprocess.run(
            [ruk_ipmi.path, "-b", "1", "sel", "list", "--follow"],
            env=ruk_ipmi.environment,
            stdout=full,
            stderr=subprocess.PIPE,
            timeout=20,
        )
    assert ended.returncode == 1
    assert ended.stderr == b"ruk-ipmi: cannot write all of standard output\n"
