#!/usr/bin/python3
"""Compiles every header alone, and twice in a row, as C11 and as C++17, without a warning."""

import argparse
import shutil
import subprocess
import sys
from pathlib import Path

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Wundef", "-Werror"]
LANGUAGES = {"c": [*WARNINGS, "-Wstrict-prototypes"], "c++": [*WARNINGS, "-Wold-style-cast"]}
STANDARDS = {"c": "c11", "c++": "c++17"}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--compiler", required=True, action="append", dest="compilers",
                        help="of C and C++; those that are not installed are left out")
    parser.add_argument("--include-dir", required=True, action="append", dest="directories",
                        type=Path, help="all headers below it are compiled")
    args = parser.parse_args()

    compilers = [compiler for compiler in args.compilers if shutil.which(compiler)]
    headers = [(directory, header.relative_to(directory))
               for directory in args.directories for header in sorted(directory.rglob("*.h"))]
    if not compilers or not headers:
        sys.exit("no compiler or no header")

    failures = [failure for compiler in compilers for language in LANGUAGES
                for _, header in headers
                if (failure := failure_of(compiler, language, header, args.directories))]
    print("\n".join(failures) or f"{len(headers)} headers, {', '.join(compilers)}: no warning")
    sys.exit(bool(failures))


def failure_of(compiler, language, header, directories):
    """What the compiler said, None when it had nothing to say."""
    command = [compiler, "-x", language, f"-std={STANDARDS[language]}", *LANGUAGES[language],
               *[f"-I{directory}" for directory in directories], "-fsyntax-only", "-"]
    source = f'#include "{header}"\n' * 2 + "extern int nothing_else;\n"
    done = subprocess.run(command, input=source, capture_output=True, text=True)
    return None if done.returncode == 0 and not done.stderr else f"{command}\n{done.stderr}"


if __name__ == "__main__":
    main()
