# Sample BitBake recipe for a Yocto layer of the device firmware. It builds
# vireline with the layer's cross toolchain through CMake and installs its
# CMake package and pkg-config file into the target sysroot, so an application
# recipe only needs:
#
#   DEPENDS += "vireline"
#   inherit cmake pkgconfig
#
# and, in the application's CMakeLists.txt:
#
#   find_package(vireline 0.1 REQUIRED)
#   target_link_libraries(app PRIVATE vireline::vireline)
SUMMARY = "Persistent data of the learning devices: packages, settings, profiles, play logs, manufacturing data"
LICENSE = "CLOSED"

# Point VIRELINE_GIT_URI at the firmware team's copy of the repository, e.g.
# in local.conf or the distro configuration.
VIRELINE_GIT_URI ?= "git://git.invalid/vireline.git;protocol=https"
SRC_URI = "${VIRELINE_GIT_URI};branch=main \
           file://run-ptest"
SRCREV = "${AUTOREV}"
PV = "0.1.0+git${SRCPV}"
S = "${WORKDIR}/git"

# glibmm and jsoncpp come from meta-oe; boost (headers only) and zlib from oe-core.
DEPENDS = "glibmm jsoncpp zlib boost"

inherit cmake pkgconfig ptest

# With ptest the unit tests are built and installed; their list is read when
# they run on the device, not at build time (no emulator needed).
EXTRA_OECMAKE = "-DVIRELINE_BUILD_BENCH=OFF \
                 -DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST \
                 ${@bb.utils.contains('PTEST_ENABLED', '1', '-DVIRELINE_BUILD_TESTS=ON', '-DVIRELINE_BUILD_TESTS=OFF', d)}"
DEPENDS += "${@bb.utils.contains('PTEST_ENABLED', '1', 'googletest', '', d)}"
RDEPENDS:${PN}-ptest += "${PN}-inspector"

# The test program and the sample device image the inspector's tests copy.
do_install_ptest() {
    install -m 0755 ${B}/tests/vireline_tests ${D}${PTEST_PATH}/
    cp -R --no-dereference --preserve=mode,links ${S}/examples ${D}${PTEST_PATH}/
}

# The `vireline` inspector, for firmware and QA engineers on the device.
PACKAGECONFIG ??= "inspector"
PACKAGECONFIG[inspector] = "-DVIRELINE_BUILD_TOOLS=ON,-DVIRELINE_BUILD_TOOLS=OFF,cli11"

PACKAGES =+ "${PN}-inspector"
FILES:${PN}-inspector = "${bindir}/vireline ${datadir}/bash-completion"
# The headers, libvireline.so, vireline.pc and lib/cmake/vireline go to
# ${PN}-dev by the default file lists.
