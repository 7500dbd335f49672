#!/usr/bin/env bash
# Checks that libvireline.so keeps the ABI of its architecture's baseline in
# abi/, so that applications already on devices keep working after an update.
#
#   scripts/check-abi.sh [--arch x86_64|armhf]    build the library with debug
#                                                 information and compare it
#   scripts/check-abi.sh --update [--arch ...]    write the baseline anew (after
#                                                 a SONAME bump or an addition)
#   scripts/check-abi.sh [--arch ...] --lib LIB   compare a library already built
#                                                 with debug information (CI
#                                                 reuses its test builds)
#   scripts/check-abi.sh --compare BASELINE LIB   compare one library with one
#                                                 baseline (used by its test)
#   scripts/check-abi.sh --dump LIB OUT           write a library's ABI to OUT
#
# An incompatible change (a removed or changed exported function, a changed
# public type) fails the check unless the SONAME differs from the baseline's;
# a compatible change (an added function) passes and is listed.
# Exit status: 0 compatible, 1 incompatible without a SONAME bump, 2 usage or
# tool failure.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"

die() { echo "check-abi: $*" >&2; exit 2; }
need() { command -v "$1" >/dev/null || die "$1 not found (Debian package abigail-tools)"; }

dump() {
  local lib=$1 out=$2 headers=${3-}
  need abidw
  local options=(--no-corpus-path --no-show-locs)
  [ -n "$headers" ] && options+=(--headers-dir "$headers")
  abidw "${options[@]}" --out-file "$out" "$lib" || die "abidw failed on $lib"
}

baseline_soname() { grep -o -m1 "soname='[^']*'" "$1" | sed "s/soname='\(.*\)'/\1/"; }
library_soname() { readelf -d "$1" | sed -n 's/.*Library soname: \[\(.*\)\]/\1/p'; }

compare() {
  local baseline=$1 lib=$2 headers=${3-}
  [ -f "$baseline" ] || die "no baseline $baseline (make one with --update)"
  [ -f "$lib" ] || die "no library $lib"
  need abidiff
  local current report status
  current=$(mktemp); report=$(mktemp)
  trap 'rm -f "$current" "$report"' RETURN
  dump "$lib" "$current" "$headers"
  set +e
  abidiff --no-show-locs "$baseline" "$current" >"$report" 2>&1
  status=$?
  set -e
  local old_soname new_soname
  old_soname=$(baseline_soname "$baseline"); new_soname=$(library_soname "$lib")
  if (( status & 3 )); then cat "$report" >&2; die "abidiff failed (status $status)"; fi
  if (( status & 8 )); then
    cat "$report"
    if [ "$old_soname" != "$new_soname" ]; then
      echo "check-abi: incompatible change with the SONAME bumped ($old_soname -> $new_soname): update the baseline"
      return 0
    fi
    echo "check-abi: INCOMPATIBLE ABI change in $lib against $baseline without a SONAME bump (still $new_soname)" >&2
    return 1
  fi
  if (( status & 4 )); then
    cat "$report"
    echo "check-abi: compatible ABI change against $baseline ($new_soname)"
    return 0
  fi
  echo "check-abi: $lib has the ABI of $baseline ($new_soname)"
}

build_library() {
  local arch=$1 dir=$root/build/abi-$1 options=()
  [ "$arch" = armhf ] && options+=(--toolchain "$root/cmake/toolchains/armhf.cmake")
  cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVIRELINE_BUILD_TESTS=OFF \
    -DVIRELINE_BUILD_TOOLS=OFF -DVIRELINE_BUILD_BENCH=OFF "${options[@]}" >/dev/null
  cmake --build "$dir" --target vireline -j"$(nproc)" >/dev/null
  echo "$dir/libvireline.so"
}

mode=check arch=x86_64 prebuilt=""
while [ $# -gt 0 ]; do
  case "$1" in
    --arch) arch=${2:?}; shift 2 ;;
    --update) mode=update; shift ;;
    --lib) prebuilt=${2:?}; shift 2 ;;
    --compare) [ $# -eq 3 ] || die "usage: --compare BASELINE LIB"; compare "$2" "$3"; exit ;;
    --dump) [ $# -eq 3 ] || die "usage: --dump LIB OUT"; dump "$2" "$3"; exit ;;
    *) die "unknown argument $1" ;;
  esac
done
case "$arch" in x86_64|armhf) ;; *) die "unknown architecture $arch" ;; esac
if [ -n "$prebuilt" ]; then
  [ -f "$prebuilt" ] || die "no library $prebuilt"
  lib=$prebuilt
else
  lib=$(build_library "$arch")
fi
if [ "$mode" = update ]; then
  dump "$lib" "$root/abi/$arch.abi" "$root/include/vireline"
  echo "check-abi: wrote abi/$arch.abi ($(library_soname "$lib"))"
else
  compare "$root/abi/$arch.abi" "$lib" "$root/include/vireline"
fi
