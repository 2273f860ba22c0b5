"""What shells complete: the scripts as they are installed, asked as the shells ask them."""

import os
import pathlib
import re
import subprocess

import pytest

from command_tree import all_commands, section
from terminal import Terminal

SHARE = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "share"
BASH = SHARE / "bash-completion/completions"
ZSH = SHARE / "zsh/site-functions"


def completed(line, directory=None):
    """What bash offers for the last word of a line, which it breaks at "=" too."""
    words = re.findall(r"=|[^ =]+|(?<=[ =])$", line)
    ask = """
        source "$1"
        COMP_WORDS=("${@:2}")
        COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
        "$(complete -p "$2" | sed 's/.*-F \\([^ ]*\\).*/\\1/')"
        printf '%s\\n' "${COMPREPLY[@]}"
    """
    asked = subprocess.run(
        ["bash", "--norc", "-u", "-c", ask, "bash", BASH / words[0], *words],
        capture_output=True, text=True, timeout=20, cwd=directory,
    )
    assert (asked.returncode, asked.stderr) == (0, "")
    return asked.stdout.split()


@pytest.mark.parametrize(
    "line, offered",
    [
        ("ruk-ipmi se", ["sel"]),
        ("ruk-ipmi sel ", ["info", "list", "get", "clear", "time", "utc-offset"]),
        ("ruk-ipmi sel time ", ["get", "set"]),
        ("ruk-ipmi -b 3 sel c", ["clear"]),
        ("ruk-ipmi -b sel sel c", ["clear"]),
        ("ruk-ipmi -v --utc sel ti", ["time"]),
        ("ruk-ipmi sel -o json ti", ["time"]),
        ("ruk-ipmi sel --output=json ti", ["time"]),
        ("ruk-ipmi sel list --f", ["--follow"]),
        ("ruk-ipmi sel list --ou", ["--output"]),
        ("ruk-ipmi --ver", ["--version", "--verbose"]),
        ("ruk-ipmi sel list --ver", ["--verbose"]),
        ("ruk-ipmi -o ", ["normal", "json", "binary"]),
        ("ruk-ipmi sel list -b 1 -o j", ["json"]),
        ("ruk-ipmi sel list --output=", ["normal", "json", "binary"]),
        ("ruk-ipmi sel list --output=b", ["binary"]),
        ("ruk-ipmi led blink ", ["server", "drive"]),
        ("ruk-ipmi led blink server ", []),
        ("ruk-ipmi led -b 2 off --utc d", ["drive"]),
        ("ruk-ipmi user set-access 3 --privilege ad", ["administrator", "admin"]),
        ("ruk-ipmi chassis boot-device set --efi p", ["pxe"]),
        ("ruk-ipmi lan set prog", []),
        ("ruk-ipmi lan get prog", ["progress"]),
        ("ruk-ipmi sel get ", []),
        ("ruk-ipmi nonsense ", []),
        ("ruk-chassisd --s", ["--simulate"]),
        ("ruk-chassisd --simulate ", []),
    ],
)
def test_bash_is_offered_what_may_stand_there(line, offered):
    assert completed(line) == offered


@pytest.mark.parametrize(
    "line",
    [
        "ruk-ipmi fru write ima",
        "ruk-ipmi -b 1 fru write --id 2 ima",
        "ruk-ipmi sled mac-map set --id 1 ima",
        "ruk-ipmi user set-password 2 --password-file ima",
        "ruk-ipmi user set-password --password-file=ima",
        "ruk-chassisd --check --config ima",
    ],
)
def test_bash_is_offered_files_where_one_is_read(tmp_path, line):
    (tmp_path / "image.bin").touch()
    assert completed(line, tmp_path) == ["image.bin"]


def test_bash_knows_all_that_the_tools_help_tells():
    for path, text in all_commands().items():
        line = " ".join(["ruk-ipmi", *path])
        options = [name for each in section(text, "Options") for name in each.split(",")]
        assert set(options) <= set(completed(line + " -"))
        if section(text, "Commands"):
            assert completed(line + " ") == section(text, "Commands")


