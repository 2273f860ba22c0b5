"""scripts/release, in a repository made of what it looks at."""

import datetime
import pathlib
import re
import shutil
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TODAY = datetime.datetime.now(datetime.timezone.utc).date().isoformat()
MAKEFILE = """\
test:
\t@touch ../tested
packages:
\t@mkdir -p build/packages
\t@touch build/packages/ruk_$$(sed -n 's/.*_VERSION "\\(.*\\)"/\\1/p' include/ruk_ipmi/version.h).deb
"""
KEPT = [
    "include/ruk_ipmi/version.h", "src/CMakeLists.txt", "scripts/release",
    "abi/constants", "abi/exports.xml", "abi/platform",
]  # fmt: skip


class Repository:
    def __init__(self, directory):
        self.directory = directory
        for file in KEPT:
            (directory / file).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / file, directory / file)
        self.write("Makefile", MAKEFILE)
        self.write(".gitignore", "build/\n")
        self.git("init", "-q", "-b", "main")
        self.begin("0.1.0")

    def run(self, *command, check=True):
        done = subprocess.run(
            command, cwd=self.directory, text=True, capture_output=True, timeout=60
        )
        assert not check or done.returncode == 0, done.stderr
        return done

    def git(self, *arguments):
        identity = ("-c", "user.name=A Developer", "-c", "user.email=developer@example.org")
        return self.run("git", *identity, *arguments).stdout.strip()

    def write(self, file, text):
        (self.directory / file).write_text(text)

    def read(self, file):
        return (self.directory / file).read_text()

    def edit(self, file, old, new):
        assert old in self.read(file)
        self.write(file, self.read(file).replace(old, new))

    def commit(self):
        self.git("add", "-A")
        self.git("commit", "-q", "-m", "Change something")

    def begin(self, version):
        """Counts the version up and opens its section, committed."""
        header = self.read("include/ruk_ipmi/version.h")
        self.write("include/ruk_ipmi/version.h", re.sub(r'"[\d.]+"', f'"{version}"', header))
        self.write("CHANGELOG.md", f"# Changelog\n\n## {version}, unreleased\n\n- Something.\n")
        self.commit()

    def state(self):
        return self.git("rev-parse", "HEAD"), self.git("tag"), self.git("status", "--porcelain")

    def release(self, *options):
        return self.run("scripts/release", *options, check=False)

    def tested(self):
        return (self.directory.parent / "tested").exists()


@pytest.fixture
def repository(tmp_path, monkeypatch):
    for role in ("AUTHOR", "COMMITTER"):
        monkeypatch.setenv(f"GIT_{role}_NAME", "A Developer")
        monkeypatch.setenv(f"GIT_{role}_EMAIL", "developer@example.org")
    monkeypatch.setenv("GIT_CONFIG_GLOBAL", "/dev/null")
    (tmp_path / "repository").mkdir()
    return Repository(tmp_path / "repository")


@pytest.fixture
def released(repository):
    """A repository with one release behind it."""
    assert repository.release("--no-test").returncode == 0
    return repository


def refused(repository, *options):
    """Why a release is refused, which changes nothing."""
    before = repository.state()
    done = repository.release(*options)
    assert done.returncode == 1, done.stdout
    assert repository.state() == before
    return done.stderr


def test_a_release_is_tested_dated_committed_and_tagged(repository):
    done = repository.release()
    assert done.returncode == 0, done.stderr
    assert repository.tested()
    assert f"\n## 0.1.0, {TODAY}\n" in repository.read("CHANGELOG.md")
    assert repository.git("log", "-1", "--format=%s|%D") == "release: 0.1.0|HEAD -> main, tag: v0.1.0"
    assert repository.git("cat-file", "-t", "v0.1.0") == "tag"
    assert repository.git("status", "--porcelain") == ""


def test_archive_and_packages_are_of_the_commit_that_is_tagged(released):
    artifacts = released.directory / "build/release"
    names = {each.name for each in artifacts.iterdir()}
    assert names == {"ruk_ipmi-0.1.0.tar.gz", "ruk_0.1.0.deb", "SHA256SUMS"}
    released.run("tar", "-xzf", "build/release/ruk_ipmi-0.1.0.tar.gz", "-C", "build")
    unpacked = released.directory / "build/ruk_ipmi-0.1.0"
    assert (unpacked / "CHANGELOG.md").read_text() == released.git("show", "v0.1.0:CHANGELOG.md") + "\n"
    released.run("sh", "-c", "cd build/release && sha256sum --check SHA256SUMS")


