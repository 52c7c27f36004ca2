#!/usr/bin/env bash
# Measures every generator and the peer, and writes docs/benchmarks.md.
#
#   tools/bench/table.sh          (or ./run.sh bench-table)
#
# Builds table_bench and gritwell (RelWithDebInfo, in build/ unless
# BUILD_DIR says otherwise), runs the benchmarks BENCH_REPETITIONS times
# (default 5) and tables the median of each: the machines are shared, and
# the median shrugs off a neighbour's burst where the mean does not. Then
# times painting a million-vertex mesh, phase by phase (mesh_bench) and as
# `gritwell paint` (paint_table.py), baking and rendering (bake_table.py) and the
# Python module's call against the library's (python_table.py). The
# README's figures are written from the same runs, between its markers.
set -euo pipefail
cd "$(dirname "$0")/../.."

dir=${BUILD_DIR:-build}
reps=${BENCH_REPETITIONS:-5}
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$dir" --target table_bench bake_bench mesh_bench gritwell library_bench gritwell_python -j "$(nproc)"

json=$(mktemp)
levels_dir=$(mktemp -d)
readme_part=$(mktemp)
paint_part=$(mktemp)
evaluation=$(mktemp)
trap 'rm -rf "$json" "$levels_dir" "$readme_part" "$paint_part" "$evaluation" docs/benchmarks.md.partial' EXIT
run() { "$dir/bench/table_bench" --benchmark_repetitions="$reps" --benchmark_report_aggregates_only=true \
  --benchmark_min_time=0.1 --benchmark_out_format=json "$@" >&2; }
# Every figure on the best instruction set this processor has, then the
# primitives and the defaults again on each lower level the batch paths can
# be held to (--simd), for the scalar-against-vector columns.
run --benchmark_out="$json"
for level in scalar avx2 avx512; do
  run --simd="$level" --benchmark_filter='Primitive|Peer|/defaults$|/one point$' \
    --benchmark_out="$levels_dir/$level.json"
done

cpu=$(grep -m1 '^model name' /proc/cpuinfo | cut -d: -f2- | sed 's/^ *//')
isa=$(grep -m1 -ow -e avx512f -e avx2 /proc/cpuinfo | sort -u | paste -sd' ' || true)
python3 - "$json" "$cpu" "$(nproc)" "${isa:-none}" "$reps" "$levels_dir" "$readme_part" "$evaluation" \
  >docs/benchmarks.md.partial <<'PY'
import json, os, sys
path, cpu, cores, isa, reps, levels_dir, readme_part, evaluation = sys.argv[1:9]
data = json.load(open(path))

def medians(path):
    data = json.load(open(path))
    out = {}
    for b in data["benchmarks"]:
        if b.get("aggregate_name") == "median":
            out[b["run_name"]] = 1e9 / b["items_per_second"]
    return data["context"], out

ctx, median = medians(path)
best = ctx.get("simd", "?")
# A level the processor lacks runs as the best one below it: such a run
# reports a lower "simd" and is left out.
by_level = {}
for level in ("scalar", "avx2", "avx512"):
    f = os.path.join(levels_dir, level + ".json")
    if os.path.exists(f):
        c, m = medians(f)
        if c.get("simd") == level:
            by_level[level] = m
levels = list(by_level)

def ns(name, table=None):
    v = (median if table is None else table).get(name)
    return "—" if v is None else f"{v:.1f}"

variants = ["defaults", "planar", "switches", "detail", "detail+"]

# One point per call over the batch call, both from the best level's run.
def ratio(kind, name):
    one, batch = median.get(f"{kind}/{name}/one point"), median.get(f"{kind}/{name}/defaults")
    return "—" if not one or not batch else f"{one / batch:.1f}×"
out = []
out.append("# Benchmarks\n")
out.append("Produced by `tools/bench/table.sh` (`./run.sh bench-table`); do not edit by hand.\n")
out.append("Nanoseconds per point on one core, the median of "
           f"{reps} repetitions over a fixed cloud of 4096 points in [-8, 8)³.\n")
out.append("## Machine\n")
out.append(f"- CPU: {cpu} ({cores} cores seen, vector extensions: {isa})")
out.append(f"- Compiler: {ctx.get('compiler', '?')}")
out.append(f"- Flags: `{ctx.get('flags', '?').strip()}`")
out.append(f"- Batch paths: {best} (the best this processor runs; lower levels forced with `--simd`)")
out.append(f"- Run: {ctx.get('date', '?')}\n")
out.append("## Noise primitive and peer\n")
out.append("| function | ns/point |")
out.append("|---|---:|")
out.append(f"| `Perlin::noise(x, y, z)`, one point per call | {ns('Primitive/Perlin::noise(x,y,z)')} |")
for level in levels:
    out.append(f"| `PerlinBatch::noise`, 4096 points per call, {level} | {ns('Primitive/PerlinBatch::noise', by_level[level])} |")
out.append(f"| libnoise `module::Perlin`, 1 octave | {ns('Peer/libnoise Perlin/1')} |")
out.append(f"| libnoise `module::Perlin`, 6 octaves (its default) | {ns('Peer/libnoise Perlin/6')} |")
p, b, l = (median.get("Primitive/Perlin::noise(x,y,z)"), median.get("Primitive/PerlinBatch::noise"),
           median.get("Peer/libnoise Perlin/1"))