@pytest.fixture(scope="module")
def shells():
    """Shells on a terminal, with the completions and nothing else of the user's."""
    started = []

    def start(directory, *command, setup):
        environment = {"PATH": os.environ["PATH"], "TERM": "xterm", "HOME": "/", "PS1": "> ",
                       "LC_ALL": "C.UTF-8"}
        started.append(Terminal(command, environment, 100, 50))
        started[-1].until(lambda lines: lines and lines[-1].endswith(">"))
        started[-1].type(f"{setup}; cd {directory}; PS1='ready> '\n")
        started[-1].until(lambda lines: lines[-1] == "ready>")
        return started[-1]

    yield start
    for each in started:
        each.close()


@pytest.fixture(scope="module")
def directory(tmp_path_factory):
    made = tmp_path_factory.mktemp("completion")
    (made / "image file.bin").touch()
    return made


@pytest.fixture(scope="module")
def bash(shells, directory):
    return shells(directory, "bash", "--norc", "-i", setup=f"source {BASH}/ruk-ipmi")


@pytest.fixture(scope="module")
def zsh(shells, directory):
    setup = f"fpath=({ZSH} $fpath); autoload -Uz compinit; compinit -u -D"
    return shells(directory, "zsh", "-f", "-i", setup=setup)


def seen(shell, line, keys, wanted):
    """Types a line and presses keys: all that is wanted is seen then."""
    shell.type("\x15\x0c" + line + keys)
    lines = shell.until(lambda lines: all(any(each in line for line in lines) for each in wanted))
    shell.type("\x15")
    return lines


def test_a_tab_in_bash_completes_the_line(bash):
    seen(bash, "ruk-ipmi sel -o js", "\tti\tse\t", ["ready> ruk-ipmi sel -o json time set"])


def test_a_tab_in_bash_completes_behind_an_equals_sign(bash):
    seen(bash, "ruk-ipmi sel list --output=", "j\t", ["ready> ruk-ipmi sel list --output=json"])


def test_a_tab_in_bash_quotes_a_files_name(bash):
    seen(bash, "ruk-ipmi fru write im", "\t", [r"fru write image\ file.bin"])


@pytest.mark.parametrize(
    "line, wanted",
    [
        ("ruk-ipmi time", ["ruk-ipmi timeouts"]),
        ("ruk-ipmi sel cl", ["ruk-ipmi sel clear"]),
        ("ruk-ipmi -b 3 sel time s", ["sel time set"]),
        ("ruk-ipmi sel -o js", ["sel -o json"]),
        ("ruk-ipmi sel -b 3 cl", ["sel -b 3 clear"]),
        ("ruk-ipmi -b 3 sel list --fo", ["sel list --follow"]),
        ("ruk-ipmi sel list --output=js", ["--output=json"]),
        ("ruk-ipmi led blink ser", ["led blink server"]),
        ("ruk-ipmi chassis boot-device set --efi px", ["--efi pxe"]),
        ("ruk-ipmi user set-access 3 --privilege op", ["--privilege operator"]),
        ("ruk-ipmi fru write im", [r"fru write image\ file.bin"]),
        ("ruk-chassisd --config im", [r"--config image\ file.bin"]),
        ("ruk-chassisd --sim", ["--simulate"]),
    ],
)
def test_a_tab_in_zsh_completes_the_line(zsh, line, wanted):
    seen(zsh, line, "\t", wanted)


def test_a_tab_in_zsh_tells_what_commands_are_for(zsh):
    seen(zsh, "ruk-ipmi sel ", "\t", ["clear", "-- Erase all entries and wait until they are gone"])


def test_zsh_finds_no_mistake_in_the_scripts():
    for script in ZSH.iterdir():
        checked = subprocess.run(["zsh", "-n", script], capture_output=True, text=True, timeout=20)
        assert (checked.returncode, checked.stderr) == (0, "")
