#!/usr/bin/python3
"""Holds the built library to its shape.

The shared library needs libc alone, exports what the public header declares, all of it and no
more, and leaves undefined only the platform's functions and libc's. The static library defines
the same names and leaves the same ones undefined.
"""

import argparse
import re
import subprocess
import sys
from pathlib import Path

from declarations import declared_names

# The system's libc and, where an architecture names it, the loader.
ALLOWED_LIBRARIES = re.compile(r"libc\.so\.\d+|ld(64)?(-linux[\w-]*)?\.so\.\d+")

# What the linker itself provides.
LINKER_SYMBOLS = {"_GLOBAL_OFFSET_TABLE_"}


def main():
    args = parse_arguments()
    public = declared_names(args.compiler, args.header, [args.header.parent])
    platform = set()
    for header in args.platform_header:
        platform |= declared_names(args.compiler, header, [args.header.parent])
    if not public or not platform:
        sys.exit("no declarations found in the headers")

    complaints = []
    check = check_shared if args.shared else check_static
    check(args, public, platform, complaints)
    for complaint in complaints:
        print(complaint)
    if complaints:
        sys.exit(1)
    print(f"{len(public)} public names, {len(platform)} of the platform: as they should be")


def check_shared(args, public, platform, complaints):
    for library in needed_libraries(args):
        if not ALLOWED_LIBRARIES.fullmatch(library):
            complaints.append(f"needs {library}")

    symbols = dynamic_symbols(args)
    compare(public, {name for name, defined, _ in symbols if defined}, complaints)
    for name, defined, version in symbols:
        if defined or name in platform:
            continue
        if not version.startswith("GLIBC_"):
            complaints.append(f"undefined and not of the platform or libc: {name}@{version}")


def check_static(args, public, platform, complaints):
    symbols = archive_symbols(args.nm, args.static)
    defined = {name for name, letter in symbols if letter.isupper() and letter not in "UWV"}
    weak = {name for name, letter in symbols if letter in "WV"}
    undefined = {name for name, letter in symbols if letter in "Uwv"} - defined - weak
    compare(public, {name for name in defined if not is_internal(name)}, complaints)

    libc = {name for name, _ in run_nm(args.nm, "-D", "--defined-only", library_file(args, "libc.so.6"))}
    runtime = {name for name, _ in archive_symbols(args.nm, library_file(args, "libgcc.a"))}
    for name in sorted(undefined - platform - libc - runtime - LINKER_SYMBOLS):
        complaints.append(f"undefined and not of the platform or libc: {name}")


def compare(declared, defined, complaints):
    for name in sorted(declared - defined):
        complaints.append(f"declared and not exported: {name}")
    for name in sorted(defined - declared):
        complaints.append(f"exported and not declared: {name}")


def is_internal(name):
    """C++ names of the library's own namespace, and the compiler's helpers, in a static library."""
    return name.startswith(("_ZN3ruk", "_ZNK3ruk", "__x86.get_pc_thunk", "DW.ref."))


def needed_libraries(args):
    output = run(args.readelf, "-d", "-W", args.shared)
    return re.findall(r"\(NEEDED\).*\[(.*)\]", output)


def dynamic_symbols(args):
    """(name, is it defined, version) of every symbol of the shared library."""
    symbols = set()
    for line in run(args.readelf, "--dyn-syms", "-W", args.shared).splitlines():
        fields = line.split()
        if len(fields) < 8 or fields[4] not in ("GLOBAL", "WEAK"):
            continue
        name, _, version = fields[7].partition("@")
        symbols.add((name, fields[6] != "UND", version.lstrip("@")))
    return symbols


def archive_symbols(nm, archive):
    return run_nm(nm, "-g", archive)


def run_nm(nm, *options):
    """(name, letter) of every symbol; versions are cut off."""
    lines = run(nm, *options).splitlines()
    matches = filter(None, (re.match(r"[0-9a-f ]*\b([A-Za-z]) (\S+)$", line) for line in lines))
    return {(match.group(2).partition("@")[0], match.group(1)) for match in matches}


def library_file(args, name):
    path = run(*args.compiler, f"-print-file-name={name}").strip()
    if not Path(path).is_absolute():
        sys.exit(f"the compiler knows no {name}")
    return path


def run(*command):
    return subprocess.run(list(map(str, command)), check=True, capture_output=True, text=True).stdout


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--compiler", required=True, type=str.split, help="C compiler, with options")
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("--header", required=True, type=Path, help="the public header")
    parser.add_argument("--platform-header", required=True, nargs="+", type=Path)
    library = parser.add_mutually_exclusive_group(required=True)
    library.add_argument("--shared", type=Path)
    library.add_argument("--static", type=Path)
    return parser.parse_args()


if __name__ == "__main__":
    main()
