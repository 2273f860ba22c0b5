# PowerPC: 32 bits, big-endian, as on the chassis manager.
# Debian: g++-powerpc-linux-gnu, qemu-user.
set(triplet powerpc-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
set(CMAKE_SYSTEM_PROCESSOR ppc)
# Constants that stand together need one address from the table of addresses, not one each.
set(CMAKE_CXX_FLAGS_MINSIZEREL_INIT "-fsection-anchors -fno-merge-constants")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc -L /usr/${triplet})
