"""The packages of this build, and somewhere to install them."""

import os
import pathlib
import subprocess

import pytest

from clean_root import make_root

BUILD = pathlib.Path(os.environ["RUK_BUILD_DIR"])


@pytest.fixture(scope="session")
def packages(tmp_path_factory):
    """Each package's file, by the package's name."""
    directory = tmp_path_factory.mktemp("packages")
    subprocess.run(
        ["cpack", "--config", BUILD / "CPackConfig.cmake", "-B", directory],
        check=True, stdout=subprocess.DEVNULL, timeout=120,
    )
    return {each.name.partition("_")[0]: each for each in directory.glob("*.deb")}


@pytest.fixture(scope="module")
def root(tmp_path_factory):
    return make_root(tmp_path_factory.mktemp("root"))


@pytest.fixture(scope="module")
def shell(root):
    """Somebody's shell on the machine of that root."""
    opened = root.shell()
    yield opened
    opened.close()
