#!/usr/bin/env bash
# Line and branch coverage of the library's own code by the whole suite.
#
#   scripts/coverage.sh [--check]
#
# Builds build/coverage (unoptimised, instrumented), runs every test and writes
# a summary to standard output and an HTML report to build/coverage/html/.
# Tests, tools, benchmarks and fuzz targets are not counted, only the library.
# --check fails when lines fall under 95% or branches under 90%.
set -euo pipefail
cd "$(dirname "$0")/.."

check=()
[ "${1-}" = "--check" ] && check=(--fail-under-line 95 --fail-under-branch 90)
command -v gcovr >/dev/null || {
  sudo=""; [ "$(id -u)" -ne 0 ] && sudo="sudo"
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq gcovr >&2
}

dir=build/coverage
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=Debug -DVIRELINE_WERROR=ON -DVIRELINE_BUILD_BENCH=OFF \
  -DVIRELINE_BUILD_PYTHON=OFF "-DCMAKE_CXX_FLAGS=--coverage" >/dev/null
cmake --build "$dir" -j"$(nproc)"
find "$dir" -name '*.gcda' -delete
ctest --test-dir "$dir" -j"$(nproc)" --output-on-failure

mkdir -p "$dir/html"
areas=(platform files baseutils ltm systemdata logging mfg milestones)
filters=()
for area in "${areas[@]}"; do filters+=(--filter "$area/"); done
# Branches that only the compiler made (exception clean-ups, unreachable
# paths) are not the library's decisions and are left out of the count.
gcovr --root . --object-directory "$dir" "${filters[@]}" \
  --exclude-throw-branches --exclude-unreachable-branches \
  --html-details "$dir/html/index.html" --print-summary "${check[@]}" \
  --txt "$dir/summary.txt"
echo "coverage: HTML report in $dir/html/index.html, per-file table in $dir/summary.txt"
