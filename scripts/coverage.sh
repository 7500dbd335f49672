#!/usr/bin/env bash
# Line and branch coverage of the library's own code by the whole suite.
#
#   scripts/coverage.sh [--check] [--from BUILD_DIR] [--html DIR]
#
# Without --from: builds build/coverage (unoptimised, instrumented), runs every
# test, then reports. With --from: reports on a tree that was configured with
# -DVIRELINE_COVERAGE=ON and whose tests have already run (CI uses the
# sanitizer build of scripts/test.sh, so coverage costs no extra build).
# Prints a summary, writes a per-file table to BUILD_DIR/summary.txt and an
# HTML report to DIR (default BUILD_DIR/html). Tests, tools, benchmarks and
# fuzz targets are not counted, only the library.
# --check fails when lines fall under 95% or branches under the floor in
# VIRELINE_BRANCH_FLOOR (default 90%).
set -euo pipefail
cd "$(dirname "$0")/.."

check=() dir="" html=""
while [ $# -gt 0 ]; do
  case "$1" in
    --check) check=(--fail-under-line 95 --fail-under-branch "${VIRELINE_BRANCH_FLOOR:-90}") ;;
    --from) dir=$2; shift ;;
    --html) html=$2; shift ;;
    *) echo "usage: scripts/coverage.sh [--check] [--from BUILD_DIR] [--html DIR]" >&2; exit 2 ;;
  esac
  shift
done
command -v gcovr >/dev/null || {
  sudo=""; [ "$(id -u)" -ne 0 ] && sudo="sudo"
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq gcovr >&2
}

if [ -z "$dir" ]; then
  dir=build/coverage
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=Debug -DVIRELINE_WERROR=ON -DVIRELINE_BUILD_BENCH=OFF \
    -DVIRELINE_BUILD_PYTHON=OFF -DVIRELINE_COVERAGE=ON >/dev/null
  cmake --build "$dir" -j"$(nproc)"
  find "$dir" -name '*.gcda' -delete
  ctest --test-dir "$dir" -j"$(nproc)" --output-on-failure
fi
[ -n "$html" ] || html=$dir/html

mkdir -p "$html"
areas=(platform files baseutils ltm systemdata logging mfg milestones)
filters=()
for area in "${areas[@]}"; do filters+=(--filter "$area/"); done
# Branches that only the compiler made (exception clean-ups, unreachable
# paths) are not the library's decisions and are left out of the count.
gcovr --root . --object-directory "$dir" "${filters[@]}" -j"$(nproc)" \
  --exclude-throw-branches --exclude-unreachable-branches \
  --html-details "$html/index.html" --print-summary "${check[@]}" \
  --txt "$dir/summary.txt"
echo "coverage: HTML report in $html/index.html, per-file table in $dir/summary.txt"
