#!/usr/bin/env bash
# The ABI check fails on a removed exported function, passes on an added one,
# and passes a removal that comes with a new SONAME. Exit 77: abigail-tools
# is not installed (reported as skipped).
set -euo pipefail
check=$1 cxx=$2
command -v abidw >/dev/null && command -v abidiff >/dev/null || {
  echo "SKIPPED: abidw/abidiff not installed (Debian package abigail-tools)"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

library() {  # NAME SONAME FUNCTIONS...
  local name=$1 soname=$2; shift 2
  local source=$work/$name.cpp
  : >"$source"
  for function in "$@"; do echo "int $function(int x) { return x + 1; }" >>"$source"; done
  "$cxx" -shared -fPIC -g -o "$work/$name.so" -Wl,-soname,"$soname" "$source"
}

library v1 libdemo.so.1 first second
library removed libdemo.so.1 first
library added libdemo.so.1 first second third
library bumped libdemo.so.2 first
"$check" --dump "$work/v1.so" "$work/v1.abi"

expect() {  # STATUS LIBRARY WHAT
  local status=0
  "$check" --compare "$work/v1.abi" "$work/$2.so" >"$work/out" 2>&1 || status=$?
  if [ "$status" -ne "$1" ]; then
    cat "$work/out"; echo "FAIL: $3: exit status $status, expected $1"; exit 1
  fi
  echo "ok: $3"
}
expect 1 removed "a removed function without a SONAME bump fails"
expect 0 added "an added function passes"
expect 0 bumped "a removed function with a new SONAME passes"
expect 0 v1 "the same library passes"
