#!/usr/bin/env bash
# Builds the library, the inspector and the tests twice (plain, and with
# AddressSanitizer and UndefinedBehaviorSanitizer) and runs every test in both.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
./scripts/install-report-deps.sh  # the play report's browser test; skipped loudly without it

jobs=$(nproc)
run_configuration() {
  local dir=$1; shift
  cmake -S . -B "$dir" -DVIRELINE_WERROR=ON "$@" >/dev/null
  cmake --build "$dir" -j"$jobs"
  ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir "$dir" -j"$jobs" --output-on-failure
}

echo "== plain build"
run_configuration build/plain
echo "== sanitizer build (address, undefined), which also counts coverage"
# Unoptimised with line tables only: the quickest to build, all the
# sanitizers' reports need, and exact line and branch counts for
# scripts/coverage.sh --from build/sanitize.
find build/sanitize -name '*.gcda' -delete 2>/dev/null || true
run_configuration build/sanitize -DVIRELINE_SANITIZE=ON -DVIRELINE_COVERAGE=ON -DVIRELINE_BUILD_BENCH=OFF \
  "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O0 -g1 -DNDEBUG"
