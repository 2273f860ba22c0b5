"""FreeIPMI, which only some commands need."""

import ctypes.util

import pytest


@pytest.fixture
def without_freeipmi(tmp_path):
    """What lets the tool find, in FreeIPMI's place, a file that is no library."""
    (tmp_path / ctypes.util.find_library("freeipmi")).touch()
    return {"LD_LIBRARY_PATH": str(tmp_path)}


def test_a_command_that_needs_it_says_so_when_it_is_not_there(ruk_ipmi, chassis, without_freeipmi):
    ended = ruk_ipmi("-b", "1", "sel", "list", **without_freeipmi)
    assert ended.returncode == 1
    assert ended.stdout == b""
    assert ended.stderr.startswith("blade 1: FreeIPMI is needed for this: ")
    assert ended.stderr.count("\n") == 1


@pytest.mark.parametrize(
    "command",
    [["sel", "info"], ["fru", "print"], ["chassis", "power", "status"], ["fru", "info", "--id", "9"]],
)
def test_the_usual_commands_do_not_need_it(ruk_ipmi, chassis, without_freeipmi, command):
    usual = ruk_ipmi("-b", "1", *command)
    without = ruk_ipmi("-b", "1", *command, **without_freeipmi)
    assert (without.returncode, without.stdout) == (usual.returncode, usual.stdout)
    assert without.stderr == usual.stderr
