# Builds for arm64 on another machine: with Debian's cross compilers, and with Debian's packages for
# arm64, which can be installed beside those of the machine.
#
# With the Debian package qemu-user the programs run here, too.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(ENV{PKG_CONFIG_LIBDIR} "/usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig")

find_program(ORVANE_EMULATOR qemu-aarch64)
if(ORVANE_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${ORVANE_EMULATOR}")
endif()
