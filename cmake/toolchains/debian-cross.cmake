# What the cross toolchains of Debian have in common; `triplet` names the one. Each has its own
# compilers and binutils, and its libraries under /usr/<triplet>.

include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
