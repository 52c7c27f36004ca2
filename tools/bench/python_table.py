#!/usr/bin/env python3
"""Times the Python module's call against libgritwell's batch call over the
same million points (bench/MillionPoints.h's cloud), and prints the
benchmark table's section on it.

    python_table.py LIBRARY_BENCH PYTHON_MODULE_DIR REPETITIONS

Called by table.sh; the C++ side is library_bench, the Python side
`texture(points)` on a C-contiguous float32 array, each the median of
REPETITIONS runs. Both count the evaluating thread's processor time (Google
Benchmark's items per second do): on a shared machine the wall clock also
counts the neighbours' turns.
"""

import json
import statistics
import subprocess
import sys
import time

import numpy as np

NAMES = ("Brick", "Voronoi", "FBM")


def million_points():
    i = np.arange(3_000_000, dtype=np.uint64)
    hashed = (i * np.uint64(2654435761)) % np.uint64(1 << 32)
    return (hashed.astype(np.float64) / 4294967296.0 * 16.0 - 8.0).astype(np.float32).reshape(-1, 3)


def cpp_seconds(library_bench, reps):
    out = subprocess.run([library_bench, f"--benchmark_repetitions={reps}", "--benchmark_format=json",
                          "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.5"],
                         check=True, capture_output=True, text=True).stdout
    medians = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("aggregate_name") == "median":
            medians[b["run_name"].split("/")[-1]] = 1e6 / b["items_per_second"]  # s per 10^6 points
    return medians


def python_seconds(gritwell, points, reps):
    medians = {}
    for name in NAMES:
        texture = gritwell.Texture(name)
        texture(points)  # first call: pages touched, tables built
        times = []
        for _ in range(reps):
            start = time.thread_time()
            texture(points)
            times.append(time.thread_time() - start)
        medians[name] = statistics.median(times)
    return medians


def main():
    library_bench, module_dir, reps = sys.argv[1], sys.argv[2], int(sys.argv[3])
    sys.path.insert(0, module_dir)
    import gritwell
    points = million_points()
    cpp = cpp_seconds(library_bench, reps)
    python = python_seconds(gritwell, points, reps)
    out = ["## Python against C++\n",
           "`texture(points)` from Python on a float32 array of a million points against "
           "`gritwell::Texture::evaluate` on the same points from C++ (`library_bench`), at the defaults; "
           f"milliseconds of the evaluating thread's processor time, the median of {reps} runs on "
           f"{time.strftime('%Y-%m-%d')}.\n",
           "| generator | C++ batch call | Python call | Python's extra cost |", "|---|---:|---:|---:|"]
    for name in NAMES:
        extra = (python[name] / cpp[name] - 1) * 100
        out.append(f"| {name} | {cpp[name] * 1e3:.1f} | {python[name] * 1e3:.1f} | {extra:+.1f} % |")
    print("\n" + "\n".join(out))


if __name__ == "__main__":
    main()
