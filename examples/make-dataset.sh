#!/usr/bin/env bash
# Writes the sample device image's small relocatable dataset pair, byte by
# byte. All numbers are 32-bit little-endian.
#
# dino.dsetBin (24 bytes):
#   0  pointer to the name (offset 12)
#   4  leg count, 4 (a plain number: not listed in the relink file)
#   8  pointer to the second record (offset 20)
#  12  "dino" and four zero bytes
#  20  second record: pointer back to the name (offset 12)
# dino.relinkBin (12 bytes): the offsets of the three pointers, 0, 8 and 20.
set -euo pipefail
out="$(dirname "$0")/device-image/QV/Bulk/Data/Datasets"
mkdir -p "$out"
printf '\014\0\0\0\004\0\0\0\024\0\0\0dino\0\0\0\0\014\0\0\0' > "$out/dino.dsetBin"
printf '\0\0\0\0\010\0\0\0\024\0\0\0' > "$out/dino.relinkBin"
