#!/usr/bin/env bash
# Builds the libFuzzer targets (clang-14, AddressSanitizer and
# UndefinedBehaviorSanitizer, build/fuzz) and runs each for a while on its
# seed corpus in fuzz/corpus/<target>. Inputs that find new code go to a
# temporary folder (or into the repository's corpus with --update-corpus).
# Prints the executions of every target and fails when any target crashed,
# leaked, hung or tripped a sanitizer; the failing input is kept and named.
#
#   scripts/fuzz.sh                      # 30 s per target
#   scripts/fuzz.sh --seconds 3600 json  # a long run of one target
#   scripts/fuzz.sh --runs 10000000 --seconds 3600   # ten million inputs each, at most an hour
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
  cat <<'USAGE'
Usage: scripts/fuzz.sh [--seconds N] [--runs N] [--build-dir DIR] [--work-dir DIR] [--update-corpus] [--no-build] [TARGET...]
  --seconds N       run each target for N seconds (default 30)
  --runs N          stop a target after N executions (if its time has not run out first)
  --build-dir DIR   the clang build folder (default build/fuzz)
  --work-dir DIR    where new corpus entries and failing inputs go (default: a new temporary folder)
  --update-corpus   afterwards merge the inputs that found new code into fuzz/corpus/<target>
  --no-build        run the programs already built
  TARGET            key_value json play_log mfg_data dataset compare_version checksum title_path (default: all)
USAGE
}

seconds=30
runs=-1
build_dir=build/fuzz
work_dir=""
update_corpus=0
build=1
targets=()
while [ $# -gt 0 ]; do
  case "$1" in
    --seconds) seconds="$2"; shift 2 ;;
    --runs) runs="$2"; shift 2 ;;
    --build-dir) build_dir="$2"; shift 2 ;;
    --work-dir) work_dir="$2"; shift 2 ;;
    --update-corpus) update_corpus=1; shift ;;
    --no-build) build=0; shift ;;
    -h|--help) usage; exit 0 ;;
    -*) usage >&2; exit 2 ;;
    *) targets+=("$1"); shift ;;
  esac
done
if [ ${#targets[@]} -eq 0 ]; then
  targets=(key_value json play_log mfg_data dataset compare_version checksum title_path)
fi
[ -n "$work_dir" ] || work_dir=$(mktemp -d "${TMPDIR:-/tmp}/vireline-fuzz.XXXXXX")
mkdir -p "$work_dir"

# The fuzzers need clang's compiler and its sanitizer and libFuzzer runtimes.
install_fuzz_deps() {
  local missing=() package
  for package in clang-14 libclang-rt-14-dev; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  echo "Installing: ${missing[*]}" >&2
  $sudo apt-get update -qq || echo "apt-get update reported errors; trying the install anyway" >&2
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >&2
}

if [ "$build" = 1 ]; then
  install_fuzz_deps
  cmake -S . -B "$build_dir" -DCMAKE_CXX_COMPILER=clang++-14 -DVIRELINE_FUZZ=ON -DVIRELINE_WERROR=ON \
    -DVIRELINE_BUILD_TESTS=OFF -DVIRELINE_BUILD_TOOLS=OFF -DVIRELINE_BUILD_BENCH=OFF -DVIRELINE_BUILD_PYTHON=OFF \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$build_dir" -j"${FUZZ_BUILD_JOBS:-2}" --target "${targets[@]/#/fuzz_}"
fi

failed=()
summary=""
for target in "${targets[@]}"; do
  program="$build_dir/fuzz/fuzz_$target"
  seeds="fuzz/corpus/$target"
  [ -x "$program" ] || { echo "fuzz: $program is not built" >&2; exit 2; }
  [ -d "$seeds" ] || { echo "fuzz: no seed corpus $seeds" >&2; exit 2; }
  corpus="$work_dir/corpus/$target"
  log="$work_dir/$target.log"
  mkdir -p "$corpus" "$work_dir/artifacts"
  echo "fuzz: $target for ${seconds}s ..."
  status=0
  # The first folder receives new inputs; the target's own chatter on
  # standard output and error is dropped (sanitizer reports still come through).
  "$program" -max_total_time="$seconds" -runs="$runs" -timeout=10 -print_final_stats=1 -close_fd_mask=3 \
    -artifact_prefix="$work_dir/artifacts/$target-" "$corpus" "$seeds" >"$log" 2>&1 || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  per_second=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -n 1)
  line=$(printf '%-16s %12s executions %8s exec/s' "$target" "${executions:-?}" "${per_second:-?}")
  if [ "$status" -ne 0 ]; then
    failed+=("$target")
    line="$line  FAILED (status $status, log $log)"
    grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error|artifact_prefix|Test unit written)' "$log" >&2 || tail -n 20 "$log" >&2
  fi
  summary+="$line"$'\n'
  if [ "$update_corpus" = 1 ] && [ "$status" -eq 0 ]; then
    "$program" -merge=1 -close_fd_mask=3 "$seeds" "$corpus" >>"$log" 2>&1
  fi
done

echo
echo "fuzz: executions per target (${seconds}s each; inputs and logs in $work_dir)"
printf '%s' "$summary"
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: FAILED: ${failed[*]} (failing inputs in $work_dir/artifacts)" >&2
  exit 1
fi
