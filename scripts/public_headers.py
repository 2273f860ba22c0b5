"""How the public headers are written, for the scripts that read them."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[1]
HEADERS = sorted((ROOT / "include/ruk_ipmi").glob("*.h"))

# A comment and the declarations that it is for.
DOCUMENTED = re.compile(
    r"/\*\*((?:(?!\*/).)*)\*/\s*((?:RUK_IPMI_API [^;{]*;\s*)+)", re.DOTALL
)


def plain(comment):
    """The text of a comment in one line."""
    lines = (line.strip().removeprefix("*") for line in comment.split("\n"))
    return " ".join(" ".join(lines).split())
