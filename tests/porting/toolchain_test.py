"""The toolchain file for any big-endian target, with Debian's compilers for one: what it takes and
what it refuses."""

import os
import pathlib
import shutil
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TRIPLET = "powerpc-linux-gnu"

pytestmark = pytest.mark.skipif(
    not shutil.which(f"{TRIPLET}-g++"), reason=f"needs g++-{TRIPLET}"
)


@pytest.fixture
def configure(tmp_path):
    """Configures the library for a target: whether that went well, and all that was said."""

    def run(in_environment=None, **said):
        environment = {
            name: value for name, value in os.environ.items() if not name.startswith("RUK_TARGET_")
        }
        done = subprocess.run(
            ["cmake", "-S", ROOT, "-B", tmp_path, "-G", "Ninja", "-DBUILD_TESTING=OFF",
             "-DCMAKE_BUILD_TYPE=Debug",
             f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/cmake/toolchains/big-endian.cmake",
             *(f"-DRUK_TARGET_{name}={value}" for name, value in said.items())],
            env=environment | (in_environment or {}), text=True, capture_output=True, timeout=120,
        )  # fmt: skip
        return done.returncode == 0, " ".join((done.stdout + done.stderr).split())

    return run


def test_is_told_in_the_environment_too_and_remembers_it(configure):
    assert configure({"RUK_TARGET_TRIPLET": TRIPLET})[0]
    assert configure()[0]


def test_refuses_to_guess_the_target(configure):
    well, said = configure()
    assert not well
    assert "RUK_TARGET_TRIPLET is not set" in said


def test_names_the_compiler_that_is_not_there(configure):
    well, said = configure(TRIPLET="m68k-nowhere")
    assert not well
    assert "there is no m68k-nowhere-gcc" in said


def test_names_the_sysroot_that_is_not_there(configure, tmp_path):
    well, said = configure(TRIPLET=TRIPLET, SYSROOT=tmp_path / "none")
    assert not well
    assert f"RUK_TARGET_SYSROOT is no directory: {tmp_path}/none" in said


def test_names_the_emulator_that_is_not_there(configure):
    well, said = configure(TRIPLET=TRIPLET, EMULATOR="qemu-nowhere -L /")
    assert not well
    assert "a program that is not there: qemu-nowhere" in said


def test_refuses_a_little_endian_compiler(configure):
    well, said = configure(TRIPLET="x86_64-linux-gnu")
    assert not well
    assert "x86_64-linux-gnu-g++ compiles for a little-endian machine" in said
