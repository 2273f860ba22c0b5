"""A program of a cross build on its target; the target is a shell behind a made-up ssh."""

import os
import pathlib
import subprocess

import pytest

ON_TARGET = pathlib.Path(__file__).resolve().parents[2] / "scripts/on-target"


@pytest.fixture
def on_target(tmp_path):
    """Runs a script as if it were a program of the target's, in an own /tmp there."""
    there = tmp_path / "target"
    there.mkdir()
    ssh = tmp_path / "bin/ssh"
    ssh.parent.mkdir()
    ssh.write_text(
        '#!/bin/sh\n[ "$1" = root@chassis ] || exit 255\n'
        f'cd / && exec env -i PATH="$REAL_PATH" TMPDIR={there} sh -c "$2"\n'
    )
    ssh.chmod(0o755)

    def run(script, *arguments, **variables):
        program = tmp_path / "a program"
        program.write_text("#!/bin/sh\n" + script)
        program.chmod(0o755)
        path = os.environ["PATH"]
        done = subprocess.run(
            [ON_TARGET, "root@chassis", program, *arguments],
            env={"PATH": f"{ssh.parent}:{path}", "REAL_PATH": path, **variables},
            text=True, capture_output=True, timeout=30,
        )  # fmt: skip
        assert list(there.iterdir()) == [], "nothing is left on the target"
        return done

    return run


def test_the_program_runs_there_with_its_arguments_as_they_are(on_target):
    done = on_target('printf "<%s>" "$@"', "--filter=a*", "two words", "it's")
    assert (done.stdout, done.stderr, done.returncode) == ("<--filter=a*><two words><it's>", "", 0)


def test_its_exit_status_comes_back(on_target):
    assert on_target("exit 3").returncode == 3


def test_the_files_that_it_is_given_are_there(on_target, tmp_path):
    corpus = tmp_path / "corpus"
    corpus.mkdir()
    (corpus / "one").write_text("kept")
    done = on_target('case $1 in /*) exit 1 ;; esac; cat "$1"/one', corpus)
    assert (done.stdout, done.stderr) == ("kept", "")


def test_its_environment_has_the_variables_of_this_project(on_target):
    done = on_target('echo "$RUK_CHECK_POST|$OTHER"', RUK_CHECK_POST="post it's 3", OTHER="x")
    assert done.stdout == "post it's 3|\n"


def test_says_what_it_needs_when_there_is_too_little():
    done = subprocess.run([ON_TARGET, "root@chassis"], text=True, capture_output=True)
    assert done.returncode == 2
    assert "scripts/on-target [USER@]HOST PROGRAM [ARGUMENT...]" in done.stderr
