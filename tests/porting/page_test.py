"""What docs/porting.md says of the platform's functions, and the commands that it shows."""

import os
import pathlib
import re
import shutil
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["RUK_BUILD_DIR"])
PAGE = (ROOT / "docs/porting.md").read_text()
TRIPLET = "powerpc-linux-gnu"
needs_cross_tools = pytest.mark.skipif(not shutil.which(f"{TRIPLET}-g++"), reason=f"no {TRIPLET}-g++")


def blocks(language):
    return re.findall(rf"```{language}\n(.*?)```", PAGE, re.DOTALL)


def declarations(text):
    """Each function's declaration, in one line."""
    text = re.sub(r"/\*.*?\*/|#.*?\n|RUK_PLATFORM_PRINTF\(.*?\)", " ", text, flags=re.DOTALL)
    found = re.findall(r"^((?:const )?\w+ \**(\w+)\([^;{}]*\)) *;", text, re.DOTALL | re.MULTILINE)
    return {name: " ".join(whole.split()) for whole, name in found}


def undefined_names(archive):
    symbols = subprocess.run(
        ["nm", "-g", archive], check=True, text=True, capture_output=True
    ).stdout.splitlines()
    return {line.split()[-1] for line in symbols if re.match(r" +U ", line)}


def sh(commands, **options):
    return subprocess.run(
        ["sh", "-e", "-c", commands], text=True, capture_output=True, timeout=300, **options
    )


def test_the_page_has_each_function_that_the_library_needs_of_a_platform_as_it_is_declared():
    declared = declarations("".join(
        header.read_text() for header in sorted((ROOT / "src/platform").glob("*.h"))
    ))  # fmt: skip
    needed = undefined_names(BUILD / "libruk_ipmi.a") & declared.keys()
    assert declarations("".join(blocks("c"))) == {name: declared[name] for name in needed}
    assert f"{len(needed)} functions of the platform below it" in PAGE


def build_as_shown(containing, tmp_path, replacing, environment):
    """Runs the commands of a block, building elsewhere; the library is one of the target's."""
    (commands,) = [each for each in blocks("sh") if containing in each]
    for old, new in ({"build/target": str(tmp_path / "target")} | replacing).items():
        commands = commands.replace(old, new)
    clean = {name: value for name, value in os.environ.items() if not name.startswith("RUK_TARGET")}
    done = sh(commands, cwd=ROOT, env=clean | {"CMAKE_BUILD_PARALLEL_LEVEL": "2"} | environment)
    assert done.returncode == 0, done.stdout + done.stderr
    for library in ("libruk_ipmi.a", "libruk_ipmi.so.1"):
        head = sh(f"{TRIPLET}-readelf -h {tmp_path}/target/{library}").stdout
        assert "2's complement, big endian" in head


@needs_cross_tools
def test_the_library_is_built_with_cross_tools_as_shown(tmp_path):
    build_as_shown("export RUK_TARGET_FLAGS", tmp_path, {}, {"CMAKE_BUILD_TYPE": "Debug"})
    assert "-mcpu=603e" in (tmp_path / "target/CMakeCache.txt").read_text()


@needs_cross_tools
def test_the_library_is_built_with_an_sdk_as_shown(tmp_path):
    setup = tmp_path / "environment-setup"
    setup.write_text(
        f'export CC="{TRIPLET}-gcc -mcpu=603e" CXX="{TRIPLET}-g++ -mcpu=603e"\n'
        "export CFLAGS=-O0 CXXFLAGS=-O0 LDFLAGS=-Wl,-O1\n"
    )
    replacing = {"/opt/sdk/environment-setup": str(setup)}
    build_as_shown(". /opt/sdk", tmp_path, replacing, {"CMAKE_BUILD_TYPE": "Debug"})


@pytest.fixture
def parts(tmp_path):
    """A C program, the library, and the host's platform under the names that the page has."""
    (tmp_path / "program.c").write_text(
        "#include <ruk_ipmi.h>\nint main(void) { return get_ipmi_shm_ptr(0) == (uint32_t)-1 ? 0 : 1; }\n"
    )
    sh(f"gcc -I{ROOT}/include -c program.c", cwd=tmp_path).check_returncode()
    for name in ("libruk_ipmi.a", "libruk_ipmi.so.1"):
        (tmp_path / name).symlink_to(BUILD / name)
    (tmp_path / "libruk_ipmi.so").symlink_to(BUILD / "libruk_ipmi.so.1")
    (tmp_path / "libplatform.a").symlink_to(BUILD / "libruk_platform.a")
    (tmp_path / "abi").symlink_to(ROOT / "abi")
    return tmp_path


@pytest.mark.parametrize("library", ["libruk_ipmi.a", "-lruk_ipmi"])
def test_a_program_is_linked_as_shown(parts, environment, library):
    (commands,) = [each for each in blocks("sh") if each.startswith("gcc program.o")]
    (command,) = [line for line in commands.splitlines() if f" {library} " in line]
    # The host's platform is written in C++.
    linked = sh(command.replace("-pthread", "-pthread -lstdc++"), cwd=parts)
    assert linked.returncode == 0, linked.stderr
    needed = sh("readelf -d program", cwd=parts).stdout
    assert ("libruk_ipmi.so.1" in needed) == (library == "-lruk_ipmi")
    assert sh("./program", cwd=parts, env=environment | {"LD_LIBRARY_PATH": "."}).returncode == 0


def test_the_linker_misses_what_a_platform_would_have(parts):
    for library in ("libruk_ipmi.a", "-lruk_ipmi"):
        linked = sh(f"gcc program.o -L. {library} -pthread -o program", cwd=parts)
        assert linked.returncode != 0
        assert "undefined reference to `attach_ruk_shm'" in linked.stderr


def missing_functions(parts):
    (commands,) = [each for each in blocks("sh") if each.startswith("nm ")]
    done = sh(commands, cwd=parts, env=os.environ | {"LC_ALL": "C"})
    assert done.stderr == ""
    return done.stdout.split()


def test_a_platform_that_is_whole_lacks_nothing(parts):
    assert missing_functions(parts) == []


def test_the_functions_that_a_platform_lacks_are_named(parts):
    (parts / "libplatform.a").unlink()
    (parts / "some.c").write_text("void os_thread_exit(void) {}\n")
    sh("gcc -c some.c && ar rc libplatform.a some.o", cwd=parts).check_returncode()
    everything = (ROOT / "abi/platform").read_text().split()
    assert missing_functions(parts) == [each for each in everything if each != "os_thread_exit"]
