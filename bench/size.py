"""How large the library is: text and data, for a file of a shared library is padded to the size
of the segments that it is mapped by."""

import pathlib
import subprocess
import sysconfig
import tempfile

import measure
import small_builds

LIMIT = 32 * 1024

DYNAMIC_LINKER = (".gnu.hash", ".dynsym", ".dynstr", ".gnu.version", ".gnu.version_r")
FILLED_IN = (".got", ".got2", ".plt", ".dynamic", ".data.rel.ro", ".init_array", ".fini_array")
PARTS = {
    "code": (".text", ".init", ".fini"),
    "names for the dynamic linker": DYNAMIC_LINKER,
    "relocations": (".rela.dyn", ".rela.plt"),
    "unwind tables": (".eh_frame", ".eh_frame_hdr"),
    "texts of the log, other constants": (".rodata",),
    "addresses that are filled in when it is loaded": FILLED_IN,
    "variables that do not begin as zeros": (".data",),
}
REST = "the rest"
ZEROS = (".bss", ".sbss")  # take memory, but no room in a file


def text_and_data(library, triplet=None):
    tools = f"{triplet}-" if triplet else ""
    with tempfile.NamedTemporaryFile() as stripped:
        subprocess.run([f"{tools}strip", "-o", stripped.name, library], check=True)
        told = subprocess.check_output([f"{tools}size", stripped.name], text=True)
    text, data = told.splitlines()[1].split()[:2]
    return int(text) + int(data)


def parts(library, triplet):
    """The bytes of each part; together they are text and data."""
    told = subprocess.check_output([f"{triplet}-size", "-A", library], text=True)
    sizes = dict.fromkeys([*PARTS, REST], 0)
    for line in told.splitlines()[2:]:
        match line.split():
            case [section, size, address] if address != "0" and section not in ZEROS:
                part = next((name for name in PARTS if section in PARTS[name]), REST)
                sizes[part] += int(size)
    return sizes


def profile():
    """What the library for powerpc consists of, as a text."""
    build = small_builds.for_powerpc()
    ours = parts(build / "libruk_ipmi.so", small_builds.TRIPLET)
    empty = parts(build / "bench/libempty.so", small_builds.TRIPLET)
    lines = [f"{'bytes, powerpc, -Os':48}{'library':>10}{'empty one':>12}"]
    lines += [f"{part:48}{ours[part]:10,}{empty[part]:12,}" for part in ours]
    lines += [f"{'text + data':48}{sum(ours.values()):10,}{sum(empty.values()):12,}"]
    return "\n".join(lines) + "\n"


def installed(name):
    return pathlib.Path("/usr/lib", sysconfig.get_config_var("MULTIARCH"), name)


def powerpc_row():
    build = small_builds.for_powerpc()
    ours = text_and_data(build / "libruk_ipmi.so", small_builds.TRIPLET)
    empty = text_and_data(build / "bench/libempty.so", small_builds.TRIPLET)
    return measure.Row(
        "text + data of the shared library, powerpc, -Os, bytes",
        f"{ours:,}",
        f"an empty C++ library: {empty:,}",
        f"{ours / LIMIT:.2f} of 32 KiB",
        "under 32 KiB",
        ours < LIMIT,
    )


def native_row(peer, file):
    ours = text_and_data(small_builds.for_this_machine() / "libruk_ipmi.so")
    theirs = text_and_data(installed(file))
    return measure.Row(
        "the same on this machine",
        f"{ours:,}",
        f"{peer}: {theirs:,}",
        f"{theirs / ours:.0f} x smaller",
    )


def rows():
    return [
        powerpc_row(),
        native_row("libOpenIPMI", "libOpenIPMI.so.0"),
        native_row("libfreeipmi", "libfreeipmi.so.17"),
    ]
