#!/usr/bin/env bash
# Builds the Debian package of a build, unpacks it into a scratch root (no
# dpkg database touched) and runs the command and a Python import from there.
# usage: check-deb.sh BUILD_DIR PYTHON
set -euo pipefail
build=$(realpath "$1")
python=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
(cd "$scratch" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$scratch/out" >/dev/null)
deb=$(ls "$scratch"/out/gritwell_*.deb)
# Whole outputs into variables: grep -q leaving a pipe early would fail it.
info=$(dpkg-deb --info "$deb")
grep -q 'Depends:.*libstb' <<<"$info" || { echo "the package does not depend on libstb" >&2; exit 1; }
dpkg-deb -x "$deb" "$scratch/root"
root=$scratch/root
for f in usr/bin/gritwell usr/lib/gritwell/GritwellPlugin.so usr/lib/libgritwell.a usr/include/gritwell/gritwell.h \
         usr/lib/cmake/Gritwell/GritwellConfig.cmake usr/lib/pkgconfig/gritwell.pc; do
  [ -e "$root/$f" ] || { echo "$(basename "$deb") lacks /$f" >&2; exit 1; }
done
list=$("$root/usr/bin/gritwell" list)
grep -q '^Brick' <<<"$list" || { echo "gritwell list from the package lacks Brick" >&2; exit 1; }
# eval goes through the plug-in, which the command finds in ../lib/gritwell/.
printf '0.1 0.2 0.3\n' | "$root/usr/bin/gritwell" eval Brick >/dev/null
LD_LIBRARY_PATH=$root/usr/lib PYTHONPATH=$root/usr/lib/python3/dist-packages "$python" -s -c '
import sys, gritwell
assert gritwell.__file__.startswith(sys.argv[1]), gritwell.__file__
assert "Brick" in gritwell.generators()
assert gritwell.Texture("Brick")([[0.1, 0.2, 0.3]]).shape == (1,)' "$root"
echo "$(basename "$deb"): gritwell list and import gritwell run from the unpacked package"
