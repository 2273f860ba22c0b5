# x86: 32 bits, little-endian. An x86-64 machine runs it without an emulator; its loader finds the
# libraries, which are not where a native program looks for them.
# Debian: g++-i686-linux-gnu.
set(triplet i686-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CROSSCOMPILING_EMULATOR
    /usr/${triplet}/lib/ld-linux.so.2 --library-path /usr/${triplet}/lib)
