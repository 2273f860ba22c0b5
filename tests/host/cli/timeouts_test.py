"""The time-out counters through the tool."""

import pytest

from region import Region


@pytest.fixture
def region(chassis, environment):
    return Region(environment)


def test_counters_are_shown_for_each_blade(ruk_ipmi, region):
    region.write_timeouts(1, 7, 2)
    text = ruk_ipmi.text("-b", "2", "timeouts", "show")
    assert text == "raised timeouts: 7\nnew sessions:    2\n"
    assert ruk_ipmi.json("-b", "1-2", "timeouts", "show") == [
        {"blade": "1", "raised_timeouts": 0, "new_sessions": 0},
        {"blade": "2", "raised_timeouts": 7, "new_sessions": 2},
    ]


def test_clear_clears_the_blades_that_are_named(ruk_ipmi, region):
    region.write_timeouts(0, 1, 1)
    region.write_timeouts(1, 2, 2)
    assert ruk_ipmi.json("-b", "1", "timeouts", "clear") == [{"blade": "1", "cleared": True}]
    one, two = ruk_ipmi.json("-b", "1-2", "timeouts", "show")
    assert (one["raised_timeouts"], two["raised_timeouts"]) == (0, 2)


@pytest.mark.parametrize("verb", ["show", "clear"])
def test_a_blade_beyond_the_table_is_told_and_hides_no_other(ruk_ipmi, region, verb):
    ended = ruk_ipmi("-b", "32,33", "timeouts", verb)
    assert ended.returncode == 2
    message = "the table of 32 time-out counters has no entry for this blade"
    assert ended.stderr == f"blade 33: {message}\n"
    assert ended.stdout.startswith(b"blade 32\n")


def test_without_a_chassis_the_message_says_so(ruk_ipmi):
    ended = ruk_ipmi("-b", "1", "timeouts", "show")
    assert ended.returncode == 4
    assert ended.stderr == "blade 1: no message service: is ruk-chassisd running? (0x5001)\n"
