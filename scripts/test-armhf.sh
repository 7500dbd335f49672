#!/usr/bin/env bash
# Builds the library, the inspector and the tests for the devices' 32-bit ARM
# processor (armhf) and runs every test under qemu-arm.
#
#   scripts/test-armhf.sh              plain build in build-armhf (what CI runs)
#   scripts/test-armhf.sh --sanitize   AddressSanitizer and UndefinedBehaviorSanitizer
#                                      build in build-armhf-asan (four to six times slower)
#
# When the package mirror refuses the armhf packages, the stage is reported as
# SKIPPED with the reason in its last lines and the script exits 0; any other
# failure, in installing, building or testing, fails it.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=build-armhf
options=(-DVIRELINE_WERROR=ON -DVIRELINE_BUILD_BENCH=OFF)
if [ "${1-}" = "--sanitize" ]; then
  dir=build-armhf-asan
  # ARM mode: UBSan takes the odd addresses of Thumb functions for misaligned
  # references. LeakSanitizer cannot run under qemu-user; test discovery at
  # build time runs the tests too, so the setting is needed from here on.
  options+=(-DVIRELINE_SANITIZE=ON -DCMAKE_CXX_FLAGS=-marm)
  export ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1
fi
jobs=$(nproc)

skipped() {
  echo
  echo "########################################################################"
  echo "## SKIPPED: armhf stage (32-bit ARM build and tests under qemu-arm)"
  echo "## reason: $1"
  echo "## Nothing was built or tested for armhf; the native stages decide this run."
  echo "########################################################################"
  exit 0
}

start=$SECONDS
install_log=$(mktemp)
trap 'rm -f "$install_log"' EXIT
set +e
./scripts/install-armhf-deps.sh 2>&1 | tee "$install_log"
status=${PIPESTATUS[0]}
set -e
if [ "$status" -eq 3 ]; then
  skipped "$(grep -m1 'the package mirror refused' "$install_log" | sed 's/^install-armhf-deps: //')"
elif [ "$status" -ne 0 ]; then
  echo "armhf stage FAILED: installing the armhf build dependencies failed (exit $status)" >&2
  exit "$status"
fi
echo "armhf: build dependencies ready after $((SECONDS - start)) s"

start=$SECONDS
cmake -S . -B "$dir" --toolchain cmake/toolchains/armhf.cmake "${options[@]}" >/dev/null
cmake --build "$dir" -j"$jobs"
echo "armhf: cross build took $((SECONDS - start)) s; running the tests under qemu-arm"
ctest --test-dir "$dir" -j"$jobs" --output-on-failure
