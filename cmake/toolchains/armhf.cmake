# Cross-building for the devices' 32-bit ARM processor with Debian's
# arm-linux-gnueabihf toolchain and the multiarch armhf development packages
# (scripts/install-armhf-deps.sh installs both).
#
#   cmake -S . -B build-armhf --toolchain cmake/toolchains/armhf.cmake
#
# Programs built here run on the build machine under qemu-arm: CTest and test
# discovery go through CMAKE_CROSSCOMPILING_EMULATOR.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(VIRELINE_TARGET_TRIPLET arm-linux-gnueabihf)
set(CMAKE_C_COMPILER ${VIRELINE_TARGET_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${VIRELINE_TARGET_TRIPLET}-g++)
# Debian keeps the target's libraries and CMake packages in the multiarch
# folders (/usr/lib/arm-linux-gnueabihf); the architecture-independent headers
# (Boost, CLI11) are shared with the build machine under /usr/include.
set(CMAKE_LIBRARY_ARCHITECTURE ${VIRELINE_TARGET_TRIPLET})

# pkg-config must describe the target's libraries, never the build machine's.
set(ENV{PKG_CONFIG_LIBDIR} "/usr/lib/${VIRELINE_TARGET_TRIPLET}/pkgconfig:/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "")

# The dynamic loader and C library of the cross toolchain; the other armhf
# libraries are found in their multiarch folders.
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-arm;-L;/usr/${VIRELINE_TARGET_TRIPLET}")
