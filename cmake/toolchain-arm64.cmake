# Cross build for 64-bit Arm with Debian's multiarch packages (make cross-test ARCH=arm64): the
# cross compiler, the arm64 Qt, libplist and libsane, and the machine's own Qt host tools (moc,
# uic, lrelease). Programs and tests run under qemu's user-mode emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)

# Qt's tools are the build machine's.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)

# pkg-config reads the arm64 packages' files only.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)
set(ENV{PKG_CONFIG_PATH} "")

# The arm64 C library's loader is installed in the machine's own root (libc6:arm64).
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
