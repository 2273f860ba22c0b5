"""What is typed: help, mistakes, targets, formats; and what the exit code says."""

import json
import subprocess

import pytest

WITHOUT_BLADES = [
    ["sel", "list"],
    ["sel", "list", "--follow"],
    ["fru", "print"],
    ["raw", "6", "1"],
    ["sdr", "get", "1"],
    ["events", "post", "--events", "1"],
    ["timeouts", "clear"],
    ["lcd", "hide"],
    ["post-code"],
]


@pytest.mark.parametrize("command", WITHOUT_BLADES)
def test_a_blade_command_asks_for_which_blades(ruk_ipmi, command):
    ended = ruk_ipmi(*command)
    assert ended.returncode == 2
    assert "for which blades? Say -b SLOT[.SUB]" in ended.stderr
    assert ended.stdout == b""


@pytest.mark.parametrize(
    "arguments, message",
    [
        ([], "which command? ruk-ipmi -h lists them"),
        (["sel"], "which command? ruk-ipmi sel -h lists them"),
        (["sel", "eat"], 'no command "eat"; ruk-ipmi sel -h lists those there are'),
        (["-b", "1", "sel", "get"], "ID is required"),
        (["-b", "1", "sel", "get", "first"], 'ID: "first" is not a number'),
        (["-b", "1", "sel", "get", "0x10000"], "ID: 0x10000 is not from 0 to 65535"),
        (["-b", "8-1", "sel", "list"], 'blade "8-1": the range runs backwards'),
        (["-b", "0", "sel", "list"], 'blade "0": 0 is not from 1 to 255'),
        (["-b", "1,,2", "sel", "list"], 'blade "": "" is not a number'),
        (["-b", "1", "-o", "xml", "sel", "list"], '-o: "xml" is none of normal, json and binary'),
        (["-b", "1", "-o", "binary", "sel", "info"], "sel info: has no binary output"),
        (["-b", "1-2", "-o", "binary", "sel", "list"], "binary output is for one blade at a time"),
        (["-b", "1-2", "fru", "read", "-"], "fru read: is for one blade at a time"),
        (["-b", "1", "raw", "7", "1"], "7 is the network function of an answer"),
        (["-b", "1", "raw", "6", "1", "256"], "BYTES: 256 is not from 0 to 255"),
        (["-b", "1", "sel", "time", "set", "noon"], 'TIME: "noon" is not a time'),
        (["-b", "1", "sel", "utc-offset", "set", "1500"], "MINUTES: 1500 is not from -1440"),
        (["-b", "1", "-o", "binary", "sel", "list", "--follow"], "no binary output while it goes"),
        (["-b", "1", "sel", "list", "--interval", "2"], "--interval requires --follow"),
        (["-b", "1", "sel", "list", "--follow", "--interval", "0"], '--interval: "0" is not a'),
        (["-b", "1", "sel", "list", "--follow", "--interval", "1s"], "seconds from 0.1 to 3600"),
        (["-b", "1", "events", "post"], "--events is required"),
        (["-b", "1", "events", "post", "--events", "3,65"], '--events: event "65": 65 is not'),
        (["-b", "1", "events", "post", "--events", "1", "--data", "0x"], '"0x" is not bytes'),
        (["-b", "1", "events", "post", "--events", "1", "--data", "00" * 165], "165 bytes do not"),
        (["events", "watch", "--events", "8-1"], 'event "8-1": the range runs backwards'),
        (["events", "watch", "-o", "binary"], "events watch: has no binary output"),
        (["events", "ring", "-o", "binary"], "events ring: has no binary output"),
        (["-b", "1", "sled", "config", "set", "--crc", "1", "--length", "1"], "--name is required"),
        (["-b", "1", "sled", "config", "set", "--name", "x" * 17], "--name: is longer than 16"),
        (["-b", "1", "sled", "config", "set", "--crc", "xyz"], '--crc: "xyz" is not 32 bits in'),
        (["-b", "1", "sled", "config", "set", "--crc", "123456789"], "is not 32 bits in hex"),
        (["-b", "1", "sled", "config", "set", "--length", "0"], "--length: 0 is not from 1 to 255"),
        (["-b", "1", "sled", "mac-map", "set", "--id", "1", "--hex", "00" * 129], "than 128 bytes"),
        (["-b", "1", "sled", "mac-map", "set", "--id", "1", "/dev/null"], "/dev/null is empty"),
        (["-b", "1", "sled", "mac-map", "set", "--id", "1", "/dev/zero"], "FILE: is longer than"),
        (["-b", "1", "led", "blink", "all"], 'LED: "all" is neither server nor drive'),
        (["-b", "1", "cpld", "access", "00" * 9], "HEX: has 9 bytes, not 10"),
        (["-b", "1", "post-code", "--request", "00" * 5], "--request: has 5 bytes, not 4"),
        (["-b", "1", "file", "path", "set", "/x"], "--selector is required"),
        (["-b", "1", "file", "path", "set", "--selector", "1", "x" * 30], "PATH: is longer than"),
        (["-b", "1", "file", "lt-path", "set", "x" * 30], "PATH: is longer than 29 bytes"),
        (["-b", "1", "location", "set", "--attribute", "1", "x"], "--attribute: 1 is none of 637"),
        (["-b", "1", "location", "set", "--attribute", "637", "x" * 129], "VALUE: is longer than"),
        (["-b", "1", "power-thermal", "raw", "0", "0", "--data", "00" * 483], "longer than 482"),
        (["-b", "1", "lldp", "send", "/dev/zero"], "FILE: is longer than 65533 bytes"),
        (["-b", "1", "notify", "fw-status", "256"], "N: 256 is not from 0 to 255"),
        (["-b", "1", "fru", "write", "/nowhere"], "FILE: cannot read /nowhere: No such file"),
    ],
)
def test_a_mistake_is_told_in_one_line_before_anything_is_sent(
    ruk_ipmi, made_up_blade, arguments, message
):
    ended = ruk_ipmi(*arguments)
    assert ended.returncode == 2
    assert message in ended.stderr
    assert ended.stderr.count("\n") == 1
    assert ended.stdout == b""
    assert made_up_blade.requests == []


