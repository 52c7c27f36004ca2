#!/usr/bin/env bash
# Gritwell's one entry point on a Debian machine: installs the Debian packages
# that are missing, builds, and runs.
#
#   ./run.sh            install, build, and render the gallery to gallery.png
#   ./run.sh test       install, build, and run every test (what CI runs)
#   ./run.sh sanitize   every test again, built with AddressSanitizer and
#                       UndefinedBehaviorSanitizer (in build-sanitize/)
#   ./run.sh bench      build and run the benchmarks
#   ./run.sh bench-table  measure every generator and write docs/benchmarks.md
#   ./run.sh fuzz [S]   build the libFuzzer targets with clang (in build-fuzz/)
#                       and run each for S seconds (default 600), one at a time
set -euo pipefail
cd "$(dirname "$0")"

packages=(
  g++ cmake ninja-build pkg-config binutils  # the toolchain; nm checks the exports
  libgtest-dev libbenchmark-dev              # tests and benchmarks
  libnoise-dev python3                       # the benchmark table's peer, and its Markdown
  libcli11-dev                               # command-line parsing
  nlohmann-json3-dev                         # records as JSON
  libpng-dev                                 # PNG output
  libopenexr-dev                             # float EXR output
  libassimp-dev                              # reading OBJ and PLY meshes for gritwell paint
  libstb-dev fonts-dejavu-core               # stb_perlin, gallery labels
  qt6-base-dev                               # the generator dialog (Qt 6 Widgets, QtTest)
  libxcb1-dev                                # asking the X server before Qt does
  pybind11-dev python3-dev python3-numpy     # the Python module
  python3-pytest                             # its tests
  dpkg-dev                                   # dpkg-shlibdeps, for the Debian package
)

# Only the fuzz command needs these.
fuzz_packages=(clang libclang-rt-14-dev)

install_missing() {  # install_missing [extra packages...]
  local missing=()
  for p in "${packages[@]}" "$@"; do
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
    ./build/bench/mesh_bench
    ;;
  fuzz)
    seconds=${2:-600}
    install_missing "${fuzz_packages[@]}"
    cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
      -DGRITWELL_FUZZ=ON -DGRITWELL_BUILD_TESTS=OFF -DGRITWELL_BUILD_BENCHMARKS=OFF >/dev/null
    targets=(records session vector_text mesh record_json record_file transform_file eval_text)
    cmake --build build-fuzz -j "$(nproc)" --target "${targets[@]/#/fuzz_}"
    mkdir -p build-fuzz/artifacts
    for t in "${targets[@]}"; do
      # New inputs go to build-fuzz/corpus/$t; the committed seeds are read only.
      mkdir -p "build-fuzz/corpus/$t"
      echo "== fuzz_$t for ${seconds}s"
      "./build-fuzz/fuzz/fuzz_$t" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=2048 -max_len=1024 \
        -print_final_stats=1 -close_fd_mask=2 -artifact_prefix="build-fuzz/artifacts/$t-" \
        "build-fuzz/corpus/$t" "fuzz/corpus/$t"
    done
    ;;
  bench-table)
    install_missing
    tools/bench/table.sh
    ;;
  *)
    echo "usage: ./run.sh [gallery|test|sanitize|bench|bench-table|fuzz [SECONDS]]" >&2
    exit 2
    ;;
esac
