#!/usr/bin/env bash
# Retakes docs/images/dialog-brick.png: the generator dialog on the Brick
# page, photographed under a virtual X server (Debian package xvfb).
#
#   tools/screenshots/dialog-brick.sh [BUILD_DIR]    (default: build)
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${1:-build}
command -v xvfb-run >/dev/null || { echo "needs xvfb-run: apt-get install xvfb" >&2; exit 1; }
cmake --build "$build" --target dialog_screenshot
xvfb-run --auto-servernum --server-args="-screen 0 1600x1200x24" \
  env -u QT_QPA_PLATFORM "$build/dialog_screenshot" docs/images/dialog-brick.png
