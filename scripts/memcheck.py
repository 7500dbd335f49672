#!/usr/bin/python3
"""Runs the suite's tests under valgrind memcheck, each in its own process as
CTest runs them, and fails when any test has a memory error or a definite leak.

    scripts/memcheck.py BUILD_DIR [--filter REGEX] [--every N] [--jobs N] [--children]

BUILD_DIR is a configured and built tree (not a sanitizer build). Only the
test program's own tests run (the packaging and Python checks are left to
CTest). --every N keeps every Nth of the matching tests in name order, a
sample spread over every area (CI's short form). --children also checks the
inspector the tests start (slower).
Logs of failing tests land in BUILD_DIR/memcheck/.
"""
import argparse
import concurrent.futures
import json
import os
import re
import subprocess
import sys
import time

VALGRIND = ["valgrind", "--tool=memcheck", "--error-exitcode=99", "--leak-check=full",
            "--errors-for-leak-kinds=definite", "--show-leak-kinds=definite",
            "--track-origins=no", "--num-callers=30", "--quiet"]


UNDER_OWN_ALLOCATOR = re.compile(r"^\w*(Allocation|OutOfMemory)Test\.|TooLargeForMemory")


def discover(build_dir):
    listing = subprocess.run(["ctest", "--test-dir", build_dir, "--show-only=json-v1"],
                             check=True, capture_output=True, text=True).stdout
    tests = []
    for test in json.loads(listing)["tests"]:
        command = test.get("command") or []
        if not command or not command[0].endswith("/vireline_tests"):
            continue
        properties = {p["name"]: p["value"] for p in test.get("properties", [])}
        tests.append((test["name"], command, properties.get("WORKING_DIRECTORY", build_dir)))
    return tests


def run_one(test, log_dir, children):
    name, command, cwd = test
    log = os.path.join(log_dir, re.sub(r"[^A-Za-z0-9_.-]", "_", name) + ".log")
    options = VALGRIND + ["--log-file=" + log]
    if children:
        options += ["--trace-children=yes",
                    "--trace-children-skip=*/sh,*/bash,*/chromium*,*/python3*,*/cmake,*/c++,*/g++*,*/ld*"]
    result = subprocess.run(options + command, cwd=cwd, capture_output=True, text=True)
    skipped = "[  SKIPPED ]" in result.stdout
    if result.returncode == 0 or skipped:
        os.unlink(log)
        return name, "skipped" if skipped else "passed"
    return name, "memory error or leak" if result.returncode == 99 else "failed (exit %d)" % result.returncode


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build_dir")
    parser.add_argument("--filter", default="")
    parser.add_argument("--every", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1)
    parser.add_argument("--children", action="store_true")
    args = parser.parse_args()

    # valgrind brings its own allocator and address space, so the tests that
    # make the test program's allocations fail (tests/FailingAllocation.h) or
    # limit its address space cannot run under it; the sanitizer build runs
    # them.
    tests = [t for t in discover(args.build_dir)
             if re.search(args.filter, t[0]) and not UNDER_OWN_ALLOCATOR.search(t[0])]
    tests = sorted(tests)[::max(args.every, 1)]
    if not tests:
        sys.exit("memcheck: no test matches %r" % args.filter)
    log_dir = os.path.abspath(os.path.join(args.build_dir, "memcheck"))
    os.makedirs(log_dir, exist_ok=True)
    start = time.monotonic()
    failures = []
    with concurrent.futures.ThreadPoolExecutor(max_workers=args.jobs) as pool:
        for name, outcome in pool.map(lambda t: run_one(t, log_dir, args.children), tests):
            if outcome not in ("passed", "skipped"):
                failures.append((name, outcome))
                print("memcheck: FAILED %s: %s" % (name, outcome), flush=True)
    print("memcheck: %d tests under valgrind in %d s, %d failed"
          % (len(tests), time.monotonic() - start, len(failures)))
    if failures:
        print("memcheck: logs in %s" % log_dir)
        sys.exit(1)


if __name__ == "__main__":
    main()
