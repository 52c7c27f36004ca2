#!/usr/bin/env python3
"""Plants each fault of tools/dev/mutants.txt in turn and reports whether the
test suite catches it.

For each planted fault: apply the one-line change, build, run every test
(ctest, stopping at the first failure), put the file back. A fault is caught
when the build of the tests succeeds and some test fails; one that does not
build is reported apart, since it says nothing about the tests.

It edits files of the tree it runs in, so run it in a checkout of its own
(git worktree add ../mutants) rather than the one you are working in:

    tools/dev/mutate.py                 # every planted fault
    tools/dev/mutate.py --only 3 7      # some of them, by number
    tools/dev/mutate.py --check         # only that each applies exactly once
"""

import argparse
import pathlib
import signal
import subprocess
import sys
import time

TOP = pathlib.Path(__file__).resolve().parents[2]


def read_mutants(path):
    mutants, current = [], None
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if line.startswith("## "):
            current = {"title": line[3:].strip(), "line": number}
            mutants.append(current)
        elif current is not None and line.split(":", 1)[0] in ("file", "from", "to"):
            key, value = line.split(":", 1)
            current[key] = value[1:] if value.startswith(" ") else value
    for m in mutants:
        missing = {"file", "from", "to"} - m.keys()
        if missing:
            sys.exit(f"mutants.txt:{m['line']}: '{m['title']}' has no {', '.join(sorted(missing))}")
    return mutants


def check(m):
    """The reason the mutant cannot be applied, or None."""
    path = TOP / m["file"]
    if not path.is_file():
        return f"no file {m['file']}"
    count = path.read_text().count(m["from"])
    if count != 1:
        return f"'from' occurs {count} times in {m['file']}"
    if m["from"] == m["to"]:
        return "'to' changes nothing"
    return None


def run(cmd, log, timeout):
    with open(log, "a") as out:
        out.write(f"$ {' '.join(cmd)}\n")
        out.flush()
        try:
            return subprocess.run(cmd, cwd=TOP, stdout=out, stderr=subprocess.STDOUT, timeout=timeout).returncode
        except subprocess.TimeoutExpired:
            out.write("(timed out)\n")
            return "timeout"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--list", default=str(TOP / "tools/dev/mutants.txt"), help="the planted faults")
    parser.add_argument("--build", default="build-mutants", help="build folder (configured if new)")
    parser.add_argument("--only", type=int, nargs="+", help="numbers of the faults to plant (1-based)")
    parser.add_argument("--check", action="store_true", help="only check that every fault applies")
    parser.add_argument("--timeout", type=int, default=900, help="seconds for one build or test run")
    args = parser.parse_args()

    mutants = read_mutants(pathlib.Path(args.list))
    chosen = [(i, m) for i, m in enumerate(mutants, 1) if not args.only or i in args.only]
    broken = [(i, m, check(m)) for i, m in chosen if check(m)]
    for i, m, why in broken:
        print(f"{i:3} {m['title']}: {why}")
    if args.check or broken:
        print(f"{len(chosen) - len(broken)} of {len(chosen)} apply")
        return 1 if broken else 0

    build = TOP / args.build
    log = build / "mutate.log"
    if not (build / "CMakeCache.txt").exists():
        subprocess.run(["cmake", "-S", str(TOP), "-B", str(build), "-G", "Ninja",
                        "-DCMAKE_BUILD_TYPE=RelWithDebInfo", "-DGRITWELL_BUILD_BENCHMARKS=OFF"],
                       check=True, stdout=subprocess.DEVNULL)
    log.write_text("")
    if run(["cmake", "--build", str(build)], log, args.timeout) != 0:
        sys.exit(f"the unchanged tree does not build; see {log}")
    if run(["ctest", "--test-dir", str(build), "-j2"], log, args.timeout) != 0:
        sys.exit(f"the unchanged tree fails its tests; see {log}")

    results = {"caught": [], "missed": [], "does not build": []}
    for i, m in chosen:
        path = TOP / m["file"]
        original = path.read_text()
        # Put the file back even when interrupted.
        previous = signal.signal(signal.SIGINT, signal.default_int_handler)
        started = time.monotonic()
        try:
            path.write_text(original.replace(m["from"], m["to"], 1))
            if run(["cmake", "--build", str(build)], log, args.timeout) != 0:
                verdict = "does not build"
            else:
                tested = run(["ctest", "--test-dir", str(build), "-j2", "--stop-on-failure"], log, args.timeout)
                verdict = "missed" if tested == 0 else "caught"
        finally:
            path.write_text(original)
            signal.signal(signal.SIGINT, previous)
        results[verdict].append(i)
        print(f"{i:3} {verdict:14} {m['title']} ({time.monotonic() - started:.0f} s)", flush=True)

    run(["cmake", "--build", str(build)], log, args.timeout)  # leave the build as the tree is
    total = len(chosen)
    print(f"\n{len(results['caught'])} of {total} caught, {len(results['missed'])} missed"
          + (f" ({' '.join(map(str, results['missed']))})" if results["missed"] else "")
          + (f", {len(results['does not build'])} do not build ({' '.join(map(str, results['does not build']))})"
             if results["does not build"] else ""))
    return 0


if __name__ == "__main__":
    sys.exit(main())
