#!/usr/bin/env bash
# Measures every generator and the peer, and writes docs/benchmarks.md.
#
#   tools/bench/table.sh          (or ./run.sh bench-table)
#
# Builds table_bench (RelWithDebInfo, in build/ unless BUILD_DIR says
# otherwise), runs it BENCH_REPETITIONS times (default 5) and tables the
# median of each: the machines are shared, and the median shrugs off a
# neighbour's burst where the mean does not.
set -euo pipefail
cd "$(dirname "$0")/../.."

dir=${BUILD_DIR:-build}
reps=${BENCH_REPETITIONS:-5}
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$dir" --target table_bench -j "$(nproc)"

json=$(mktemp)
trap 'rm -f "$json" docs/benchmarks.md.partial' EXIT
"$dir/bench/table_bench" --benchmark_repetitions="$reps" --benchmark_report_aggregates_only=true \
  --benchmark_min_time=0.1 --benchmark_out="$json" --benchmark_out_format=json >&2

cpu=$(grep -m1 '^model name' /proc/cpuinfo | cut -d: -f2- | sed 's/^ *//')
isa=$(grep -m1 -ow -e avx512f -e avx2 /proc/cpuinfo | sort -u | paste -sd' ' || true)
python3 - "$json" "$cpu" "$(nproc)" "${isa:-none}" "$reps" >docs/benchmarks.md.partial <<'PY'
import json, sys
path, cpu, cores, isa, reps = sys.argv[1:6]
data = json.load(open(path))
ctx = data["context"]
median = {}
for b in data["benchmarks"]:
    if b.get("aggregate_name") == "median":
        median[b["run_name"]] = 1e9 / b["items_per_second"]

def ns(name):
    v = median.get(name)
    return "—" if v is None else f"{v:.1f}"

variants = ["defaults", "switches", "detail", "detail+"]
out = []
out.append("# Benchmarks\n")
out.append("Produced by `tools/bench/table.sh` (`./run.sh bench-table`); do not edit by hand.\n")
out.append("Nanoseconds per point on one core, the median of "
           f"{reps} repetitions over a fixed cloud of 4096 points in [-8, 8)³.\n")
out.append("## Machine\n")
out.append(f"- CPU: {cpu} ({cores} cores seen, vector extensions: {isa})")
out.append(f"- Compiler: {ctx.get('compiler', '?')}")
out.append(f"- Flags: `{ctx.get('flags', '?').strip()}`")
out.append(f"- Run: {ctx.get('date', '?')}\n")
out.append("## Noise primitive and peer\n")
out.append("| function | ns/point |")
out.append("|---|---:|")
out.append(f"| `Perlin::noise(x, y, z)` | {ns('Primitive/Perlin::noise(x,y,z)')} |")
out.append(f"| libnoise `module::Perlin`, 1 octave | {ns('Peer/libnoise Perlin/1')} |")
out.append(f"| libnoise `module::Perlin`, 6 octaves (its default) | {ns('Peer/libnoise Perlin/6')} |")
p, l = median.get("Primitive/Perlin::noise(x,y,z)"), median.get("Peer/libnoise Perlin/1")
if p and l:
    out.append(f"\n`Perlin::noise` is {l / p:.1f}× the speed of libnoise's one-octave Perlin in this run.\n")
out.append("## Generators\n")
out.append("Through the plug-in's `continueSession`, one call for all 4096 points "
           "(library-only generators, marked *, through the same batch call in-process). "
           "Records: *defaults*; *switches*: every switch on (randomised colours, rounded "
           "corners, shading); *detail*: switches on, 8 octaves, every other integer field one "
           "past its default (the next style, pattern or shape); *detail+*: 12 octaves, two past, every real field a quarter larger.\n")
out.append("| generator | " + " | ".join(variants) + " |")
out.append("|---|" + "---:|" * len(variants))
names = []
for b in data["benchmarks"]:
    parts = b["run_name"].split("/")
    if parts[0] in ("Session", "Batch") and (parts[0], parts[1]) not in names:
        names.append((parts[0], parts[1]))
for kind, name in names:
    label = name + (" *" if kind == "Batch" else "")
    out.append(f"| {label} | " + " | ".join(ns(f"{kind}/{name}/{v}") for v in variants) + " |")
print("\n".join(out))
PY
mv docs/benchmarks.md.partial docs/benchmarks.md
echo "Wrote docs/benchmarks.md" >&2
