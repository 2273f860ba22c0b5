"""The tool's commands as its own help tells them."""

import functools
import os
import pathlib
import re
import subprocess

PROGRAM = pathlib.Path(os.environ["RUK_BUILD_DIR"]) / "bin/ruk-ipmi"


def section(text, title):
    """What stands in the left column below a title."""
    found = re.search(rf"^{title}:\n((?:  .*\n)+)", text, re.MULTILINE)
    return re.findall(r"^  (\S+)", found.group(1), re.MULTILINE) if found else []


@functools.cache
def all_commands(path=()):
    """Every path of words that is a command, and its help."""
    text = subprocess.check_output([PROGRAM, *path, "-h"], text=True, timeout=20)
    found = {path: text}
    for word in section(text, "Commands"):
        found.update(all_commands((*path, word)))
    return found
