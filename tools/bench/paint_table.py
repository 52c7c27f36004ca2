#!/usr/bin/env python3
"""Times `gritwell paint` on a mesh of a million vertices and faces, read from
OBJ and from binary PLY, and prints the benchmark table's section on it;
writes the README's sentence on painting, with the evaluation's share taken
from the generators' table.

    paint_table.py GRITWELL REPETITIONS README_PART BRICK_NS VORONOI_NS PHASES

BRICK_NS and VORONOI_NS are the table's nanoseconds per point at the
defaults; PHASES is mesh_bench's JSON output (reading, evaluating, writing).
Called by table.sh.
"""

import os
import statistics
import subprocess
import json
import sys
import tempfile
import time

SIDE = 1000  # vertices along each side of the grid: 10^6 vertices, 999^2 faces


def write_grid(path):
    """A wavy square grid of quads, the same bytes on every run."""
    with open(path, "w") as f:
        for j in range(SIDE):
            f.write("".join(f"v {i * 0.004:g} {j * 0.004:g} {0.1 * ((i * j) % 7):g}\n" for i in range(SIDE)))
        for j in range(SIDE - 1):
            row = j * SIDE + 1
            f.write("".join(f"f {a} {a + 1} {a + SIDE + 1} {a + SIDE}\n" for a in range(row, row + SIDE - 1)))


def median_seconds(command, repetitions):
    times = []
    for _ in range(repetitions):
        start = time.perf_counter()
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
        times.append(time.perf_counter() - start)
    return statistics.median(times)


PHASES = [("Paint/read/binary PLY", "read a binary PLY"), ("Paint/read/OBJ", "read an OBJ"),
          ("Paint/evaluate/Brick", "evaluate Brick"), ("Paint/evaluate/Voronoi", "evaluate Voronoi"),
          ("Paint/write/PLY", "write the painted PLY"),
          ("Paint/write/PLY on disk", "write the painted PLY and wait for the disk"),
          ("Paint/end to end/binary PLY/Brick", "all of it, from binary PLY, Brick"),
          ("Paint/end to end/OBJ/Brick", "all of it, from OBJ, Brick")]


def phase_medians(path):
    """mesh_bench's medians, in milliseconds, by benchmark: (wall clock, processor)."""
    return {b["run_name"].removesuffix("/real_time"): (b["real_time"], b["cpu_time"])
            for b in json.load(open(path))["benchmarks"] if b.get("aggregate_name") == "median"}


def phase_table(median, reps):
    """The phases as the table's lines."""
    out = ["### Phase by phase\n",
           "`bench/MeshFilesBench.cpp` (`mesh_bench`) on a grid of a million vertices and two million "
           "triangles it writes first (binary PLY of floats; OBJ with six decimals), in the process, "
           f"without starting the command; milliseconds, the median of {reps}, by the clock and in processor "
           "time (on a machine shared with other work the clock waits for the processor).\n",
           "| phase | ms | processor ms |", "|---|---:|---:|"]
    for name, label in PHASES:
        wall, cpu = median.get(name, (None, None))
        out.append(f"| {label} | {'—' if wall is None else f'{wall:.1f}'} | {'—' if cpu is None else f'{cpu:.1f}'} |")
    whole, evaluation = median.get("Paint/end to end/binary PLY/Brick"), median.get("Paint/evaluate/Brick")
    if whole and evaluation:
        out.append(f"\nFrom binary PLY, painting with Brick takes {whole[0] / evaluation[0]:.1f}× its evaluation "
                   f"by the clock, {whole[1] / evaluation[1]:.1f}× in processor time.")
    return out


def main():
    gritwell, reps, readme_part = sys.argv[1], int(sys.argv[2]), sys.argv[3]
    evaluation = {"Brick": float(sys.argv[4]), "Voronoi": float(sys.argv[5])}
    with tempfile.TemporaryDirectory() as folder:
        obj, ply = os.path.join(folder, "grid.obj"), os.path.join(folder, "grid.ply")
        write_grid(obj)
        subprocess.run([gritwell, "paint", obj, "Constant", "-o", ply], check=True)
        seconds = {(mesh, g): median_seconds([gritwell, "paint", path, g, "-o", os.path.join(folder, "out.ply")], reps)
                   for mesh, path in (("OBJ", obj), ("binary PLY", ply)) for g in evaluation}
    out = ["## Painting a mesh\n",
           f"`gritwell paint` on a grid of {SIDE * SIDE} vertices and {(SIDE - 1) ** 2} quads, from reading the "
           f"mesh to writing the painted PLY; seconds, the median of {reps} runs on {time.strftime('%Y-%m-%d')}. "
           "The evaluation alone is the generator's nanoseconds per point above, times a million.\n",
           "| mesh | " + " | ".join(evaluation) + " |", "|---|" + "---:|" * len(evaluation)]
    for mesh in ("OBJ", "binary PLY"):
        out.append(f"| {mesh} | " + " | ".join(f"{seconds[(mesh, g)]:.2f}" for g in evaluation) + " |")
    phases = phase_medians(sys.argv[6])
    print("\n" + "\n".join(out + [""] + phase_table(phases, reps)))
    ms = {name: f"{phases[name][0]:.0f}" if name in phases else "—" for name, _ in PHASES}
    with open(readme_part, "w") as f:
        f.write(f"A mesh of a million vertices and faces paints with Brick in about "
                f"{seconds[('OBJ', 'Brick')]:.1f} s from OBJ and {seconds[('binary PLY', 'Brick')]:.1f} s from\n"
                f"binary PLY (one core of a shared machine; [docs/benchmarks.md](docs/benchmarks.md)),\n"
                f"the command's start included; the evaluation itself is {evaluation['Brick']:.0f} ms for Brick and "
                f"{evaluation['Voronoi']:.0f} ms for Voronoi. Phase by phase, in the process: reading "
                f"{ms['Paint/read/binary PLY']} ms\n(binary PLY) or {ms['Paint/read/OBJ']} ms (OBJ), evaluating "
                f"{ms['Paint/evaluate/Brick']} ms (Brick), writing the painted PLY {ms['Paint/write/PLY']} ms.\n")


if __name__ == "__main__":
    main()
