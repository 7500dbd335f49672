#!/usr/bin/env bash
# Makes docs/report.png, the README's picture of the sample image's play
# report: builds the inspector, writes the report's HTML page for a copy of
# the sample image and has headless Chromium take its picture.
#
#   scripts/report-screenshot.sh [OUTPUT.png]
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-report-deps.sh
output=${1:-docs/report.png}
case $output in /*) ;; *) output=$PWD/$output ;; esac

cmake -S . -B build/plain -DVIRELINE_WERROR=ON >/dev/null
cmake --build build/plain -j"$(nproc)" --target vireline_tool >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -a examples/device-image "$work/image"
build/plain/tools/vireline --root "$work/image" report 0 --html "$work/report.html"
mkdir -p "$(dirname "$output")"
chromium --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking \
  --disable-component-update --disable-sync --disable-quic --hide-scrollbars \
  --user-data-dir="$work/profile" --window-size=1000,1450 \
  --screenshot="$output" "file://$work/report.html" 2>/dev/null
echo "$output"
