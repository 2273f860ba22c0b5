"""What the commands for the chassis manager's own parameters bring about in a simulated blade."""

import pytest

from patience import until


@pytest.fixture
def ask(ruk_ipmi, chassis):
    """Sends blade 1 a bare request: the answer's bytes behind the completion code."""

    def send(request):
        numbers = bytes.fromhex(request)
        ended = ruk_ipmi("-b", "1", "raw", *numbers, "-o", "binary")
        assert (ended.returncode, ended.stderr) == (0, "")
        return ended.stdout

    return send


@pytest.fixture
def parameter(ask):
    """Reads a parameter of blade 1 bare: its fields, as far as they fit an answer."""

    def read(group, selector=""):
        return ask(f"30 d0 01 {group:02x} b001 0000" + selector)[7:]

    return read


def configure(tool, crc):
    file = ["--name", "switch-a.cfg", "--crc", crc, "--length", "5"]
    tool("sled", "config", "set", *file)

    def settled():
        told = tool("sled", "config", "get")
        return told["status"] != "Pending_Busy" and told

    return until(settled)


def test_without_a_configuration_none_was_started(tool):
    told = tool("sled", "config", "get")
    assert (told["status"], told["name"]) == ("Not_Started", None)
    assert tool("sled", "links") == {"link_a": "0x00", "link_b": "0x00"}


def test_a_configuration_completes_and_brings_the_links_up(tool):
    told = configure(tool, "cbf43926")
    assert told == {
        "status": "Completed",
        "status_code": "0x01",
        "name": "switch-a.cfg",
        "length": 5,
    }
    assert tool("sled", "links") == {"link_a": "0x01", "link_b": "0x01"}


def test_a_configuration_that_does_not_verify_leaves_the_links_down(tool):
    assert configure(tool, "0")["status"] == "Verification_Error"
    assert tool("sled", "links")["link_a"] == "0x00"


def test_a_configuration_is_of_the_blade_that_was_named(ruk_ipmi, tool):
    configure(tool, "1")
    one, two = ruk_ipmi.json("-b", "1,2", "sled", "config", "get")
    assert (one["status"], two["status"]) == ("Completed", "Not_Started")


def test_an_older_controller_tells_the_status_alone(ruk_ipmi, start, tmp_path):
    config = tmp_path / "chassis.toml"
    config.write_text("[[blade]]\nslot = 1\nolder_controller = true\n")
    start("--config", config)
    (told,) = ruk_ipmi.json("-b", "1", "sled", "config", "get")
    assert (told["status"], told["length"]) == ("Not_Started", None)


def test_maps_are_kept_by_their_ids(tool, ask):
    tool("sled", "mac-map", "set", "--id", "2", "--hex", "0a0b0c")
    tool("sled", "mac-map", "set", "--id", "3", "-", stdin=b"\x0d")
    assert ask("30 cb 01 08 0000 0000 02") == b"\x02\x03\x0a\x0b\x0c"
    assert ask("30 cb 01 08 0000 0000 03") == b"\x03\x01\x0d"


def test_each_led_blinks_by_itself_until_it_is_off(tool, parameter):
    tool("led", "blink", "drive")
    assert parameter(0x0E) == b"\x00\x01"
    tool("led", "blink", "server")
    assert parameter(0x0E) == b"\x01\x01"
    tool("led", "off", "drive")
    assert parameter(0x0E) == b"\x01\x00"


def test_the_power_button_is_locked_until_it_is_unlocked(tool, ask):
    assert tool("power-button", "lock") == {"power_button": "locked"}
    assert ask("00 01")[3] & 0x0F == 0x01
    assert tool("power-button", "unlock") == {"power_button": "unlocked"}
    assert ask("00 01")[3] & 0x0F == 0x00


def test_the_cplds_registers_keep_what_is_written(tool):
    assert tool("cpld", "access", "01 1000 00000000 00 0000") == {"answer": "00 00 00"}
    assert tool("cpld", "access", "02 1000 5a000000 00 0000") == {"answer": "5a 00 00"}
    assert tool("cpld", "access", "03 1000 ff000000 81 0000") == {"answer": "db 00 00"}
    assert tool("cpld", "access", "01 1000 00000000 00 0000") == {"answer": "db 00 00"}


