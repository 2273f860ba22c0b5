#!/usr/bin/python3
"""Every function that the library exports is called while calls of its platform fail."""

import argparse
import pathlib
import re
import sys

from declarations import declared_names

DATA = {"event_action"}


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--compiler", required=True)
    options.add_argument("--header", type=pathlib.Path, required=True)
    options.add_argument("tests", nargs="+", type=pathlib.Path, help="where the calls stand")
    chosen = options.parse_args()

    exported = declared_names([chosen.compiler], chosen.header, [chosen.header.parent]) - DATA
    called = set()
    for each in chosen.tests:
        called.update(re.findall(r"\w+", each.read_text()))
    missing = sorted(exported - called)
    if not exported or missing:
        sys.exit("never called while calls of the platform fail: " + ", ".join(missing))
    print(f"{len(exported)} names")


main()
