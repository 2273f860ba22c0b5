"""The check of a platform: the host's keeps every promise, and one that breaks any is found out."""

import concurrent.futures
import os
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin"
FUNCTIONS = (ROOT / "abi/platform").read_text().split()


@pytest.fixture
def check(environment):
    def run(program, *arguments, **said):
        return subprocess.run(
            [PROGRAMS / program, "--gtest_brief=1", *arguments],
            env=environment | said, text=True, capture_output=True, timeout=120,
        )  # fmt: skip

    return run


@pytest.fixture
def chassis(start):
    """A chassis, as the check is told of it."""
    start("--simulate", "1")
    return {
        "RUK_CHECK_BLADE": "1",
        "RUK_CHECK_POST": f"{PROGRAMS}/ruk-ipmi -b 1 events post --events 3 >&2",
    }


def test_the_host_platform_keeps_every_promise(check, chassis):
    done = check("platform_check", **chassis)
    assert done.returncode == 0, done.stdout
    assert "SKIPPED" not in done.stdout


def test_what_cannot_be_checked_is_skipped_and_says_why(check, start):
    start("--simulate", "1")
    done = check("platform_check", "--gtest_filter=MessageService.Answers*:Library.HasEvents*")
    assert done.returncode == 0
    assert "RUK_CHECK_BLADE names no blade to ask" in done.stdout
    assert "RUK_CHECK_POST is no command to post an event by" in done.stdout


def test_a_platform_that_breaks_no_promise_passes(check, chassis):
    assert check("broken_platform_check", **chassis).returncode == 0


# The library's own checks take long to fail, and need not: what they stand on is checked below them.
def test_a_platform_that_breaks_a_promise_of_any_function_is_found_out(check, chassis):
    def passes(function):
        options = ("--gtest_fail_fast", "--gtest_filter=-Library.*")
        return check("broken_platform_check", *options, RUK_BREAK=function, **chassis).returncode == 0

    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        passed = pool.map(passes, FUNCTIONS)
    assert [function for function, unnoticed in zip(FUNCTIONS, passed) if unnoticed] == []
