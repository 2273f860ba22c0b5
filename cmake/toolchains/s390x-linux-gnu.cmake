# IBM Z: 64 bits, big-endian.
# Debian: g++-s390x-linux-gnu, qemu-user.
set(triplet s390x-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x -L /usr/${triplet})
