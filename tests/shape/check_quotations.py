#!/usr/bin/env python3
"""Checks that the code a document shows is that of the files it was taken from.

Every block of C++ or CMake in the document has to stand, as it is, in one of the files.
"""

import argparse
import pathlib
import re
import sys

BLOCK = re.compile(r"^```(?:cpp|cmake)\n(.*?)^```$", re.DOTALL | re.MULTILINE)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("document", type=pathlib.Path)
    parser.add_argument("file", type=pathlib.Path, nargs="+")
    arguments = parser.parse_args()
    blocks = BLOCK.findall(arguments.document.read_text())
    files = [path.read_text() for path in arguments.file]
    strange = [block for block in blocks if not any(block in text for text in files)]
    for block in strange:
        print(f"{arguments.document}: in none of the files:\n{block}", file=sys.stderr)
    if not blocks:
        print(f"{arguments.document}: no code", file=sys.stderr)
    return 1 if strange or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
