#!/usr/bin/env bash
# Installs a build into a scratch prefix and uses it from outside, as a
# pipeline engineer would: the command and its plug-in, a CMake project and
# a pkg-config build against the library (their values must be the
# command's, digit for digit), and the Python module in a clean interpreter.
# usage: check-install.sh BUILD_DIR SOURCE_DIR PYTHON
set -euo pipefail
build=$(realpath "$1")
source=$(realpath "$2")
python=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null

points=$'0.1 0.2 0.3\n1.5 0.25 0.3\n-3 2 0.7\n2.75 -1.5 -0.25\n'
# The whole list first: grep -q leaving the pipe early would fail it.
list=$("$prefix/bin/gritwell" list)
grep -q '^Brick' <<<"$list" || { echo "installed gritwell list lacks Brick" >&2; exit 1; }
"$prefix/bin/gritwell" record new Brick --set brickWidth=0.5 -o "$scratch/brick.rec"
expected=$(printf '%s' "$points" | "$prefix/bin/gritwell" eval "$scratch/brick.rec")

same() {  # same WHAT ACTUAL
  [ "$2" = "$expected" ] && return
  printf '%s gives\n%s\nwhere gritwell eval gives\n%s\n' "$1" "$2" "$expected" >&2
  exit 1
}

cmake -S "$source/tests/install/consumer" -B "$scratch/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$scratch/cmake" >/dev/null
same "the CMake consumer (shared)" "$(printf '%s' "$points" | "$scratch/cmake/consumer")"
same "the CMake consumer (static)" "$(printf '%s' "$points" | "$scratch/cmake/consumer_static")"

export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
# shellcheck disable=SC2046
g++ -std=c++17 "$source/tests/install/consumer/main.cpp" -o "$scratch/pkgconfig_consumer" $(pkg-config --cflags --libs gritwell)
same "the pkg-config consumer" "$(printf '%s' "$points" | LD_LIBRARY_PATH=$prefix/lib "$scratch/pkgconfig_consumer")"

if [ -d "$prefix/lib/python3/dist-packages" ]; then
  actual=$(printf '%s' "$points" | PYTHONPATH=$prefix/lib/python3/dist-packages "$python" -s -c '
import sys, numpy, gritwell
assert gritwell.__file__.startswith(sys.argv[1]), gritwell.__file__
points = numpy.loadtxt(sys.stdin, dtype=numpy.float32, ndmin=2)
print("\n".join("%.9g" % v for v in gritwell.Texture("Brick", brickWidth=0.5)(points)))' "$prefix")
  same "the installed Python module" "$actual"
fi
echo "installed tree: command, CMake and pkg-config consumers and Python agree"
