"""The sensor data records through the tool."""

import struct

import pytest

# A compact record "Fan 1" of sensor 0x30 on entity 29 (fan), instance 1, as number 5.
FAN = bytes.fromhex("0500 51 02 20 20 00 30 1d 01 00 00 04 6f" + "00" * 17) + b"\xc5Fan 1"
RECORD = FAN[:4] + bytes([len(FAN) - 5]) + FAN[5:]


def repository(blade, records, end=0xFFFF):
    """Makes the blade hold records, to be read in parts or whole."""
    numbers = [struct.unpack_from("<H", record)[0] for record in records]
    blade.answer(0x0A20)(
        lambda _: b"\x00\x51" + struct.pack("<HHIIB", len(records), 9, 0xFFFFFFFF, 0xFFFFFFFF, 2)
    )
    blade.answer(0x0A22)(lambda _: bytes([0, blade.count(0x0A22), 0]))

    @blade.answer(0x0A23)
    def get(payload):
        _, number, offset, count = struct.unpack("<HHBB", payload)
        at = 0 if number == 0 else numbers.index(number)
        following = numbers[at + 1] if at + 1 < len(numbers) else end
        return b"\x00" + struct.pack("<H", following) + records[at][offset : offset + count]

    return get


def test_info_counts_the_records_that_list_shows(ruk_ipmi, chassis):
    (info,) = ruk_ipmi.json("-b", "1", "sdr", "info")
    (found,) = ruk_ipmi.json("-b", "1", "sdr", "list")
    assert info["records"] == len(found["records"]) > 0


def test_every_format_shows_the_same_records(ruk_ipmi, chassis):
    (found,) = ruk_ipmi.json("-b", "1", "sdr", "list")
    ids = [record["id"] for record in found["records"]]
    lines = ruk_ipmi.text("-b", "1", "sdr", "list").splitlines()
    assert [line.split()[0] for line in lines[1:]] == ids
    raw = ruk_ipmi("-b", "1", "sdr", "list", "-o", "binary").stdout
    in_raw = []
    while raw:
        in_raw.append(f"0x{struct.unpack_from('<H', raw)[0]:04X}")
        raw = raw[5 + raw[4] :]
    assert in_raw == ids


def test_a_records_id_can_be_typed_back(ruk_ipmi, chassis):
    (found,) = ruk_ipmi.json("-b", "1", "sdr", "list")
    for summary in found["records"]:
        (record,) = ruk_ipmi.json("-b", "1", "sdr", "get", summary["id"])
        assert record.items() >= summary.items()


def test_a_record_says_what_it_is_about(ruk_ipmi, made_up_blade):
    repository(made_up_blade, [RECORD])
    (record,) = ruk_ipmi.json("-b", "1", "sdr", "get", "5")
    assert record["id"] == "0x0005"
    assert record["type"] == "compact"
    assert record["name"] == "Fan 1"
    assert (record["sensor_type"], record["sensor"]) == ("Fan", "0x30")
    assert record["entity"] == "Fan 1"
    assert bytes.fromhex(record["record"]) == RECORD


@pytest.mark.parametrize("refusal", [0xCA, 0xFF, 0xC8])
@pytest.mark.parametrize("longest", [1, 7, 16])
def test_a_record_that_is_refused_whole_is_read_in_parts(
    ruk_ipmi, made_up_blade, refusal, longest
):
    get = repository(made_up_blade, [RECORD])
    made_up_blade.answer(0x0A23)(
        lambda payload: refusal if payload[5] > longest else get(payload)
    )
    assert ruk_ipmi("-b", "1", "sdr", "get", "5", "-o", "binary").stdout == RECORD


def test_a_record_longer_than_the_library_reads_is_read_in_parts(ruk_ipmi, made_up_blade):
    long_record = RECORD[:4] + b"\xff" + RECORD[5:] + bytes(260 - len(RECORD))
    repository(made_up_blade, [long_record])
    assert ruk_ipmi("-b", "1", "sdr", "get", "5", "-o", "binary").stdout == long_record


def test_a_lost_reservation_is_made_again(ruk_ipmi, made_up_blade):
    get = repository(made_up_blade, [RECORD])
    made_up_blade.answer(0x0A23)(lambda payload: get(payload) if payload[0] == 3 else 0xC5)
    (found,) = ruk_ipmi.json("-b", "1", "sdr", "list")
    assert len(found["records"]) == 1
    assert made_up_blade.count(0x0A22) == 3


def test_a_reservation_that_is_always_lost_ends_in_a_refusal(ruk_ipmi, made_up_blade):
    repository(made_up_blade, [RECORD])
    made_up_blade.answer(0x0A23)(lambda _: 0xC5)
    ended = ruk_ipmi("-b", "1", "sdr", "list")
    assert ended.returncode == 1
    assert "Get SDR refused: 0xC5" in ended.stderr
    assert made_up_blade.count(0x0A22) <= 5


def test_records_that_run_in_a_circle_end(ruk_ipmi, made_up_blade):
    repository(made_up_blade, [RECORD], end=5)
    ended = ruk_ipmi("-b", "1", "sdr", "list")
    assert ended.returncode == 1
    assert "the records run in a circle" in ended.stderr


def test_an_empty_repository_is_an_empty_list(ruk_ipmi, made_up_blade):
    repository(made_up_blade, [])
    assert ruk_ipmi.json("-b", "1", "sdr", "list") == [{"blade": "1", "records": []}]


def test_a_name_that_would_upset_a_terminal_is_made_harmless(ruk_ipmi, made_up_blade):
    repository(made_up_blade, [RECORD[:-5] + b"F\x1b[2J"])
    assert ruk_ipmi.json("-b", "1", "sdr", "get", "5")[0]["name"] == "F?[2J"
    assert b"\x1b" not in ruk_ipmi("-b", "1", "sdr", "get", "5").stdout


def test_nonsense_instead_of_a_record_is_shown_as_what_it_is(ruk_ipmi, made_up_blade):
    nonsense = b"\x05\x00\x51\x99\x03abc"
    repository(made_up_blade, [nonsense])
    (record,) = ruk_ipmi.json("-b", "1", "sdr", "get", "5")
    assert (record["type"], record["name"]) == ("unknown", None)
    assert bytes.fromhex(record["record"]) == nonsense


def test_a_record_that_comes_cut_short_is_completed_in_parts(ruk_ipmi, made_up_blade):
    get = repository(made_up_blade, [RECORD])
    made_up_blade.answer(0x0A23)(lambda payload: get(payload)[:20])
    assert ruk_ipmi("-b", "1", "sdr", "get", "5", "-o", "binary").stdout == RECORD
