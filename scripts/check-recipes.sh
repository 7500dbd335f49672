#!/usr/bin/env bash
# Checks the sample Yocto recipe and Buildroot package without BitBake or a
# Buildroot tree: their syntax, that every variable is one the build system
# knows, and that every dependency names a package (and Kconfig symbol) that
# exists there. The names were settled against Buildroot's and
# OpenEmbedded's own package trees; the lists below are those names.
set -euo pipefail
cd "$(dirname "$0")/../packaging"
failures=0
fail() { echo "check-recipes: $*" >&2; failures=$((failures + 1)); }

# --- Buildroot -------------------------------------------------------------
br=buildroot/vireline
# Buildroot packages (package/<name>/) and their Kconfig symbols.
declare -A br_packages=(
  [host-pkgconf]=BR2_PACKAGE_HOST_PKGCONF [glibmm2_66]=BR2_PACKAGE_GLIBMM2_66
  [jsoncpp]=BR2_PACKAGE_JSONCPP [zlib]=BR2_PACKAGE_ZLIB [boost]=BR2_PACKAGE_BOOST
  [cli11]=BR2_PACKAGE_CLI11)
known_br_variables="VERSION SITE SITE_METHOD SOURCE LICENSE LICENSE_FILES INSTALL_STAGING INSTALL_TARGET
  DEPENDENCIES CONF_OPTS CONF_ENV SUPPORTS_IN_SOURCE_BUILD CMAKE_BACKEND"
known_br_variables=$(echo $known_br_variables)

# The .mk file parses as make syntax, with Buildroot's package macro stubbed.
make -s -f - BR2_EXTERNAL_VIRELINE_PATH=/br2-external print-variables >"${TMPDIR:-/tmp}/br-vars.$$" <<MAKE || fail "$br/vireline.mk does not parse"
cmake-package =
include $br/vireline.mk
print-variables:
	@echo DEPENDENCIES=\$(VIRELINE_DEPENDENCIES)
MAKE
dependencies=$(sed -n 's/^DEPENDENCIES=//p' "${TMPDIR:-/tmp}/br-vars.$$"); rm -f "${TMPDIR:-/tmp}/br-vars.$$"
[ -n "$dependencies" ] || fail "$br/vireline.mk: no dependencies read"
for dependency in $dependencies; do
  [ -n "${br_packages[$dependency]+set}" ] || fail "$br/vireline.mk: unknown Buildroot package '$dependency'"
done
while read -r variable; do
  suffix=${variable#VIRELINE_}
  [[ " $known_br_variables " == *" $suffix "* ]] || fail "$br/vireline.mk: unknown variable $variable"
done < <(grep -oE '^VIRELINE_[A-Z_]+' "$br/vireline.mk" | sort -u)
grep -qx '\$(eval \$(cmake-package))' "$br/vireline.mk" || fail "$br/vireline.mk: no \$(eval \$(cmake-package))"
# Every selected symbol is a package the .mk file depends on (or our own option's).
for symbol in $(sed -n 's/^\s*select \(BR2_PACKAGE_[A-Z0-9_]*\).*/\1/p' "$br/Config.in"); do
  found=0
  for package in "${!br_packages[@]}"; do [ "${br_packages[$package]}" = "$symbol" ] && found=1; done
  [ $found -eq 1 ] || fail "$br/Config.in: selects unknown symbol $symbol"
done
# Kconfig syntax: every line is a known keyword, a help text or blank.
awk -v file="$br/Config.in" '
  /^\t  / || /^[ \t]*$/ || /^[ \t]*#/ { next }
  /^(config|comment|if|endif|menu|endmenu|source)( |$)/ { next }
  /^\t(bool|tristate|string|int|depends on|select|default|help|imply)( |$)/ { next }
  /^\t\t/ { next }
  { print file ": line " NR " is not Kconfig: " $0; bad = 1 }
  END { exit bad }' "$br/Config.in" || fail "$br/Config.in: syntax"
[ "$(grep -c '^if ' "$br/Config.in")" = "$(grep -c '^endif' "$br/Config.in")" ] || fail "$br/Config.in: if/endif do not pair"

# --- Yocto -----------------------------------------------------------------
bb=yocto/vireline_0.1.0.bb
known_bb_variables="SUMMARY DESCRIPTION LICENSE LIC_FILES_CHKSUM SRC_URI SRCREV PV S B DEPENDS RDEPENDS
  EXTRA_OECMAKE PACKAGECONFIG PACKAGES FILES VIRELINE_GIT_URI"
known_bb_variables=$(echo $known_bb_variables)
# OpenEmbedded recipes (oe-core and meta-oe) the recipe depends on.
known_bb_recipes="glibmm jsoncpp zlib boost cli11 googletest"
in_function=0
while IFS= read -r line; do
  case "$line" in
    *"() {") in_function=1; continue ;;
    "}") in_function=0; continue ;;
  esac
  [ $in_function -eq 1 ] && continue
  [[ "$line" =~ ^[[:space:]]*(#|$) ]] && continue
  [[ "$line" =~ ^inherit[[:space:]] ]] && continue
  [[ "$line" =~ ^[[:space:]] ]] && continue   # continuation of the value above
  if [[ "$line" =~ ^([A-Z_]+)(\[[a-z]+\])?(:[A-Za-z0-9_\$\{\}-]+)?[[:space:]]*(\?\?=|\?=|\+=|=\+|\.=|=)[[:space:]]*\" ]]; then
    name=${BASH_REMATCH[1]}
    [[ " $known_bb_variables " == *" $name "* ]] || fail "$bb: unknown variable $name"
  else
    fail "$bb: not BitBake syntax: $line"
  fi
done <"$bb"
grep -q '^inherit cmake pkgconfig ptest$' "$bb" || fail "$bb: must inherit cmake pkgconfig ptest"
for recipe in $(sed -n 's/^DEPENDS = "\(.*\)"/\1/p' "$bb"); do
  [[ " $known_bb_recipes " == *" $recipe "* ]] || fail "$bb: unknown recipe $recipe"
done
run_ptest=yocto/files/run-ptest
[ -x "$run_ptest" ] || fail "$run_ptest: missing or not executable"
sh -n "$run_ptest" || fail "$run_ptest: shell syntax"
grep -q 'PASS: ' "$run_ptest" && grep -q 'FAIL: ' "$run_ptest" || fail "$run_ptest: no PASS:/FAIL: lines"

[ $failures -eq 0 ] || { echo "check-recipes: $failures problem(s)" >&2; exit 1; }
echo "check-recipes: the Buildroot package and the Yocto recipe check out"
