"""The packages: what each holds, and programs that are built and run with what they install."""

import os
import pathlib
import re
import subprocess

import pytest

import readme

TOOL = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin/ruk-ipmi"

PROJECT = """\
cmake_minimum_required(VERSION 3.13)
project(reader {language})
find_package(ruk_ipmi 0.1 REQUIRED COMPONENTS platform)
add_executable(read_fru {source})
target_link_libraries(read_fru PRIVATE ruk_ipmi::{library} ruk_ipmi::platform)
"""

LANGUAGES = {"C": ("read_fru.c", "gcc -std=c11"), "CXX": ("read_fru.cpp", "g++ -std=c++17")}
LIBRARIES = {"ruk_ipmi": "-lruk_ipmi", "ruk_ipmi_static": "-l:libruk_ipmi.a"}


def files(package):
    """What a package installs, directories left out."""
    listed = subprocess.run(
        ["dpkg-deb", "--contents", package], check=True, capture_output=True, text=True
    )
    return [line.split()[5].lstrip(".") for line in listed.stdout.splitlines() if line[0] != "d"]


def field(package, name):
    return subprocess.check_output(["dpkg-deb", "--field", package, name], text=True).strip()


def test_each_component_is_a_package(packages):
    assert sorted(packages) == ["libruk-ipmi-dev", "libruk-ipmi1", "ruk-chassisd", "ruk-ipmi"]


def test_the_next_interface_of_the_library_can_be_installed_beside_this_one(packages):
    installed = files(packages["libruk-ipmi1"])
    assert installed
    for path in installed:
        assert re.search(r"/libruk_ipmi\.so\.\d", path), path


def test_no_two_packages_install_the_same_file(packages):
    installed = [path for each in packages.values() for path in files(each)]
    assert len(installed) == len(set(installed))


def test_the_development_files_come_with_the_library_of_the_same_build(packages):
    development, library = packages["libruk-ipmi-dev"], packages["libruk-ipmi1"]
    assert f"libruk-ipmi1 (= {field(library, 'Version')})" in field(development, "Depends")
    (link,) = [path for path in files(development) if path.endswith("/libruk_ipmi.so")]
    assert link.replace(".so", ".so.1") in files(library)


def test_the_tool_asks_for_the_library_that_it_loads_by_name(packages):
    (soname,) = set(re.findall(rb"libfreeipmi\.so\.\d+", TOOL.read_bytes()))
    package = soname.decode().replace(".so.", "")
    assert package in re.split(r"[ ,|]+", field(packages["ruk-ipmi"], "Depends"))


@pytest.fixture(scope="module")
def user(root, shell, packages):
    """The shell of somebody who installed all packages and serves a chassis."""
    root.install(shell, packages.values())
    shell(f"export RUK_LOG=error RUK_RUNTIME_DIR={root.home}/chassis")
    shell("ruk-chassisd --simulate 4 &")
    for source, _ in LANGUAGES.values():
        (root.outside(root.home) / source).write_text(readme.program("read_fru.cpp"))
    return shell


def reads_a_fru(user, program, library):
    """Whether it prints a FRU's common header, and is linked as it was meant to be."""
    header = bytes.fromhex(user(program))
    assert len(header) == 8
    assert header[0] == 1, "the format version"
    assert sum(header) % 256 == 0, "the checksum"
    assert ("libruk_ipmi.so.1" in user(f"ldd {program}")) == (library == "ruk_ipmi")
    return True


@pytest.mark.parametrize("library", LIBRARIES)
@pytest.mark.parametrize("language", LANGUAGES)
def test_a_program_finds_the_library_with_cmake(root, user, language, library):
    source, _ = LANGUAGES[language]
    there = f"cmake-{language}-{library}"
    user(f"mkdir {there}; cp {source} {there}")
    (root.outside(root.home) / there / "CMakeLists.txt").write_text(
        PROJECT.format(language=language, source=source, library=library)
    )
    user(f"cmake -S {there} -B {there}/build && cmake --build {there}/build")
    assert reads_a_fru(user, f"{there}/build/read_fru", library)


@pytest.mark.parametrize("library", LIBRARIES)
@pytest.mark.parametrize("language", LANGUAGES)
def test_a_program_finds_the_library_with_pkg_config(user, language, library):
    source, compiler = LANGUAGES[language]
    flags = "$(pkg-config --cflags --libs ruk_ipmi ruk_ipmi_platform)"
    program = f"./{language}-{library}"
    user(f"flags={flags}; {compiler} -Wall -Wextra -Wpedantic -Werror {source} "
         f"${{flags/-lruk_ipmi /{LIBRARIES[library]} }} -o {program}")
    assert reads_a_fru(user, program, library)


@pytest.mark.parametrize("compiler", ["gcc -std=c11 -xc", "g++ -std=c++17 -xc++"])
def test_every_installed_header_can_be_included_by_itself(root, user, packages, compiler):
    installed = "\n".join(files(packages["libruk-ipmi-dev"]))
    headers = re.findall(r"^/usr/include/(ruk_ipmi(?:/.*)?\.h)$", installed, re.M)
    assert len(headers) > 20
    for name in headers:
        user(f"printf '#include <{name}>\\nextern int more;\\n' | {compiler} -fsyntax-only -Wall "
             "-Wextra -Wpedantic -Werror $(pkg-config --cflags ruk_ipmi) -")


def test_a_program_that_asks_for_another_interface_finds_none(root, user):
    (root.outside(root.home) / "CMakeLists.txt").write_text(
        "cmake_minimum_required(VERSION 3.13)\nproject(newer C)\n"
        "find_package(ruk_ipmi 99 QUIET)\n"
        "message(STATUS \"considered: ${ruk_ipmi_CONSIDERED_VERSIONS}, found: ${ruk_ipmi_FOUND}\")"
    )
    assert re.search(r"considered: .*\d+\.\d+\.\d+, found: 0", user("cmake -B newer"))


def test_the_tool_reads_the_blades_that_the_daemon_serves(user):
    assert "4 blades" in user("ruk-ipmi chassis show")
    assert user("ruk-ipmi -b 4 sel list"), "FreeIPMI's texts"


def test_the_service_serves_the_chassis_file_that_comes_with_it(root, user):
    if not root.is_root:
        pytest.skip("its paths are those of a real root")
    unit = user("cat /usr/lib/systemd/system/ruk-chassisd.service")
    checks, serves = (re.search(rf"^{key}=(.*)", unit, re.M)[1] for key in
                      ("ExecStartPre", "ExecStart"))
    assert user(checks) == "/etc/ruk/chassis.toml: 1 blade, no mistakes found\n"
    user(f"RUK_RUNTIME_DIR={root.home}/service {serves} &")
    assert user(f"RUK_RUNTIME_DIR={root.home}/service ruk-ipmi -b 1 fru print")
    user("kill %2")


def test_what_an_administrator_wrote_stays_when_the_daemon_is_installed_again(root, user, packages):
    if not root.is_root:
        pytest.skip("nothing is really installed")
    user("echo '# ours' >>/etc/ruk/chassis.toml")
    root.install(user, [packages["ruk-chassisd"]])
    assert user("tail -n 1 /etc/ruk/chassis.toml") == "# ours\n"


def test_packages_that_are_purged_leave_nothing_behind(root, user, packages):
    if not root.is_root:
        pytest.skip("nothing is really installed")
    user("ls /usr/bin/ruk-ipmi /usr/bin/ruk-chassisd /etc/ruk/chassis.toml")
    user(f"apt-get purge -y {' '.join(packages)} </dev/null")
    assert root.left_behind() == []
