#!/usr/bin/env bash
# Builds the inspector and runs it on a fresh copy of the sample device image.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh

cmake -S . -B build/demo -DVIRELINE_BUILD_TESTS=OFF -DVIRELINE_BUILD_BENCH=OFF >/dev/null
cmake --build build/demo -j"$(nproc)" --target vireline_tool >/dev/null

image=$(mktemp -d)
trap 'rm -rf "$image"' EXIT
cp -a examples/device-image/. "$image/"
run() {
  echo "\$ vireline $*"
  build/demo/tools/vireline --root "$image" "$@"
  echo
}
run layout --model Tamsel
run meta /QV/Bulk/ProgramFiles/ZooKeeper
run kv /QV/Bulk/settings.cfg
run json /QV/Bulk/Data/LanguageSample.json Flags[1].LocaleCode
run settings
run deps /QV/Bulk/ProgramFiles/StoryTime
run mfg show
run paths
run find art dragon.png --title /QV/Bulk/ProgramFiles/PetitChef --explain
run log dump 0
run log stats
run cyo
run milestones add ReadTenWords
run milestones --json
run profiles
run profile remove 1 --yes
run profiles --json
run apps
run avatars --player 1
run mdls --player 0 --title /QV/Bulk/ProgramFiles/MathMountain
run consumables --title /QV/Bulk/ProgramFiles/MathMountain
run dataset /QV/Bulk/Data/Datasets/dino.dsetBin /QV/Bulk/Data/Datasets/dino.relinkBin
run daemon volume || true  # the sample image has no daemon: shows how that is reported
run checksum /QV/Bulk/ProgramFiles/ZooKeeper --verify /QV/Bulk/ProgramFiles/ZooKeeper/ZooKeeper.crc
run doom
run doom --critical --yes
run version-compare 1.10 1.9
run log export 0 --jsonl
run report --player 0
