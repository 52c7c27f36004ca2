#!/usr/bin/env bash
# Gritwell's one entry point on a Debian machine: installs the Debian packages
# that are missing, builds, and runs.
#
#   ./run.sh            install, build, and render the gallery to gallery.png
#   ./run.sh test       install, build, and run every test (what CI runs)
#   ./run.sh sanitize   every test again, built with AddressSanitizer and
#                       UndefinedBehaviorSanitizer (in build-sanitize/)
#   ./run.sh bench      build and run the benchmarks
set -euo pipefail
cd "$(dirname "$0")"

packages=(
  g++ cmake ninja-build pkg-config binutils  # the toolchain; nm checks the exports
  libgtest-dev libbenchmark-dev              # tests and benchmarks
  libcli11-dev                               # command-line parsing
  nlohmann-json3-dev                         # records as JSON
  libpng-dev                                 # PNG output
  libstb-dev fonts-dejavu-core               # stb_perlin, gallery labels
)

install_missing() {
  local missing=()
  for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

build() {  # build DIR [cmake options...]
  local dir=$1
  shift
  cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  cmake --build "$dir" -j "$(nproc)"
}

case "${1:-gallery}" in
  gallery)
    install_missing
    build build
    ./build/gritwell gallery -o gallery.png
    echo "Wrote gallery.png"
    ;;
  test)
    install_missing
    build build
    ctest --test-dir build --output-on-failure -j "$(nproc)"
    ;;
  sanitize)
    install_missing
    build build-sanitize -DGRITWELL_SANITIZE=ON -DGRITWELL_BUILD_BENCHMARKS=OFF
    ctest --test-dir build-sanitize --output-on-failure -j "$(nproc)"
    ;;
  bench)
    install_missing
    build build
    ./build/bench/noise_bench
    ./build/bench/texture_bench
    ./build/bench/generators_bench
    ;;
  *)
    echo "usage: ./run.sh [gallery|test|sanitize|bench]" >&2
    exit 2
    ;;
esac
