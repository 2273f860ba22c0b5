"""Where packages are installed without the machine noticing."""

import ctypes
import os
import pathlib
import stat
import subprocess

from shell import Shell

CLONE_NEWNS = 0x00020000

# What installing and removing any package at all writes to.
BOOKKEEPING = ("home", "tmp", "var/cache", "var/lib/apt", "var/lib/dpkg", "var/log")


def mount(*arguments):
    subprocess.run(["mount", *arguments], check=True)


class CleanRoot:
    """A root to write to above the machine's own, or above the one that $RUK_CLEAN_ROOT names. What
    is written stays in memory; it is seen by this process and its children alone, and goes away
    with them."""

    is_root = True
    home = "/home/newcomer"

    def __init__(self, directory):
        self.below = os.environ.get("RUK_CLEAN_ROOT", "/")
        self.changes, work, self.path = (directory / name for name in ("changes", "work", "root"))
        if ctypes.CDLL(None).unshare(CLONE_NEWNS) != 0:
            raise PermissionError("mounts of its own are not for this process")
        mount("--make-rprivate", "/")
        mount("-t", "tmpfs", "tmpfs", directory)
        for each in (self.changes, work, self.path):
            each.mkdir()
        layers = f"lowerdir={self.below},upperdir={self.changes},workdir={work}"
        mount("-t", "overlay", "overlay", "-o", layers, self.path)
        mount("-t", "tmpfs", "tmpfs", self.path / "tmp")
        mount("-t", "proc", "proc", self.path / "proc")
        mount("--rbind", "/dev", self.path / "dev")
        self.outside(self.home).mkdir(parents=True)

    def outside(self, path):
        """A path of this root, as who is outside names it."""
        return self.path / str(path).lstrip("/")

    def shell(self):
        return Shell("chroot", self.path, "env", "-C", self.home, HOME=self.home)

    def install(self, shell, packages):
        for each in packages:
            (self.outside("/tmp") / each.name).write_bytes(each.read_bytes())
        names = " ".join(f"/tmp/{each.name}" for each in packages)
        shell(f"DEBIAN_FRONTEND=noninteractive apt-get install --reinstall -y {names} </dev/null")

    def left_behind(self):
        """What is there now and was not at first, or the other way round; other packages' files are
        theirs to remove."""
        lists = self.outside("/var/lib/dpkg/info").glob("*.list")
        others = {line for each in lists for line in each.read_text().splitlines()}
        found = []
        for path in sorted(self.changes.rglob("*")):
            name = str(path.relative_to(self.changes))
            gone = stat.S_ISCHR(path.lstat().st_mode)  # how this file system notes it
            new = not os.path.lexists(os.path.join(self.below, name))
            ours = others.isdisjoint({f"/{name}", f"/{name.removeprefix('usr/')}"})
            if (gone or new and ours) and not name.startswith(BOOKKEEPING):
                found.append(name)
        return found


class StagedPrefix:
    """For those who may not make a root: the packages' files lie in a directory, and variables lead
    there. Shows less: nothing is really installed, nor removed."""

    is_root = False

    def __init__(self, directory):
        self.path = directory
        self.home = directory / "home"
        self.home.mkdir()

    def outside(self, path):
        return pathlib.Path(path)

    def shell(self):
        usr = self.path / "usr"
        triplet = subprocess.check_output(["gcc", "-print-multiarch"], text=True).strip()
        libraries = usr / "lib" / triplet
        return Shell(
            "env", "-C", self.home, HOME=self.home, CMAKE_PREFIX_PATH=usr,
            LD_LIBRARY_PATH=libraries, PKG_CONFIG_PATH=libraries / "pkgconfig",
            PATH=f"{usr}/bin:{Shell.path}",
        )

    def install(self, shell, packages):
        for each in packages:
            shell(f"dpkg-deb --extract {each} {self.path}")


def make_root(directory):
    """A clean root where this may be had, else a staged prefix."""
    try:
        return CleanRoot(directory)
    except (PermissionError, subprocess.CalledProcessError):
        if "RUK_CLEAN_ROOT" in os.environ:
            raise
        return StagedPrefix(directory)
