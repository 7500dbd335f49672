#!/usr/bin/env bash
# Runs the benchmarks and prints, for each pair in bench/pairs.txt, our time,
# the bare baseline's and their ratio (medians of several repetitions).
#   scripts/bench-table.sh [--json] [--short] [--repetitions N] [--filter REGEX] [BUILD_DIR]
# --short runs each benchmark briefly (for CI); --json prints the table as JSON.
# The default build is build/plain; VIRELINE_BENCH_BINARY names another binary.
set -euo pipefail
cd "$(dirname "$0")/.."
python=/usr/bin/python3
json=0 repetitions=5 min_time="" filter="." build=build/plain
while [ $# -gt 0 ]; do
  case "$1" in
    --json) json=1 ;;
    --short) repetitions=3 min_time=0.05 ;;
    --repetitions) repetitions=$2; shift ;;
    --filter) filter=$2; shift ;;
    *) build=$1 ;;
  esac
  shift
done
binary=${VIRELINE_BENCH_BINARY:-$build/bench/vireline_bench}
[ -x "$binary" ] || cmake --build "$build" -j2 --target vireline_bench >/dev/null

# Only the benchmarks of the pairs run, ours and baseline interleaved by the binary's own order.
names=$(awk '!/^#/ && NF >= 3 { printf "%s%s|%s", sep, $2, $3; sep="|" }' bench/pairs.txt)
out=$(mktemp)
trap 'rm -f "$out"' EXIT
args=(--benchmark_filter="^($names)(/.*)?\$" --benchmark_repetitions="$repetitions"
      --benchmark_report_aggregates_only=true --benchmark_format=json --benchmark_out="$out"
      --benchmark_out_format=json)
[ -n "$min_time" ] && args+=(--benchmark_min_time="$min_time")
"$binary" "${args[@]}" >/dev/null

"$python" - "$out" "$json" "$filter" <<'PY'
import json, re, sys
results = json.load(open(sys.argv[1]))["benchmarks"]
medians = {}
for b in results:
    if b.get("aggregate_name") == "median":
        medians[b["run_name"].split("/")[0]] = b["real_time"] * {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[b["time_unit"]]
rows = []
for line in open("bench/pairs.txt"):
    fields = line.split()
    if not fields or fields[0].startswith("#") or not re.search(sys.argv[3], fields[0]):
        continue
    label, ours, base, aim = fields[:4]
    if ours not in medians or base not in medians:
        continue
    ratio = medians[ours] / medians[base]
    rows.append({"operation": label, "ours_ns": round(medians[ours], 1), "baseline_ns": round(medians[base], 1),
                 "ratio": round(ratio, 3), "aim": None if aim == "-" else float(aim),
                 "within_aim": None if aim == "-" else ratio <= float(aim)})
if sys.argv[2] == "1":
    print(json.dumps(rows, indent=2))
else:
    print("%-24s %14s %14s %7s %6s" % ("operation", "ours (ns)", "baseline (ns)", "ratio", "aim"))
    for r in rows:
        aim = "-" if r["aim"] is None else "%.2f%s" % (r["aim"], "" if r["within_aim"] else " MISSED")
        print("%-24s %14.1f %14.1f %7.3f %6s" % (r["operation"], r["ours_ns"], r["baseline_ns"], r["ratio"], aim))
PY
