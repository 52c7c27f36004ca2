#!/usr/bin/env bash
# Retakes docs/images/preview.png: `gritwell dialog` on a Wood record turned a
# quarter turn about x, the dialog beside its preview window, photographed
# under a virtual X server (Debian packages xvfb and imagemagick).
#
#   tools/screenshots/dialog-preview.sh [BUILD_DIR]    (default: build)
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${1:-build}
for tool in xvfb-run import convert; do
  command -v "$tool" >/dev/null || { echo "needs $tool: apt-get install xvfb imagemagick" >&2; exit 1; }
done
cmake --build "$build" --target gritwell
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$build/gritwell" record new Wood -o "$work/wood.rec"
# The transform record: flags 2, overall scale 1, no offset, scales 1, x angle 0.25.
printf '\002\000\000\000\000\000\200\077%.0s' 1 >"$work/turned.tf"
printf '\000\000\000\000%.0s' 1 2 3 >>"$work/turned.tf"
printf '\000\000\200\077%.0s' 1 2 3 >>"$work/turned.tf"
printf '\000\000\200\076\000\000\000\000\000\000\000\000' >>"$work/turned.tf"
xvfb-run --auto-servernum --server-args="-screen 0 1600x1000x24" env -u QT_QPA_PLATFORM bash -c '
  "$1" dialog "$2/wood.rec" --transform "$2/turned.tf" >/dev/null 2>&1 &
  dialog=$!
  sleep 15
  import -window root "$2/screen.png"
  kill "$dialog"' _ "$build/gritwell" "$work"
convert "$work/screen.png" -trim +repage docs/images/preview.png
echo "Wrote docs/images/preview.png"