def test_a_dry_run_tells_all_and_does_nothing(repository):
    before = repository.state()
    done = repository.release("--dry-run")
    assert done.returncode == 0, done.stderr
    for step in ("make test", f"## 0.1.0, {TODAY}", "ruk_ipmi-0.1.0.tar.gz, packages", "tag v0.1.0"):
        assert step in done.stdout
    assert repository.state() == before
    assert not repository.tested()
    assert not (repository.directory / "build").exists()


def test_tests_that_fail_stop_it(repository):
    repository.edit("Makefile", "@touch ../tested", "@false")
    repository.commit()
    before = repository.state()
    assert repository.release().returncode != 0
    assert repository.state() == before


def test_packages_that_fail_stop_it(repository):
    repository.edit("Makefile", "@touch build/packages/ruk_", "@false ")
    repository.commit()
    before = repository.state()
    assert repository.release("--no-test").returncode != 0
    assert repository.state() == before


def test_another_branch_is_refused(repository):
    repository.git("checkout", "-q", "-b", "topic")
    assert "this is topic, not main" in refused(repository)


def test_uncommitted_changes_are_refused(repository):
    repository.write("new", "")
    assert "changes that are not committed" in refused(repository, "--dry-run")


def test_a_changelog_of_another_version_is_refused(repository):
    repository.edit("CHANGELOG.md", "0.1.0", "0.2.0")
    repository.commit()
    assert "begins with '## 0.2.0, unreleased', not with '## 0.1.0, unreleased'" in refused(repository)


def test_an_empty_section_is_refused(repository):
    repository.edit("CHANGELOG.md", "- Something.\n", "\n## 0.0.9, 2026-01-01\n\n- Older.\n")
    repository.commit()
    assert "says nothing about 0.1.0" in refused(repository)


def test_the_same_version_is_not_released_twice(released):
    assert "v0.1.0 is there already" in refused(released)


def test_an_older_version_is_refused(released):
    released.begin("0.0.9")
    assert "v0.0.9 is not behind v0.1.0" in refused(released)


def test_a_correction_that_leaves_the_interface_alone_counts_patch(released):
    released.begin("0.1.1")
    assert released.release("--no-test").returncode == 0


def test_an_interface_that_grew_wants_a_new_minor(released):
    released.write("abi/constants", released.read("abi/constants") + "ZZ_NEW 1\n")
    released.begin("0.1.1")
    assert "the interface grew since v0.1.0: count MINOR up" in refused(released)
    released.begin("0.2.0")
    assert released.release("--dry-run").returncode == 0


@pytest.mark.parametrize(
    "file, change",
    [
        ("abi/constants", lambda text: text.split("\n", 1)[1]),
        ("abi/platform", lambda text: text + "zz_new\n"),
        ("abi/exports.xml", lambda text: "\n".join(
            line for line in text.split("\n")
            if "elf-symbol name='ruk_ipmi_exit'" not in line
        )),
    ],
)  # fmt: skip
def test_an_interface_that_broke_wants_a_new_major_and_soname(released, file, change):
    released.write(file, change(released.read(file)))
    released.begin("0.2.0")
    said = refused(released)
    assert "the soname is the same" in said
    assert "count MAJOR up" in said
    released.edit("src/CMakeLists.txt", "SOVERSION 1", "SOVERSION 2")
    released.begin("1.0.0")
    assert released.release("--dry-run").returncode == 0


def test_an_option_that_it_does_not_know_is_refused(repository):
    done = repository.release("--push")
    assert (done.returncode, done.stderr) == (2, "scripts/release [--dry-run] [--no-test]\n")


def test_this_tree_has_one_version():
    """What a release would find: the changelog's top section is the header's version."""
    version = re.search(r'RUK_IPMI_VERSION "(.*)"', (ROOT / "include/ruk_ipmi/version.h").read_text())
    top = re.search(r"^## (\S+), (unreleased|\d{4}-\d\d-\d\d)$", (ROOT / "CHANGELOG.md").read_text(), re.M)
    assert top[1] == version[1]
