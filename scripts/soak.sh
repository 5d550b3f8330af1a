#!/usr/bin/env bash
# Builds the tree and runs the soak: thousands of frames of random light,
# effect, window, viewport and model changes, then checks that memory and
# the live GL objects and field containers are flat. Extra arguments go to
# lumora-soak (see --help), e.g. ./scripts/soak.sh --seed 3 --seconds 600.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

source scripts/install-deps.sh
install_deps

cmake -S . -B build -DLUMORA_WERROR=ON
cmake --build build -j2 --target lumora-soak
LP_NUM_THREADS=${LP_NUM_THREADS:-2} build/tests/lumora-soak --frames 5000 "$@"
