"""The log of the host platform: what is written at which level, and what a line looks like."""

import os
import pathlib
import re
import subprocess

import pytest

PROGRAM = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin/log_lines"

LINE = re.compile(
    r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z (error|notice|debug|verbose) log_lines\[\d+:\d+\] (.*)"
)

ERROR = [("error", "an error 1")]
NOTICE = ERROR + [("notice", "a notice without a line end")]
BEFORE_VERBOSE = NOTICE + [
    ("debug", "line ends before and behind"),
    ("debug", "two"),
    ("debug", "lines"),
]
VERBOSE = [("verbose", "something verbose")]
AFTER_VERBOSE = [
    ("debug", "from the OS layer"),
    ("debug", "A title "),
    ("debug", "  0000: 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f"),
    ("debug", "  0010: 10"),
    ("debug", "Nothing "),
]


def lines(setting):
    environment = {name: value for name, value in os.environ.items() if name != "RUK_LOG"}
    if setting is not None:
        environment["RUK_LOG"] = setting
    done = subprocess.run([PROGRAM], env=environment, capture_output=True, text=True, timeout=30)
    assert done.returncode == 0, "a log call has changed errno"
    assert done.stdout == ""
    matches = [LINE.fullmatch(line) for line in done.stderr.splitlines()]
    assert all(matches), done.stderr
    return [match.groups() for match in matches]


@pytest.mark.parametrize(
    "setting, expected",
    [
        (None, ERROR),
        ("none", []),
        ("error", ERROR),
        ("notice", NOTICE),
        ("debug", BEFORE_VERBOSE + AFTER_VERBOSE),
        ("verbose", BEFORE_VERBOSE + VERBOSE + AFTER_VERBOSE),
        ("nonsense", ERROR),
        ("syslog:verbose", []),
    ],
)
def test_writes_what_the_level_asks_for(setting, expected):
    assert lines(setting) == expected
