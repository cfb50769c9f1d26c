# 32-bit ARM with the standard library that phones have. The C library is the cross compiler's; libc++ and the header-only
# libraries are Debian's, unpacked by cmake/armhf-packages into ZQAFT_ARMHF_ROOT.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(ZQAFT_ARMHF_ROOT "${CMAKE_CURRENT_LIST_DIR}/../build/armhf-packages" CACHE PATH "Where the armhf packages are unpacked")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZQAFT_ARMHF_ROOT)
get_filename_component(root ${ZQAFT_ARMHF_ROOT} ABSOLUTE)

set(CMAKE_C_COMPILER clang-14)
set(CMAKE_CXX_COMPILER clang++-14)
set(CMAKE_C_COMPILER_TARGET arm-linux-gnueabihf)
set(CMAKE_CXX_COMPILER_TARGET arm-linux-gnueabihf)
set(CMAKE_C_FLAGS_INIT "-march=armv7-a")
set(CMAKE_CXX_FLAGS_INIT "-march=armv7-a")
add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-nostdinc++ -isystem ${root}/usr/lib/llvm-14/include/c++/v1>")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
    "-fuse-ld=lld -nostdlib++ -L${root}/usr/lib/arm-linux-gnueabihf -Wl,-rpath,${root}/usr/lib/arm-linux-gnueabihf")
endforeach()
set(CMAKE_CXX_STANDARD_LIBRARIES "-lc++ -lc++abi")

set(CMAKE_FIND_ROOT_PATH ${root}/usr /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L /usr/arm-linux-gnueabihf)