def test_the_post_code_follows_the_power(tool, ask):
    assert tool("post-code")["post_code"] != "0x00000000"
    ask("00 02 00")  # off
    assert tool("post-code") == {"post_code": "0x00000000", "further_bytes": " ".join(["00"] * 12)}


def test_a_file_is_copied_once_its_path_is_known(tool):
    def copied(status):
        return tool("file", "copy-status", "--selector", "7")["copy_status"] == status

    assert copied("0")
    tool("file", "path", "set", "--selector", "7", "/srv/files/a.bin")
    until(lambda: copied("2"))
    assert tool("file", "copy-status", "--selector", "8")["copy_status"] == "0"


def test_notices_of_an_update_reach_the_blade(tool, parameter):
    assert parameter(0x16, "00") == b"0\x00\x00"
    tool("notify", "fw-status", "5")
    assert parameter(0x16, "00") == b"0\x05\x00"
    tool("notify", "timeout")
    assert parameter(0x16, "00") == b"0\x05\x01"


def test_the_log_bundles_notice_reaches_the_blade(tool, parameter):
    tool("notify", "dump-logs", "1")
    assert parameter(0x20) == b"\0\0\x01\x13zatdumplogs.log.zip"


def test_a_text_and_a_number_of_the_location_are_kept(tool, ask):
    tool("location", "set", "--attribute", "637", "--param", "9", "rack 4")
    tool("location", "set", "--attribute", "513", "42")
    text = ask("30 ce 01 01 0000 0000 0000 10")
    number = ask("30 ce 01 01 0000 0000 0000 00")
    # The parameter, the value's length, the offset, and the value's length again, code and number.
    assert text == bytes([1, 13, 0, 0, 0, 13, 0, 0x10, 9])
    assert number == bytes([1, 6, 0, 0, 0, 6, 0, 0x00, 42])
    assert ask("30 ce 01 01 0000 0700 0000 10")[5:] == b"rack"


def test_lcd_messages_are_hidden_until_they_are_shown(tool):
    assert tool("lcd", "status")["status_a"] == "0x00"
    tool("lcd", "hide")
    assert tool("lcd", "status") == {"status_a": "0x01", "status_b": "0x01"}
    tool("lcd", "show")
    assert tool("lcd", "status") == {"status_a": "0x00", "status_b": "0x00"}


def test_a_link_tunings_path_is_transmitted(tool, parameter):
    assert tool("link-tuning", "tx-status") == {"tx_status": "0x00"}
    tool("file", "lt-path", "set", "/srv/files/tuning.bin")
    assert parameter(0x11, "03") == b"/srv/files/tuning.bin".ljust(30, b"\0")
    assert tool("link-tuning", "tx-status") == {"tx_status": "0x01"}


def test_a_link_tunings_version_is_the_blades_own(tool, parameter):
    version = parameter(0x11, "01")
    shown = tool("link-tuning", "version")
    assert int(shown["value_c"], 0) == version[0]
    assert bytes.fromhex(shown["value_a"] + shown["value_b"]) == version[1:]


def test_the_throttles_delay_is_set(tool, parameter):
    assert parameter(0x1A) == b"\x00\x00\x00"
    tool("autothrottle", "set")
    assert parameter(0x1A) == b"\x00\x01\x59"


@pytest.mark.parametrize("length", [1, 128, 129, 130, 131, 300])
def test_lldp_information_arrives_whole(tool, parameter, length):
    info = bytes(each % 251 for each in range(length))
    assert tool("lldp", "send", "-", stdin=info) == {"bytes": length}
    assert parameter(0x24) == info


def test_the_imc_event_is_the_last_that_happened(tool, ask):
    before = tool("imc-event", "get")
    ask("00 02 00")  # off
    after = tool("imc-event", "get")
    assert (before["length"], after["length"]) == (42, 42)
    assert after != before


def test_power_and_thermal_values_come_in_parts(tool):
    tool("power-thermal", "raw", "0", "2", "--data", "0a0b0c")
    told = tool("power-thermal", "raw", "0", "2", "--data", "0d0e", "--offset", "3")
    assert told == {"answer": "02 05 00 03 00 0d 0e 00 00"}
    assert tool("power-thermal", "raw", "1", "2") == {"answer": "02 05 00 00 00 0a 0b 0c 0d"}
