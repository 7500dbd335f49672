#!/usr/bin/env bash
# The performance stage of CI: the benchmark table (short form: ratios of our
# hot paths to their bare baselines), the system-call budgets of single
# operations, the footprint (stripped armhf library size, which must stay
# under 1 MiB, and the inspector's peak memory on the sample image), and a
# smoke run of the benchmarks cross-built for armhf under qemu-arm.
# It reuses build/plain and build-armhf as the earlier stages left them and
# builds only the benchmark targets on top; about 3-4 minutes in all.
#   scripts/check-performance.sh [--no-armhf]
set -euo pipefail
cd "$(dirname "$0")/.."
plain=build/plain
armhf=build-armhf
jobs=$(nproc)
start=$SECONDS

echo "== benchmark table (short form; figures from a shared CI machine are rough)"
cmake -S . -B "$plain" -DVIRELINE_WERROR=ON >/dev/null
cmake --build "$plain" -j"$jobs" --target vireline_bench vireline_syscall_probe vireline_tool >/dev/null
./scripts/bench-table.sh --short "$plain" 2>/dev/null

echo "== system-call budgets"
./scripts/check-syscall-budgets.sh "$plain"

echo "== footprint"
./scripts/footprint.sh "$plain" "$armhf"

if [ "${1-}" != "--no-armhf" ] && [ -f "$armhf/CMakeCache.txt" ] && command -v qemu-arm >/dev/null; then
  echo "== armhf benchmark smoke run under qemu-arm (a run, not a measurement)"
  cmake -S . -B "$armhf" -DVIRELINE_BUILD_BENCH=ON >/dev/null
  if cmake --build "$armhf" -j"$jobs" --target vireline_bench >/dev/null; then
    # Each benchmark runs for a moment; the figures under emulation mean
    # nothing, but a benchmark that reports an error fails the stage.
    smoke=$(qemu-arm -L /usr/arm-linux-gnueabihf "$armhf/bench/vireline_bench" --benchmark_min_time=0.0001 \
      --benchmark_filter='^BM_[A-Za-z_]*$' 2>/dev/null)
    echo "$(grep -c '^BM_' <<<"$smoke") benchmarks ran under qemu-arm"
    if grep 'ERROR OCCURRED' <<<"$smoke"; then
      echo "armhf benchmark smoke run FAILED" >&2
      exit 1
    fi
  else
    echo "SKIPPED: armhf benchmark smoke run (no Google Benchmark for armhf: libbenchmark-dev:armhf)"
  fi
else
  echo "SKIPPED: armhf benchmark smoke run (no armhf build or no qemu-arm)"
fi
echo "performance stage took $((SECONDS - start)) s"
