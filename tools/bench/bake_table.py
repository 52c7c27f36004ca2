#!/usr/bin/env python3
"""Runs bake_bench (a 2,048² bake over about a million triangles, a 4,096²
render, on one thread and on every core) and prints the benchmark table's
section on them: time, ns per texel against the plug-in's ns per point, and
the speed-up from one thread to all.

    bake_table.py BAKE_BENCH REPETITIONS BRICK_NS VORONOI_NS

BRICK_NS and VORONOI_NS are the generators table's ns per point at the
defaults. Called by table.sh.
"""

import json
import subprocess
import sys
import tempfile


def main():
    bench, reps, brick_ns, voronoi_ns = sys.argv[1], int(sys.argv[2]), float(sys.argv[3]), float(sys.argv[4])
    per_point = {"Brick": brick_ns, "Voronoi": voronoi_ns}
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        subprocess.run([bench, f"--benchmark_repetitions={reps}", "--benchmark_report_aggregates_only=true",
                        "--benchmark_out_format=json", f"--benchmark_out={out.name}"],
                       check=True, stdout=subprocess.DEVNULL)
        data = json.load(open(out.name))
    rows = {}
    for b in data["benchmarks"]:
        if b.get("aggregate_name") != "median":
            continue
        what, generator, arg = b["run_name"].split("/")[:3]
        rows[(what, generator, arg)] = (b["real_time"], 1e9 / b["items_per_second"], int(b["threads"]))
    load = data["context"].get("load_avg", [])
    lines = ["## Baking and rendering\n",
             "`bake_bench`: a 2,048² map baked over a rippled sheet of 999,698 triangles (padding 4), and a "
             "4,096² slice, without the files; the median of "
             f"{reps}. One thread goes through the plug-in's session, more each through a generator of their "
             "own. The last column sets the cost of a texel against the generator's cost per point through "
             "`continueSession` above (measured in another run: on a shared machine the two runs may see "
             "different loads). Load average when this ran: "
             + (", ".join(f"{x:.1f}" for x in load) if load else "?") + ".\n",
             "| what | threads | ms | ns/texel | speed-up | texel / point |", "|---|---:|---:|---:|---:|---:|"]
    for what, label in (("BM_Bake", "bake 2,048², 1 M triangles"), ("BM_Render", "render 4,096²")):
        for generator in ("Brick", "Voronoi"):
            one = rows.get((what, generator, "1"))
            for arg in ("1", "0"):
                r = rows.get((what, generator, arg))
                if r is None:
                    continue
                ms, ns, threads = r
                speed = f"{one[0] / ms:.2f}×" if one else "—"
                lines.append(f"| {label}, {generator} | {threads} | {ms:.0f} | {ns:.1f} | {speed} | "
                             f"{ns / per_point[generator]:.2f} |")
    print("\n".join(lines))


if __name__ == "__main__":
    main()
