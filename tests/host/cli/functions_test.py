"""The list of the library's functions, and the commands that reach them."""

import pathlib
import re

import pytest

PROJECT = pathlib.Path(__file__).parents[3]


@pytest.fixture
def rows(ruk_ipmi):
    return ruk_ipmi.json("functions")["functions"]


def exported_names():
    """What the public headers declare."""
    for header in (PROJECT / "include/ruk_ipmi").glob("*.h"):
        code = re.sub(r"/\*.*?\*/|#.*?\n", "", header.read_text(), flags=re.DOTALL)
        yield from re.findall(r"RUK_IPMI_API\s[^;(]*?(\w+)\s*\(", code)


def test_the_list_has_every_function_once(rows):
    assert sorted(row["function"] for row in rows) == sorted(exported_names())


def test_every_command_in_the_list_exists(ruk_ipmi, rows):
    for command in {row["command"] for row in rows}:
        assert ruk_ipmi(*command.split(), "-h").stdout.split(b"Usage: ruk-ipmi ")[1].startswith(
            command.encode()
        )


def test_what_the_list_says_is_called_is_called_by_the_tool(rows):
    sources = [
        *(PROJECT / "host/cli").glob("*.cpp"),
        *(PROJECT / "host/producer").glob("*.cpp"),
    ]
    code = " ".join(each.read_text() for each in sources if each.name != "functions.cpp")
    called = {row["function"] for row in rows if row["by"] is None}
    assert called <= set(re.findall(r"\w+", code))


def test_what_stands_for_another_is_called_itself(rows):
    called = {row["function"]: row["command"] for row in rows if row["by"] is None}
    for row in rows:
        assert row["by"] is None or called[row["by"]] == row["command"]
