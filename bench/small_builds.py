"""The library alone, built for size: what is measured of it without being run."""

import functools
import subprocess

import measure

TRIPLET = "powerpc-linux-gnu"  # of the chassis manager


def built(name, *options):
    """Builds it and returns the directory, where a library of nothing is built beside it."""
    directory = measure.BUILD.with_name(f"{measure.BUILD.name}-{name}")
    directory.mkdir(parents=True, exist_ok=True)
    configure = ["cmake", "-S", measure.ROOT, "-B", directory, "-G", "Ninja", *options]
    configure += ["-DCMAKE_BUILD_TYPE=MinSizeRel", "-DRUK_IPMI_HOST=OFF", "-DBUILD_TESTING=OFF"]
    configure += ["-DRUK_IPMI_BENCH=ON"]
    with (directory / "build.log").open("w") as told:
        for command in configure, ["cmake", "--build", directory]:
            subprocess.run(command, check=True, stdout=told, stderr=told)
    return directory


@functools.cache
def for_powerpc():
    """With the compiler's own report of each function's stack and calls, which changes no code."""
    toolchain = measure.ROOT / f"cmake/toolchains/{TRIPLET}.cmake"
    return built(
        "powerpc", f"-DCMAKE_TOOLCHAIN_FILE={toolchain}", "-DCMAKE_CXX_FLAGS=-fcallgraph-info=su"
    )


@functools.cache
def for_this_machine():
    return built("small")