def test_a_mistake_is_valid_json_too(ruk_ipmi):
    ended = ruk_ipmi("-o", "json", "sel", "list")
    (element,) = json.loads(ended.stdout)
    assert element["blade"] is None
    assert element["error"]["kind"] == "usage"
    assert element["error"]["message"] in ended.stderr


def test_the_tools_own_help_lists_every_noun_whatever_else_is_typed(ruk_ipmi):
    assert ruk_ipmi.text("-h", "--", "sel") == ruk_ipmi.text("-h")


def test_global_options_may_stand_before_or_behind_the_command(ruk_ipmi, chassis):
    before = ruk_ipmi.text("-b", "1", "--utc", "sel", "list")
    assert before == ruk_ipmi.text("sel", "list", "-b", "1", "--utc")


def test_each_blade_has_its_heading(ruk_ipmi, chassis):
    lines = ruk_ipmi.text("-b", "3,1-2", "sel", "info").splitlines()
    assert [line for line in lines if line.startswith("blade")] == ["blade 3", "blade 1", "blade 2"]


def test_each_blade_is_one_element_of_the_json_array(ruk_ipmi, chassis):
    assert [each["blade"] for each in ruk_ipmi.json("-b", "3,1-2", "sel", "info")] == ["3", "1", "2"]


def test_every_blade_is_tried_and_the_worst_failure_counts(ruk_ipmi, chassis):
    ended = ruk_ipmi("-b", "9,1,2", "sel", "get", "0x7777", "-o", "json")
    assert ended.returncode == 4
    assert [each["error"]["kind"] for each in json.loads(ended.stdout)] == [
        "transport",
        "refused",
        "refused",
    ]


def test_a_blade_that_fails_does_not_hide_the_others(ruk_ipmi, chassis):
    ended = ruk_ipmi("-b", "1,3.2,2", "sel", "info")
    assert ended.returncode == 4
    assert ended.stderr == "blade 3.2: no such blade (0x5009)\n"
    assert ended.stdout.count(b"entries:") == 2


@pytest.mark.parametrize(
    "code, exit_code, message",
    [
        (0xC1, 5, "blade 2: Get SEL Info refused: 0xC1 (invalid command)\n"),
        (0xD4, 1, "blade 2: Get SEL Info refused: 0xD4 (cannot execute command due to "),
        (0x93, 1, "blade 2: Get SEL Info refused: 0x93 (a code of this command's own)\n"),
    ],
)
def test_a_refusal_names_command_and_completion_code(
    ruk_ipmi, made_up_blade, code, exit_code, message
):
    made_up_blade.answer(0x0A40)(lambda _: code)
    ended = ruk_ipmi("-b", "2", "sel", "info")
    assert ended.returncode == exit_code
    assert ended.stderr.startswith(message)


@pytest.mark.parametrize(
    "status, exit_code, message",
    [
        (0x5009, 4, "blade 2: no such blade (0x5009)\n"),
        (0x500A, 4, "blade 2: the blade's controller does not answer (0x500A)\n"),
        (0x500B, 3, "blade 2: the blade's controller refuses the session "),
        (0x7777, 4, "blade 2: failure of the message service (0x7777)\n"),
    ],
)
def test_a_transport_failure_names_the_status(ruk_ipmi, made_up_blade, status, exit_code, message):
    made_up_blade.status = status
    ended = ruk_ipmi("-b", "2", "sel", "info")
    assert ended.returncode == exit_code
    assert ended.stderr.startswith(message)


def test_without_a_daemon_the_message_says_so(ruk_ipmi):
    ended = ruk_ipmi("-b", "1", "sel", "info")
    assert ended.returncode == 4
    assert ended.stderr == "blade 1: no message service: is ruk-chassisd running? (0x5001)\n"


def test_the_librarys_log_is_shown_on_request(ruk_ipmi):
    quiet = ruk_ipmi("-b", "1", "sel", "info").stderr
    assert "attach" not in quiet and "send_ruk_command" not in quiet
    assert "send_ruk_command returned" in ruk_ipmi("-v", "-b", "1", "sel", "info").stderr


def test_the_log_level_that_the_user_set_is_kept(ruk_ipmi):
    assert "returned" not in ruk_ipmi("-v", "-b", "1", "sel", "info", RUK_LOG="none").stderr


def test_output_that_cannot_be_written_is_a_failure(ruk_ipmi, chassis, environment):
    with open("/dev/full", "wb") as full:
        ended = subprocess.run(
            [ruk_ipmi.path, "-b", "1", "sel", "list"],
            env=environment,
            stdout=full,
            stderr=subprocess.PIPE,
        )
    assert ended.returncode == 1
    assert ended.stderr == b"ruk-ipmi: cannot write all of standard output\n"


def test_version_is_told_in_each_format(ruk_ipmi):
    version = ruk_ipmi.json("version")["version"]
    assert ruk_ipmi.text("version") == f"version: {version}\n"
    assert ruk_ipmi.text("--version") == f"ruk-ipmi {version}\n"
