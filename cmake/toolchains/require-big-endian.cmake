# Said by big-endian.cmake to run once the compiler is known.

if(CMAKE_CXX_BYTE_ORDER STREQUAL LITTLE_ENDIAN)
    message(FATAL_ERROR "${CMAKE_CXX_COMPILER} ${CMAKE_CXX_FLAGS} compiles for a little-endian "
        "machine, and cmake/toolchains/big-endian.cmake is for others: check RUK_TARGET_TRIPLET "
        "and RUK_TARGET_FLAGS")
elseif(NOT CMAKE_CXX_BYTE_ORDER)
    message(WARNING "The byte order of ${CMAKE_CXX_COMPILER} cannot be told")
endif()
