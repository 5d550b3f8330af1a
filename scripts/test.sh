#!/usr/bin/env bash
# Builds everything with warnings as errors and runs the tests, then does
# the same in a second build with the sanitizers.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

source scripts/install-deps.sh
install_deps

# Source by source, as developers build, whatever the demo left in the cache.
cmake -S . -B build -DLUMORA_WERROR=ON -DLUMORA_UNITY_BUILD=OFF
cmake --build build -j2
ctest --test-dir build --output-on-failure -j2

./scripts/test-sanitizers.sh
