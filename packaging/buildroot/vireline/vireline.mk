################################################################################
#
# vireline
#
# Sample package for a BR2_EXTERNAL tree of the device firmware. It builds
# vireline with Buildroot's cross toolchain through CMake; with
# VIRELINE_INSTALL_STAGING the CMake package and pkg-config file land in the
# staging sysroot, so a client package only adds "vireline" to its
# <PKG>_DEPENDENCIES and calls find_package(vireline) or
# pkg-config --cflags --libs vireline.
#
################################################################################

VIRELINE_VERSION = 0.1.0
# A checkout next to the Buildroot tree; override VIRELINE_OVERRIDE_SRCDIR or
# switch to SITE_METHOD git for release builds.
VIRELINE_SITE = $(BR2_EXTERNAL_VIRELINE_PATH)/../vireline
VIRELINE_SITE_METHOD = local
VIRELINE_LICENSE = PROPRIETARY
VIRELINE_INSTALL_STAGING = YES
VIRELINE_DEPENDENCIES = host-pkgconf glibmm2_66 jsoncpp zlib boost
VIRELINE_CONF_OPTS = -DVIRELINE_BUILD_TESTS=OFF -DVIRELINE_BUILD_BENCH=OFF

ifeq ($(BR2_PACKAGE_VIRELINE_INSPECTOR),y)
VIRELINE_DEPENDENCIES += cli11
VIRELINE_CONF_OPTS += -DVIRELINE_BUILD_TOOLS=ON
else
VIRELINE_CONF_OPTS += -DVIRELINE_BUILD_TOOLS=OFF
endif

$(eval $(cmake-package))
