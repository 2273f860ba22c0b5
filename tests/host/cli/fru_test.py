"""The FRU inventory through the tool."""

import struct

import pytest


def checksummed(data):
    return data + bytes([-sum(data) % 256])


HEADER = checksummed(bytes([1, 0, 0, 1, 0, 0, 0]))
FIELDS = b"\xc4Acme\xc5Board\xc3S/1\xc3P/2\xc0\xc1"
BOARD = checksummed((b"\x01\x04\x19" + bytes(3) + FIELDS).ljust(31, b"\x00"))
IMAGE = HEADER + BOARD


class Device:
    """A FRU device in a made-up blade."""

    def __init__(self, blade, image, words=False, longest=255):
        self.memory = bytearray(image)
        self.unit = 2 if words else 1
        self.longest = longest
        blade.answer(0x0A10)(lambda _: b"\x00" + struct.pack("<HB", len(image), words))
        blade.answer(0x0A11)(self.read)
        blade.answer(0x0A12)(self.write)

    def read(self, payload):
        _, offset, count = struct.unpack("<BHB", payload)
        if count > self.longest:
            return 0xCA
        start = offset * self.unit
        part = self.memory[start : start + count * self.unit]
        return bytes([0, len(part) // self.unit]) + part

    def write(self, payload):
        start = struct.unpack_from("<H", payload, 1)[0] * self.unit
        data = payload[3:]
        if len(data) > self.longest:
            return 0xC7
        self.memory[start : start + len(data)] = data
        return bytes([0, len(data) // self.unit])


def test_info_tells_size_and_access(ruk_ipmi, made_up_blade):
    Device(made_up_blade, bytes(300), words=True)
    assert ruk_ipmi.text("-b", "1", "fru", "info", "--id", "3") == (
        "device: 3\nbytes:  300\naccess: words\n"
    )


def test_print_shows_the_areas_fields(ruk_ipmi, made_up_blade):
    Device(made_up_blade, IMAGE)
    (told,) = ruk_ipmi.json("-b", "1", "fru", "print")
    assert told["board"] == {
        "made": "unspecified",
        "manufacturer": "Acme",
        "product_name": "Board",
        "serial_number": "S/1",
        "part_number": "P/2",
        "fru_file_id": "",
        "custom": [],
        "checksum": "right",
    }
    assert "manufacturer:  Acme" in ruk_ipmi.text("-b", "1", "fru", "print")


def test_print_asks_no_more_often_than_the_bytes_take(ruk_ipmi, made_up_blade):
    Device(made_up_blade, IMAGE, longest=32)
    ruk_ipmi.json("-b", "1", "fru", "print")
    refused_and_in_two = 1 + 2
    assert made_up_blade.count(0x0A11) == refused_and_in_two


def test_print_reads_an_area_far_behind_the_header(ruk_ipmi, made_up_blade):
    header = checksummed(bytes([1, 0, 0, 100, 0, 0, 0]))
    Device(made_up_blade, header + bytes(800 - len(header)) + BOARD)
    assert ruk_ipmi.json("-b", "1", "fru", "print")[0]["board"]["manufacturer"] == "Acme"


def test_print_asks_a_device_that_gives_no_more_than_it_has_for_just_that(ruk_ipmi, made_up_blade):
    device = Device(made_up_blade, IMAGE + bytes(200))

    def read_what_is_there(payload):
        _, offset, count = struct.unpack("<BHB", payload)
        return 0xC9 if offset + count > len(IMAGE) else device.read(payload)

    made_up_blade.answer(0x0A11)(read_what_is_there)
    assert ruk_ipmi.json("-b", "1", "fru", "print")[0]["board"]["manufacturer"] == "Acme"


def test_print_shows_a_simulated_blades_three_areas(ruk_ipmi, chassis):
    (told,) = ruk_ipmi.json("-b", "2", "fru", "print")
    assert {told[area]["checksum"] for area in ["chassis", "board", "product"]} == {"right"}
    assert told["product"]["product_name"]


def test_print_tells_a_wrong_checksum_and_shows_the_fields_all_the_same(ruk_ipmi, made_up_blade):
    Device(made_up_blade, IMAGE.replace(b"Acme", b"Acmf"))
    (told,) = ruk_ipmi.json("-b", "1", "fru", "print")
    assert told["board"]["checksum"] == "wrong"
    assert told["board"]["manufacturer"] == "Acmf"


@pytest.mark.parametrize(
    "image, reason",
    [
        (b"\xff" * 64, "format version 0xFF"),
        (HEADER[:-1] + b"\x00" + BOARD, "the common header's checksum is wrong"),
        (b"\x01", "1 bytes"),
    ],
)
def test_print_refuses_what_is_not_fru_data(ruk_ipmi, made_up_blade, image, reason):
    Device(made_up_blade, image)
    ended = ruk_ipmi("-b", "1", "fru", "print")
    assert ended.returncode == 1
    assert ended.stderr.startswith("blade 1: not readable as FRU data: ")
    assert reason in ended.stderr


@pytest.mark.parametrize(
    "header, board, reason",
    [
        ([1, 0, 0, 9, 0, 0, 0], BOARD, "begins behind the end of the device"),
        ([1, 0, 0, 1, 0, 0, 0], b"\x01\xff" + BOARD[2:], "is longer than the device"),
        ([1, 0, 0, 1, 0, 0, 0], b"\x01\x04" + b"\xff" * 30, "cannot be read"),
    ],
)
def test_print_says_which_area_cannot_be_read(ruk_ipmi, made_up_blade, header, board, reason):
    Device(made_up_blade, checksummed(bytes(header)) + board)
    assert reason in ruk_ipmi.json("-b", "1", "fru", "print")[0]["board"]["error"]


def test_read_saves_the_whole_device(ruk_ipmi, made_up_blade, tmp_path):
    image = bytes(range(256)) * 3
    Device(made_up_blade, image)
    ruk_ipmi.text("-b", "1", "fru", "read", tmp_path / "saved")
    assert (tmp_path / "saved").read_bytes() == image


def test_read_writes_to_standard_output_in_each_format(ruk_ipmi, made_up_blade):
    Device(made_up_blade, IMAGE)
    assert ruk_ipmi("-b", "1", "fru", "read", "-").stdout == IMAGE
    assert ruk_ipmi("-b", "1", "fru", "read", "-", "-o", "binary").stdout == IMAGE
    assert bytes.fromhex(ruk_ipmi.json("-b", "1", "fru", "read", "-")[0]["data"]) == IMAGE


def test_read_that_fails_leaves_an_existing_file_alone(ruk_ipmi, made_up_blade, tmp_path):
    Device(made_up_blade, IMAGE)
    made_up_blade.answer(0x0A11)(lambda payload: 0xC9 if payload[1] else bytes([0, 8]) + HEADER)
    (tmp_path / "saved").write_bytes(b"precious")
    assert ruk_ipmi("-b", "1", "fru", "read", tmp_path / "saved").returncode == 1
    assert (tmp_path / "saved").read_bytes() == b"precious"


def test_a_file_that_cannot_be_written_is_told(ruk_ipmi, made_up_blade):
    Device(made_up_blade, IMAGE)
    ended = ruk_ipmi("-b", "1", "fru", "read", "/nowhere/file")
    assert ended.returncode == 2
    assert ended.stderr == "blade 1: cannot write /nowhere/file: No such file or directory\n"


@pytest.mark.parametrize("words", [False, True])
@pytest.mark.parametrize("longest", [1, 3, 16, 255])
def test_devices_are_read_and_written_in_stretches_they_can_take(
    ruk_ipmi, made_up_blade, tmp_path, words, longest
):
    device = Device(made_up_blade, bytes(100), words, longest)
    image = IMAGE + bytes(range(60))
    if words and longest == 1:
        device.longest = 2  # bytes of a write: one word
    (tmp_path / "image").write_bytes(image)
    assert ruk_ipmi.json("-b", "1", "fru", "write", tmp_path / "image")[0]["compared"] is True
    assert device.memory == image


def test_a_word_device_that_counts_its_answers_in_bytes_is_read_right(ruk_ipmi, made_up_blade):
    device = Device(made_up_blade, IMAGE, words=True)
    made_up_blade.answer(0x0A11)(
        lambda payload: bytes([0, 2 * device.read(payload)[1]]) + device.read(payload)[2:]
    )
    assert ruk_ipmi("-b", "1", "fru", "read", "-").stdout == IMAGE


def test_a_device_that_gives_nothing_ends_the_reading(ruk_ipmi, made_up_blade):
    Device(made_up_blade, IMAGE)
    made_up_blade.answer(0x0A11)(lambda _: b"\x00\x00")
    ended = ruk_ipmi("-b", "1", "fru", "read", "-")
    assert ended.returncode == 1
    assert ended.stderr == "blade 1: the blade gives nothing from offset 0 on\n"


def test_what_was_read_can_be_written_to_another_blade(ruk_ipmi, chassis):
    image = ruk_ipmi("-b", "1", "fru", "read", "-").stdout
    assert ruk_ipmi("-b", "2", "fru", "read", "-").stdout != image
    ruk_ipmi.text("-b", "2", "fru", "write", "-", stdin=image)
    assert ruk_ipmi("-b", "2", "fru", "read", "-").stdout == image


def test_a_file_larger_than_the_device_is_refused_before_anything_is_written(
    ruk_ipmi, made_up_blade
):
    device = Device(made_up_blade, IMAGE)
    ended = ruk_ipmi("-b", "1", "fru", "write", "-", stdin=IMAGE + b"x")
    assert ended.returncode == 2
    assert "larger than FRU device 0, which has 40 bytes; nothing was written" in ended.stderr
    assert made_up_blade.count(0x0A12) == 0 and device.memory == IMAGE


@pytest.mark.parametrize("contents", [b"hello", b"\x00" * 40, HEADER[:-1] + b"\x00"])
def test_a_file_without_fru_data_is_written_only_by_force(ruk_ipmi, made_up_blade, contents):
    device = Device(made_up_blade, IMAGE)
    ended = ruk_ipmi("-b", "1", "fru", "write", "-", stdin=contents)
    assert ended.returncode == 2
    assert "holds no FRU data" in ended.stderr
    assert made_up_blade.requests == []
    ruk_ipmi.text("-b", "1", "fru", "write", "--force", "-", stdin=contents)
    assert device.memory == contents + IMAGE[len(contents) :]


def test_an_empty_file_is_refused(ruk_ipmi, made_up_blade):
    ended = ruk_ipmi("-b", "1", "fru", "write", "-")
    assert ended.returncode == 2
    assert ended.stderr == "ruk-ipmi: FILE: - is empty\n"


def test_an_odd_file_is_refused_for_a_word_device(ruk_ipmi, made_up_blade):
    Device(made_up_blade, bytes(100), words=True)
    ended = ruk_ipmi("-b", "1", "fru", "write", "-", stdin=IMAGE + b"x")
    assert ended.returncode == 2
    assert made_up_blade.count(0x0A12) == 0


def test_bytes_that_the_blade_lost_are_noticed(ruk_ipmi, made_up_blade):
    device = Device(made_up_blade, bytes(100))
    made_up_blade.answer(0x0A12)(
        lambda payload: b"\x00\x00" if payload[1] == 32 else device.write(payload)
    )
    ended = ruk_ipmi("-b", "1", "fru", "write", "-", stdin=IMAGE)
    assert ended.returncode == 1
    assert "does not hold what was written: it differs from byte 0x00" in ended.stderr


def test_bytes_that_were_announced_but_did_not_come_are_asked_for_again(ruk_ipmi, made_up_blade):
    device = Device(made_up_blade, IMAGE)
    made_up_blade.answer(0x0A11)(lambda payload: device.read(payload)[:7])
    assert ruk_ipmi("-b", "1", "fru", "read", "-").stdout == IMAGE
