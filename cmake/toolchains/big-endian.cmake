# Any big-endian Linux target, with its own GNU cross tools. What they are is said with -D, or in
# the environment when a build directory is configured for the first time:
#
#   RUK_TARGET_TRIPLET   the tools' common prefix, e.g. mips-linux-gnu, or with the directory that
#                        they are in, /opt/sdk/bin/powerpc-buildroot-linux-gnu
#   RUK_TARGET_SYSROOT   where the target's headers and libraries are; else where the compiler says
#   RUK_TARGET_FLAGS     compiler flags, e.g. "-mcpu=e300c3"
#   RUK_TARGET_EMULATOR  a command that runs a program of the target's, e.g.
#                        "qemu-mips -L /usr/mips-linux-gnu"; else ctest runs no such program

foreach(part IN ITEMS TRIPLET SYSROOT FLAGS EMULATOR)
    set(RUK_TARGET_${part} "$ENV{RUK_TARGET_${part}}" CACHE STRING "See cmake/toolchains/big-endian.cmake")
    list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES RUK_TARGET_${part})
endforeach()

if(NOT RUK_TARGET_TRIPLET)
    message(FATAL_ERROR "RUK_TARGET_TRIPLET is not set: the prefix of the cross tools, as in "
        "-DRUK_TARGET_TRIPLET=mips-linux-gnu for mips-linux-gnu-g++")
endif()
set(triplet ${RUK_TARGET_TRIPLET})
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
cmake_path(GET triplet FILENAME tools)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR ${tools})

foreach(compiler IN ITEMS ${CMAKE_C_COMPILER} ${CMAKE_CXX_COMPILER})
    find_program(found_${compiler} ${compiler} NO_CACHE)
    if(NOT found_${compiler})
        message(FATAL_ERROR "RUK_TARGET_TRIPLET is ${triplet}, but there is no ${compiler}")
    endif()
endforeach()

if(RUK_TARGET_SYSROOT)
    if(NOT IS_DIRECTORY ${RUK_TARGET_SYSROOT})
        message(FATAL_ERROR "RUK_TARGET_SYSROOT is no directory: ${RUK_TARGET_SYSROOT}")
    endif()
    set(CMAKE_SYSROOT ${RUK_TARGET_SYSROOT})
endif()

set(CMAKE_C_FLAGS_INIT "${RUK_TARGET_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${RUK_TARGET_FLAGS}")

if(RUK_TARGET_EMULATOR)
    separate_arguments(emulator UNIX_COMMAND "${RUK_TARGET_EMULATOR}")
    list(POP_FRONT emulator program)
    find_program(found_emulator ${program} NO_CACHE)
    if(NOT found_emulator)
        message(FATAL_ERROR "RUK_TARGET_EMULATOR begins with a program that is not there: ${program}")
    endif()
    set(CMAKE_CROSSCOMPILING_EMULATOR ${found_emulator} ${emulator})
endif()

# Whether the compiler keeps the promise of this file's name is known once it was tried.
set(CMAKE_PROJECT_ruk_ipmi_INCLUDE ${CMAKE_CURRENT_LIST_DIR}/require-big-endian.cmake)
