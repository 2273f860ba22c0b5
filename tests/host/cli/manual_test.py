"""The manual's pages: every command is there, and what they say is so."""

import os
import pathlib
import re
import subprocess

import pytest

from command_tree import all_commands, section

ROOT = pathlib.Path(__file__).resolve().parents[3]
BUILD = pathlib.Path(os.environ["RUK_BUILD_DIR"])
MAN = BUILD / "share/man"
PAGES = sorted(page for page in MAN.glob("man?/*") if not page.is_symlink())


def ended(*command, **more):
    return subprocess.run(command, capture_output=True, text=True, timeout=60, **more)


def shown(name):
    """A page as man shows it, with one blank where there are several."""
    environment = dict(os.environ, MANPATH=str(MAN), MANWIDTH="100", LC_ALL="C.UTF-8")
    page = ended("man", "--encoding=UTF-8", name, env=environment)
    assert page.returncode == 0, page.stderr
    return re.sub(r"\s+", " ", page.stdout)


def verbatim(page, title):
    """The blocks of a page's section that are set as they are."""
    text = page.read_text().split(f".SH {title}\n")[1].split(".SH ")[0]
    blocks = re.findall(r"\.EX\n(.*?)\.EE\n", text, re.DOTALL)
    return [re.sub(r"\\\((aq|dq)|\\(.)", character, block) for block in blocks]


def character(escape):
    return {"aq": "'", "dq": '"', None: escape[2]}[escape[1]]


def commands_of(page):
    return [line for block in verbatim(page, "EXAMPLES") for line in block.splitlines()]


@pytest.fixture(scope="module")
def pages_of_nouns():
    return {page.stem: shown(page.stem) for page in MAN.glob("man1/*") if not page.is_symlink()}


def test_each_command_is_found_by_its_name_with_all_that_its_help_says(pages_of_nouns):
    commands = all_commands()
    assert len(commands) > 100
    for path, text in commands.items():
        name = "-".join(["ruk-ipmi", *path])
        assert (MAN / f"man1/{name}.1").is_file()
        page = pages_of_nouns["-".join(["ruk-ipmi", *path[:1]])]
        for word in [*section(text, "Options"), *section(text, "Arguments")]:
            if word != "-h,--help" or not path:
                assert word.split(",")[-1] in page, f"{word} of {name}"
        if path:
            assert f" {' '.join(path)} " in page


def test_the_page_of_a_verb_is_its_nouns():
    page = shown("ruk-ipmi-sel-time-set")
    assert page == shown("ruk-ipmi-sel")
    assert "ruk-ipmi -b SLOT[.SUB] sel time set TIME Set the log's clock." in page


def test_there_is_no_page_of_what_is_no_command():
    commands = {"-".join(["ruk-ipmi", *path]) for path in all_commands()}
    assert {page.stem for page in MAN.glob("man1/*")} == commands


def test_a_page_tells_of_which_commands_write_bytes_and_which_are_for_one_blade():
    page = shown("ruk-ipmi-fru")
    assert "Save a FRU device's bytes. It is for one blade at a time. With -o binary" in page


def test_groff_has_nothing_to_say_against_a_page():
    checked = ended("groff", "-man", "-ww", "-z", "-Tutf8", "-rLL=78n", *PAGES, cwd=MAN)
    assert (checked.returncode, checked.stderr) == (0, "")


def test_mandoc_misses_nothing_but_the_date():
    checked = ended("mandoc", "-T", "lint", *PAGES, cwd=MAN)
    said = [line for line in checked.stdout.splitlines() if "missing date" not in line]
    assert said == []


@pytest.mark.parametrize(
    "page",
    [each for each in PAGES if each.suffix == ".1" and "EXAMPLES" in each.read_text()],
    ids=lambda page: page.name,
)
def test_the_examples_of_the_tool_do_what_they_say(start, environment, tmp_path, page):
    start("--simulate", "8")
    (tmp_path / "watcher.password").write_text("look only\n")
    environment = dict(environment, PATH=f"{BUILD}/bin:{os.environ['PATH']}")
    assert commands_of(page)
    for command in commands_of(page):
        done = ended("sh", "-c", command, env=environment, cwd=tmp_path)
        assert (done.returncode, done.stderr) == (0, ""), command
        assert done.stdout, command


DAEMONS = MAN / "man8/ruk-chassisd.8"


@pytest.fixture
def chassis_file(tmp_path):
    """The one that the daemon's page shows."""
    (tmp_path / "blade2.password").touch(0o600)
    file = tmp_path / "chassis.toml"
    file.write_text(verbatim(DAEMONS, "CHASSIS FILE")[0])
    return file


def test_the_daemons_examples_do_what_they_say(start, ruk_ipmi, chassis_file, monkeypatch):
    monkeypatch.chdir(chassis_file.parent)
    simulate, check, serve = [line.split() for line in commands_of(DAEMONS)]
    assert ended(BUILD / "bin" / check[0], *check[1:]).stdout.endswith("3 blades, no mistakes found\n")
    for command in (simulate, serve):
        daemon = start(*command[1:])
        assert ruk_ipmi("-b", "1", "sel", "info").returncode == 0
        daemon.terminate()
        assert daemon.wait(timeout=10) == 0


def terms():
    """Each key that the daemon's page explains: its table, and its name."""
    text = DAEMONS.read_text().split(".SH CHASSIS FILE\n")[1].split(".SH ")[0]
    plain = re.sub(r"\\f.", "", text)
    return re.findall(r"\.TP\n(?:(\[\S+\]) |(faults)\.)?(\w+)\n", plain)


def test_the_daemons_page_explains_every_key_of_a_chassis_file():
    source = (ROOT / "host/chassisd/config.cpp").read_text()
    read = re.findall(r"\.(?:number<\w+>|text|truth|texts|table)\(\"(\w+)\"", source)
    explained = {key for _, _, key in terms()}
    assert explained == (set(read) - {"chassis"}) | {"kind"}


@pytest.mark.parametrize("arguments, code", [
    (["--config", "chassis.toml", "--check"], 0),
    (["--config", "nowhere.toml"], 2),
    (["--simulate", "0"], 2),
    (["--simulate", "1"], 1),
])
def test_the_daemon_ends_as_its_page_says(environment, chassis_file, arguments, code):
    text = shown("ruk-chassisd")
    meaning = {0: "has no mistakes", 1: "could not serve", 2: "the file is wrong"}[code]
    assert re.search(rf" {code} [^.]*{meaning}", text)
    (chassis_file.parent / "file").touch()
    environment = dict(environment, RUK_RUNTIME_DIR=str(chassis_file.parent / "file/run"))
    daemon = BUILD / "bin/ruk-chassisd"
    assert ended(daemon, *arguments, cwd=chassis_file.parent, env=environment).returncode == code
