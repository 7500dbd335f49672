#!/usr/bin/env bash
# Builds the Debian packages (libvireline0, libvireline-dev, vireline-tools)
# from this checkout, natively and cross for the devices' armhf, checks them
# with lintian, and builds a client against the unpacked native packages.
#
#   scripts/build-debs.sh [--arch native|armhf|all] [--nocheck] [--update-symbols]
#
# The packages land in build/debian/<arch>/. --nocheck skips the test suite
# inside the native package build (CI has run it already); cross builds never
# run it. When the package mirror refuses the armhf packages, the armhf build
# is reported as SKIPPED, as in scripts/test-armhf.sh. --update-symbols writes
# debian/libvireline0.symbols.<arch> anew from the library just built (after
# an intended ABI change; commit the result).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"

arches=all profiles=() update_symbols=0
while [ $# -gt 0 ]; do
  case "$1" in
    --arch) arches=${2:?}; shift 2 ;;
    --nocheck) profiles+=(nocheck); shift ;;
    --update-symbols) update_symbols=1; shift ;;
    *) echo "build-debs: unknown argument $1" >&2; exit 2 ;;
  esac
done

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
install_tools() {
  local missing=()
  for package in dpkg-dev debhelper fakeroot lintian "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing: ${missing[*]}" >&2
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >&2
}

version=$(dpkg-parsechangelog -S Version)

# The symbols file of the libvireline0 package in OUT, from its exports.
update_symbols_file() {
  local out=$1 deb arch unpacked
  deb=$(ls "$out"/libvireline0_*.deb)
  arch=$(dpkg-deb -f "$deb" Architecture)
  unpacked=$out/symbols-root
  rm -rf "$unpacked"; dpkg-deb -x "$deb" "$unpacked"
  dpkg-gensymbols -q -plibvireline0 -P"$unpacked" -a"$arch" -v"$version" -c0 \
    -O"$root/debian/libvireline0.symbols.$arch" || true
  sed -i 's/ '"$version"'-[^ ]*$/ '"$version"'/' "$root/debian/libvireline0.symbols.$arch"
  rm -rf "$unpacked"
  echo "build-debs: wrote debian/libvireline0.symbols.$arch"
}

# One package build in a copy of the tracked files, so the checkout stays clean.
build() {  # ARCH-LABEL DPKG-OPTIONS...
  local label=$1; shift
  local out=$root/build/debian/$label src
  rm -rf "$out"; mkdir -p "$out"
  src=$out/vireline-$version
  mkdir -p "$src"
  git ls-files -z --cached --others --exclude-standard | tar --null -T - -cf - | tar -xf - -C "$src"
  local build_profiles=("${profiles[@]}")
  (cd "$src" && DEB_BUILD_OPTIONS="${build_profiles[*]} parallel=$(nproc)" \
     dpkg-buildpackage -us -uc -b "$@")
  rm -rf "$src"
  [ "$update_symbols" -eq 1 ] && update_symbols_file "$out"
  lintian --fail-on error "$out"/*.changes
  echo "build-debs: $label packages in $out:"
  ls "$out"/*.deb
}

native() {
  ./scripts/install-deps.sh
  install_tools
  build native
  local unpacked=$root/build/debian/native/unpacked
  rm -rf "$unpacked"
  for deb in "$root"/build/debian/native/*.deb; do dpkg-deb -x "$deb" "$unpacked"; done
  tests/install/check-installed-client.sh --prefix="$unpacked/usr" "$root/build/debian/native/client"
}

armhf() {
  local status=0
  ./scripts/install-armhf-deps.sh || status=$?
  if [ "$status" -eq 3 ]; then echo "build-debs: SKIPPED the armhf packages: the package mirror refused them"; return; fi
  [ "$status" -eq 0 ] || exit "$status"
  install_tools qemu-user libboost-dev:armhf
  profiles+=(cross nocheck)
  DEB_BUILD_PROFILES="cross nocheck" build armhf -aarmhf -Pcross,nocheck
}

case "$arches" in
  native) native ;;
  armhf) armhf ;;
  all) native; armhf ;;
  *) echo "build-debs: unknown architecture $arches" >&2; exit 2 ;;
esac
