"""README as a newcomer follows it: in a clone, from top to bottom, whatever it shows.

What takes minutes is not done here, nor what would change the machine:
- `make` alone installs what it needs, and then gives the clone the programs and libraries of the
  build that is tested, instead of building the same again;
- of `make demo`, `make test`, `make bench` and the like it is seen that there is such a target;
- `make packages` gives the packages of that build, made by the same command;
- `sudo apt-get install` installs them without asking, in a root of its own.
"""

import os
import pathlib
import shutil
import subprocess

import pytest

import readme

BUILD = pathlib.Path(os.environ["RUK_BUILD_DIR"])


@pytest.fixture(scope="module")
def clone(root, shell):
    """What a clone of this tree would hold if all that is in it now were committed."""
    path = root.outside(root.home) / "libruk_ipmi"
    path.mkdir()
    listed = subprocess.run(
        ["git", "-C", readme.TREE, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True, capture_output=True, text=True,
    )
    for name in listed.stdout.rstrip("\0").split("\0"):
        if (readme.TREE / name).exists():
            (path / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(readme.TREE / name, path / name)
    shell("cd libruk_ipmi")
    return path


@pytest.fixture(scope="module")
def newcomer(root, shell, clone, packages):
    """Types a command; what it says."""

    def programs_of_this_build():
        shell("scripts/install-dependencies build", patience=600)
        native = clone / "build/native"
        (native / "bin").mkdir(parents=True)
        for each in ("bin/ruk-chassisd", "bin/ruk-ipmi", "libruk_ipmi.a", "libruk_platform.a"):
            shutil.copy(BUILD / each, native / each)

    def packages_of_this_build():
        (clone / "build/packages").mkdir()
        for each in packages.values():
            shutil.copy(each, clone / "build/packages")

    instead = {
        "make": programs_of_this_build,
        "make packages": packages_of_this_build,
        "sudo apt-get install ./build/packages/*.deb":
            lambda: root.install(shell, packages.values()),
    }

    def types(command):
        if command.split()[0] == "make":
            shell(f"{command} --dry-run")
        if command in instead:
            instead.pop(command)()
        elif command.split()[0] != "make":
            return shell(command)

    return types


# What some of the commands make be said.
SAYS = {
    "ruk-ipmi chassis show": "4 blades",
    "ruk-ipmi -b 1-4 fru print": "blade 4",
    "./read_fru": "01 ",
    "ruk-ipmi events post -b 3 --events 3,40": "blade 3: event 3\nblade 3: event 40\n",
    "build/read_fru": "01 ",
    "ruk-chassisd --config chassis.toml --check": "2 blades, no mistakes found",
}


def test_whatever_readme_shows_can_be_typed_in_and_succeeds(root, shell, newcomer):
    unsaid = dict(SAYS)
    for language, text, saved_as in readme.blocks():
        if language == "sh":
            for command in readme.commands(text):
                said = newcomer(command)
                if command in SAYS:
                    shell.wait_for(SAYS[command], said)
                    unsaid.pop(command, None)
        else:
            assert saved_as, f"README does not say what to do with\n{text}"
            here = root.outside(shell("pwd").splitlines()[-1])
            (here / saved_as).write_text(text)
    assert not unsaid, "README shows these no more"
