# Cross build for Linux on AArch64, run by user emulation. `./dev aarch64` lays down the libraries of that architecture in
# build/aarch64-sysroot; C and C++ come with the cross compiler.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/aarch64-linux-gnu)

# Nothing of the building machine may be found: neither its libraries nor its headers.
get_filename_component(KIRO_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/aarch64-sysroot ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${KIRO_SYSROOT} /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Some headers differ with the architecture, and the compiler looks for them in its own folders alone.
add_compile_options("SHELL:-isystem ${KIRO_SYSROOT}/usr/include/${CMAKE_LIBRARY_ARCHITECTURE}")

# Libraries of those libraries lie in these folders; a linker's older kind of run path finds them there, too.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--disable-new-dtags")
foreach(folder usr/lib lib)
    set(KIRO_SYSROOT_LIBRARIES ${KIRO_SYSROOT}/${folder}/${CMAKE_LIBRARY_ARCHITECTURE})
    string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT
           " -Wl,-rpath,${KIRO_SYSROOT_LIBRARIES} -Wl,-rpath-link,${KIRO_SYSROOT_LIBRARIES}")
endforeach()