if p and b and l:
    out.append(f"\nAgainst libnoise's one-octave Perlin in this run: one point per call {l / p:.1f}× its speed, "
               f"the batch path ({best}) {l / b:.1f}×.\n")
out.append("## Generators\n")
out.append("Through the plug-in's `continueSession`, one call for all 4096 points "
           "(library-only generators, marked *, through the same batch call in-process). "
           "Records: *defaults*; *planar*: the defaults with the host's planar flags (12; every other "
           "column is in space, flags 2); *switches*: every switch on (randomised colours, rounded "
           "corners, shading); *detail*: switches on, 8 octaves, every other integer field one "
           "past its default (the next style, pattern or shape); *detail+*: 12 octaves, two past, every real field a quarter larger.\n")
out.append(f"The first columns are the defaults with the batch paths held to each instruction set; "
           f"the rest are on {best}. Generators without a vector path read about the same in every column. "
           "*one point*: the defaults through `continueSessionOne`, one point per call (the host's "
           "path for a single point), on each level; *÷ batch*: that time over the batch call's, "
           f"both on {best} in this run.\n")
out.append("| generator | " + " | ".join(f"defaults, {lv}" for lv in levels) + " | " + " | ".join(variants) + " | "
           + " | ".join(f"one point, {lv}" for lv in levels) + " | ÷ batch |")
out.append("|---|" + "---:|" * (2 * len(levels) + len(variants) + 1))
names = []
for b in data["benchmarks"]:
    parts = b["run_name"].split("/")
    if parts[0] in ("Session", "Batch") and (parts[0], parts[1]) not in names:
        names.append((parts[0], parts[1]))
for kind, name in names:
    label = name + (" *" if kind == "Batch" else "")
    out.append(f"| {label} | " + " | ".join(ns(f"{kind}/{name}/defaults", by_level[lv]) for lv in levels) + " | "
               + " | ".join(ns(f"{kind}/{name}/{v}") for v in variants) + " | "
               + " | ".join(ns(f"{kind}/{name}/one point", by_level[lv]) for lv in levels) + f" | {ratio(kind, name)} |")
print("\n".join(out))

# The README's digest: the primitives and every generator at its defaults.
short = [f"Last run: {cpu}, one core of {cores}, {ctx.get('compiler', '?')}, "
         f"{ctx.get('date', '?')[:10]}; ns per point, median of {reps}.\n",
         "| what | " + " | ".join(levels) + f" | planar, {best} | one point, {best} |",
         "|---|" + "---:|" * (len(levels) + 2)]
short.append("| `Perlin::noise`, one point per call | " + " | ".join(
    ns("Primitive/Perlin::noise(x,y,z)", by_level[lv]) for lv in levels) + " | | |")
short.append("| `PerlinBatch::noise`, 4096 points per call | " + " | ".join(
    ns("Primitive/PerlinBatch::noise", by_level[lv]) for lv in levels) + " | | |")
short.append("| libnoise Perlin, 1 / 6 octaves (the peer) | " + " | ".join(
    ns("Peer/libnoise Perlin/1", by_level[lv]) + " / " + ns("Peer/libnoise Perlin/6", by_level[lv])
    for lv in levels) + " | | |")
for kind, name in names:
    label = name + (" *" if kind == "Batch" else "")
    short.append(f"| {label} | " + " | ".join(ns(f"{kind}/{name}/defaults", by_level[lv]) for lv in levels)
                 + f" | {ns(f'{kind}/{name}/planar')} | {ns(f'{kind}/{name}/one point')} |")
with open(readme_part, "w") as f:
    f.write("\n".join(short) + "\n")
# What painting a mesh spends evaluating: the defaults on the best level.
with open(evaluation, "w") as f:
    f.write(f"{median['Session/Brick/defaults']} {median['Session/Voronoi/defaults']}\n")
PY
read -r brick_ns voronoi_ns <"$evaluation"
phases=$(mktemp)
"$dir/bench/mesh_bench" --benchmark_repetitions="$reps" --benchmark_report_aggregates_only=true \
  --benchmark_out_format=json --benchmark_out="$phases" >&2
python3 tools/bench/paint_table.py "$dir/gritwell" "$reps" "$paint_part" "$brick_ns" "$voronoi_ns" "$phases" \
  >>docs/benchmarks.md.partial
rm -f "$phases"
echo >>docs/benchmarks.md.partial
python3 tools/bench/bake_table.py "$dir/bench/bake_bench" "$reps" "$brick_ns" "$voronoi_ns" \
  >>docs/benchmarks.md.partial
echo >>docs/benchmarks.md.partial
/usr/bin/python3 tools/bench/python_table.py "$dir/bench/library_bench" "$dir/python" "$reps" >>docs/benchmarks.md.partial
mv docs/benchmarks.md.partial docs/benchmarks.md
# Replace the README's digest and its sentence on painting between their markers.
python3 - "$readme_part" "$paint_part" <<'PY'
import sys
readme = open("README.md").read()
for part, marker in zip(sys.argv[1:3], ("bench-table", "paint-times")):
    start, end = f"<!-- {marker}:start -->\n", f"<!-- {marker}:end -->"
    i, j = readme.index(start) + len(start), readme.index(end)
    readme = readme[:i] + open(part).read() + readme[j:]
open("README.md", "w").write(readme)
PY
echo "Wrote docs/benchmarks.md and the README's table" >&2
